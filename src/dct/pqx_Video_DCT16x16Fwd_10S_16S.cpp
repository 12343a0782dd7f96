#include "common/calls.h"
#include "common/export.h"

pqx_Status pqx_Video_DCT16x16Fwd_10S_16S(const int16_t* pSrc, int16_t* pDst) {
  return __pqx_Video_DCT16x16Fwd_16S(pSrc, pDst);
}
PQX_SECOND_NAME(pqx_Video_DCT16x16Fwd_10S_16S);
