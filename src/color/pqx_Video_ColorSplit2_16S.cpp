#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorSplit2_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int len) {
  return pqx::split(pSrc, len, pDst0, pDst1);
}
PQX_SECOND_NAME(pqx_Video_ColorSplit2_16S);
