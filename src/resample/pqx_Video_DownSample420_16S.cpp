#include "common/export.h"
#include "resample/down_sample.h"

pqx_Status pqx_Video_DownSample420_BL_16S(const int16_t* pSrc0, const int16_t* pSrc1, int len, int16_t* pDst) {
  return pqx::down_sample(pqx::SquareSource<int16_t>{pSrc0, pSrc1}, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_DownSample420_BL_16S);
