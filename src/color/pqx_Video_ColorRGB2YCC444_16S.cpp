#include "color/rgb_to_ycc_12_bit.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorRGB2YCC444_16S(const int16_t* pSrc, int16_t* pY, int16_t* pCb, int16_t* pCr, int len) {
  return pqx::rgb_to_ycc444_12_bit(pSrc, pY, pCb, pCr, len);
}
PQX_SECOND_NAME(pqx_Video_ColorRGB2YCC444_16S);
