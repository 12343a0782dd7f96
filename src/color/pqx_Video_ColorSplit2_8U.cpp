#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorSplit2_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, int len) {
  return pqx::split(pSrc, len, pDst0, pDst1);
}
PQX_SECOND_NAME(pqx_Video_ColorSplit2_8U);
