#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_InterpAveY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width,
                                   int height) {
  return pqx::mc::interpolate_down<pqx::mc::Pair, pqx::mc::Average>(pSrc, pSrcDst, srcStep, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpAveY_8U);
