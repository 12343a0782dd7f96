#include "color/yuv_to_rgb.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYUV2ABGR420_WX3_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                             int uvStep, uint8_t* pDst, int dstStep, int /*picWidth*/,
                                             int /*picHeight*/, int x0, int y0, int x1, int y1) {
  return pqx::yuv420_window_to_abgr<3>(pY, yStep, pU, pV, uvStep, pDst, dstStep, {x0, y0, x1, y1});
}
PQX_SECOND_NAME(pqx_Video_ColorYUV2ABGR420_WX3_8U);
