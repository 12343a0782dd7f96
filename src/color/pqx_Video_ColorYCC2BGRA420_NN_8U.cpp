#include "color/ycc_to_rgb.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYCC2BGRA420_NN_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCb,
                                            const uint8_t* pCr, uint8_t* pDst0, uint8_t* pDst1, int len) {
  return pqx::ycc::convert_420_nearest<pqx::layout::BGRA>(pY0, pY1, pCb, pCr, pDst0, pDst1, len);
}
PQX_SECOND_NAME(pqx_Video_ColorYCC2BGRA420_NN_8U);
