#include "common/export.h"
#include "mc/into_pictures.h"

pqx_Status pqx_Video_InterpAveY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width,
                                   int height) {
  using namespace pqx::mc;
  return interpolate<4, InTurn, Pair, Average>(pSrc, pSrcDst, srcStep, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpAveY_8U);
