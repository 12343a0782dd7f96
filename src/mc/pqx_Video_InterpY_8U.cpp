#include "common/export.h"
#include "mc/into_pictures.h"

pqx_Status pqx_Video_InterpY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  using namespace pqx::mc;
  return interpolate<4, InTurn, Pair, Put>(pSrc, pDst, srcStep, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpY_8U);
