#include "color/yuv_to_rgb.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYUV2RGB411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                        int uvStep, uint8_t* pDst, int dstStep, int width, int height) {
  return pqx::yuv_to_rgb<pqx::layout::RGB, pqx::yuv411>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_ColorYUV2RGB411_8U);
