#include "color/reorder.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorRGB2ARGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len) {
  return pqx::reorder<pqx::layout::RGB, pqx::layout::ARGB>(pSrc, pDst, len);
}
PQX_SECOND_NAME(pqx_Video_ColorRGB2ARGB_8U);
