#include "common/export.h"
#include "resample/up_sample.h"

pqx_Status pqx_Video_UpSample420_NN_16S(const int16_t* pSrc, int len, int16_t* pDst0, int16_t* pDst1) {
  return pqx::up_sample_nn(pSrc, len, pDst0, pDst1);
}
PQX_SECOND_NAME(pqx_Video_UpSample420_NN_16S);

pqx_Status pqx_Video_UpSample420_BL_16S(const int16_t* pSrcPrev, const int16_t* pSrcCur, const int16_t* pSrcNext,
                                        int len, int16_t* pDst0, int16_t* pDst1) {
  return pqx::up_sample_420_bl(pSrcPrev, pSrcCur, pSrcNext, len, pDst0, pDst1);
}
PQX_SECOND_NAME(pqx_Video_UpSample420_BL_16S);
