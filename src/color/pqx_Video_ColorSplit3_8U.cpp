#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorSplit3_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, uint8_t* pDst2, int len) {
  return pqx::split(pSrc, len, pDst0, pDst1, pDst2);
}
PQX_SECOND_NAME(pqx_Video_ColorSplit3_8U);
