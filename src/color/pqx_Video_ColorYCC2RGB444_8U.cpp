#include "color/ycc_to_rgb.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYCC2RGB444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst,
                                        int len) {
  return pqx::ycc::convert_444<pqx::layout::RGB>(pY, pCb, pCr, pDst, len);
}
PQX_SECOND_NAME(pqx_Video_ColorYCC2RGB444_8U);
