#include "color/ycc_to_rgb.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYCCK2CMYK444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                          const uint8_t* pK, uint8_t* pDst, int len) {
  return pqx::ycc::convert_444_with_black(pY, pCb, pCr, pK, pDst, len);
}
PQX_SECOND_NAME(pqx_Video_ColorYCCK2CMYK444_8U);
