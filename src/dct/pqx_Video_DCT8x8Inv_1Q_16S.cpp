#include "common/export.h"
#include "dct/inverse_fast_8x8.h"

pqx_Status pqx_Video_DCT8x8Inv_1Q_16S(const int16_t* pSrc, int16_t* pDst) {
  return pqx::dct::inverse_of_corner<4, 4>(pSrc, pqx::dct::Residuals{pDst});
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_1Q_16S);
