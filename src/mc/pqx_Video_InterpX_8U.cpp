#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_InterpX_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return pqx::mc::interpolate_across<8, pqx::mc::Put>(pSrc, pDst, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpX_8U);
