#include "common/export.h"
#include "dct/inverse_fast_8x8.h"

pqx_Status pqx_Video_DCT8x8Inv_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  return pqx::dct::inverse_8x8(pSrc, pqx::dct::Pixels{pDst, dstStep});
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_16S_8U);
