#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorSplit3_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int16_t* pDst2, int len) {
  return pqx::split(pSrc, len, pDst0, pDst1, pDst2);
}
PQX_SECOND_NAME(pqx_Video_ColorSplit3_16S);
