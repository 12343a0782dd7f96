#include "common/export.h"
#include "resample/down_sample.h"

pqx_Status pqx_Video_DownSample422_BL_16S(const int16_t* pSrc, int len, int16_t* pDst) {
  return pqx::down_sample(pqx::PairSource<int16_t>{pSrc}, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_DownSample422_BL_16S);
