#include "common/export.h"
#include "resample/down_sample.h"

pqx_Status pqx_Video_DownSample422_BL_8U(const uint8_t* pSrc, int len, uint8_t* pDst) {
  return pqx::down_sample(pqx::PairSource<uint8_t>{pSrc}, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_DownSample422_BL_8U);
