#include "common/calls.h"
#include "common/export.h"
#include "dct/forward_8x8.h"

pqx_Status pqx_Video_DCT8x8Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  return pqx::dct::forward_8x8(pqx::load_block(pSrc), pDst);
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Fwd_16S);

pqx_Status pqx_Video_DCT8x8Fwd_12S_16S(const int16_t* pSrc, int16_t* pDst) {
  return __pqx_Video_DCT8x8Fwd_16S(pSrc, pDst);
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Fwd_12S_16S);

pqx_Status pqx_Video_DCT8x8Fwd_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  return pqx::dct::forward_8x8(pqx::load_block(pSrc, srcStep), pDst);
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Fwd_8U_16S);
