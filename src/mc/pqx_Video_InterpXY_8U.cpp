#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_InterpXY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return pqx::mc::interpolate_down<pqx::mc::Square, pqx::mc::Put>(pSrc, pDst, srcStep, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpXY_8U);
