#include "common/export.h"
#include "resample/up_sample.h"

pqx_Status pqx_Video_UpSample420_NN_8U(const uint8_t* pSrc, int len, uint8_t* pDst0, uint8_t* pDst1) {
  return pqx::up_sample_nn(pSrc, len, pDst0, pDst1);
}
PQX_SECOND_NAME(pqx_Video_UpSample420_NN_8U);

pqx_Status pqx_Video_UpSample420_BL_8U(const uint8_t* pSrcPrev, const uint8_t* pSrcCur, const uint8_t* pSrcNext,
                                       int len, uint8_t* pDst0, uint8_t* pDst1) {
  return pqx::up_sample_420_bl(pSrcPrev, pSrcCur, pSrcNext, len, pDst0, pDst1);
}
PQX_SECOND_NAME(pqx_Video_UpSample420_BL_8U);
