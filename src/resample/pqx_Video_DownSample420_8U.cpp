#include "common/export.h"
#include "resample/down_sample.h"

pqx_Status pqx_Video_DownSample420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, int len, uint8_t* pDst) {
  return pqx::down_sample(pqx::SquareSource<uint8_t>{pSrc0, pSrc1}, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_DownSample420_BL_8U);
