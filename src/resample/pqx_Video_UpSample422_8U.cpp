#include "common/export.h"
#include "resample/up_sample.h"

pqx_Status pqx_Video_UpSample422_NN_8U(const uint8_t* pSrc, int len, uint8_t* pDst) {
  return pqx::up_sample_nn(pSrc, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_UpSample422_NN_8U);

pqx_Status pqx_Video_UpSample422_BL_8U(const uint8_t* pSrc, int len, uint8_t* pDst) {
  return pqx::up_sample_422_bl(pSrc, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_UpSample422_BL_8U);
