#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_InterpAveX_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return pqx::mc::interpolate_across<4, pqx::mc::Average>(pSrc, pSrcDst, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpAveX_8U);
