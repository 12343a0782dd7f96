#include "common/export.h"
#include "resample/up_sample.h"

pqx_Status pqx_Video_UpSample422_NN_16S(const int16_t* pSrc, int len, int16_t* pDst) {
  return pqx::up_sample_nn(pSrc, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_UpSample422_NN_16S);

pqx_Status pqx_Video_UpSample422_BL_16S(const int16_t* pSrc, int len, int16_t* pDst) {
  return pqx::up_sample_422_bl(pSrc, len, pDst);
}
PQX_SECOND_NAME(pqx_Video_UpSample422_BL_16S);
