#include "color/rgb_to_ycc.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorBGRA2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return pqx::rgb_to_ycc422<pqx::layout::BGRA>(pSrc, pY, pCb, pCr, len);
}
PQX_SECOND_NAME(pqx_Video_ColorBGRA2YCC422_BL_8U);
