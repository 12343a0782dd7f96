#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorMerge2_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, int len, uint8_t* pDst) {
  return pqx::merge(len, pDst, pSrc0, pSrc1);
}
PQX_SECOND_NAME(pqx_Video_ColorMerge2_8U);
