#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorMerge2_16S(const int16_t* pSrc0, const int16_t* pSrc1, int len, int16_t* pDst) {
  return pqx::merge(len, pDst, pSrc0, pSrc1);
}
PQX_SECOND_NAME(pqx_Video_ColorMerge2_16S);
