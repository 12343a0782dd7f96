#include "color/rgb_to_ycc.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorARGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                            uint8_t* pCb, uint8_t* pCr, int len) {
  return pqx::rgb_to_ycc420<pqx::layout::ARGB>(pSrc0, pSrc1, pY0, pY1, pCb, pCr, len);
}
PQX_SECOND_NAME(pqx_Video_ColorARGB2YCC420_BL_8U);
