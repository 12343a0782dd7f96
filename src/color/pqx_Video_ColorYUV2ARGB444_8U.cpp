#include "color/yuv_to_rgb.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYUV2ARGB444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep,
                                         uint8_t* pDst, int dstStep, int width, int height) {
  return pqx::yuv444_to_rgb<pqx::layout::ARGB>(pY, pU, pV, srcStep, pDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_ColorYUV2ARGB444_8U);
