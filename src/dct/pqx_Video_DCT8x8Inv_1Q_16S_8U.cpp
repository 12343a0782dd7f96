#include "common/export.h"
#include "dct/inverse_fast_8x8.h"

pqx_Status pqx_Video_DCT8x8Inv_1Q_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  return pqx::dct::inverse_of_corner<4, 4>(pSrc, pqx::dct::Pixels{pDst, dstStep});
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_1Q_16S_8U);
