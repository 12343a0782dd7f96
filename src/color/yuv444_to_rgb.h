/// Studio range YUV with chroma of its own for every pixel to packed pixels for display. Its coefficients are rounded
/// differently from those of the sub-sampled forms.
#pragma once

#include <stdint.h>

#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

template <PixelLayout L>
void convert_row_444(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* dst, int64_t n) {
  for (int64_t x = 0; x < n; ++x, dst += L.bytes) {
    const int32_t sum = pqx_t_Yuv2rgb[y[x]] + pqx_t_yUv2rgb[u[x]] + pqx_t_yuV2rgb[v[x]], b = sum >> 20;
    dst[L.r] = pqx_video_pClipOff256[sum & 1023];
    dst[L.g] = pqx_video_pClipOff256[sum >> 10 & 1023];
    dst[L.b] = uint8_t(b < 0 ? 0 : b > 255 ? 255 : b);
    if constexpr (L.a >= 0) dst[L.a] = 0;
  }
}

template <PixelLayout L>
pqx_Status yuv444_to_rgb(const uint8_t* y, const uint8_t* u, const uint8_t* v, int64_t src_step, uint8_t* dst,
                         int64_t dst_step, int64_t width, int64_t height) {
  if (src_step == width && dst_step == L.bytes * width && height > 0) {  // contiguous: one long row
    width *= height;
    height = 1;
  }
  for (int64_t k = 0; k < height; ++k)
    convert_row_444<L>(y + k * src_step, u + k * src_step, v + k * src_step, dst + k * dst_step, width);
  return PQX_OK;
}

}  // namespace pqx
