/// Studio range YUV to packed pixels for display: whole pictures, enlarged ones and windows.
#pragma once

#include "color/yuv_rows.h"

namespace pqx {

inline constexpr yuv::Sampling yuv411{4, 1}, yuv420{2, 2}, yuv422{2, 1}, yuv444{1, 1};

template <PixelLayout L, yuv::Sampling S>
[[gnu::flatten]] pqx_Status yuv_to_rgb(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v,
                                       int64_t uv_step, uint8_t* dst, int64_t dst_step, int width, int height) {
  yuv::convert<L, S>({y, y_step, u, v, dst, dst_step}, {S.rows * y_step, uv_step, S.rows * dst_step}, height / S.rows,
                     width / S.columns * S.columns);
  return PQX_OK;
}

template <PixelLayout L>
[[gnu::flatten]] pqx_Status yuv444_to_rgb(const uint8_t* y, const uint8_t* u, const uint8_t* v, int64_t step,
                                          uint8_t* dst, int64_t dst_step, int64_t width, int64_t height) {
  if (step == width && dst_step == L.bytes * width && height > 0) {  // one long row
    width *= height;
    height = 1;
  }
  yuv::convert<L, yuv444>({y, step, u, v, dst, dst_step}, {step, step, dst_step}, height, width);
  return PQX_OK;
}

/// With an odd width, every pair of rows but the first starts one sample and one square early.
template <int zoom>
[[gnu::flatten]] pqx_Status yuv420_to_zoomed_abgr(const uint8_t* y, int64_t y_step, const uint8_t* u,
                                                  const uint8_t* v, int64_t uv_step, uint8_t* dst, int64_t dst_step,
                                                  int width, int height) {
  const int odd = width & 1;
  yuv::convert<layout::ABGR, yuv420, zoom>({y, y_step, u, v, dst, dst_step},
                                           {2 * y_step - odd, uv_step, zoom * (2 * dst_step - 4 * odd)}, height >> 1,
                                           width - odd);
  return PQX_OK;
}

struct Rectangle {
  int64_t x0, y0, x1, y1;
};

template <int zoom>
pqx_Status yuv420_window_to_abgr(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v,
                                 int64_t uv_step, uint8_t* dst, int64_t dst_step, const Rectangle& window) {
  const auto [x0, y0, x1, y1] = window;
  if (x0 >= x1 || y0 >= y1) return PQX_OK;
  const yuv::Advance next{2 * y_step, uv_step, 2 * zoom * dst_step};
  const auto from = [&](int64_t row) {
    const int64_t chroma = (row >> 1) * uv_step;
    return yuv::Rows{y + row * y_step, y_step, u + chroma, v + chroma, dst + zoom * row * dst_step, dst_step};
  };
  const int64_t begin = (y0 + 1) & ~int64_t(1), end = y1 & ~int64_t(1);
  if (y0 & 1) yuv::convert_columns<yuv422, zoom>(from(y0), next, 1, x0, x1);
  yuv::convert_columns<yuv420, zoom>(from(begin), next, (end - begin) / 2, x0, x1);
  if (y1 & 1) yuv::convert_columns<yuv422, zoom>(from(end), next, 1, x0, x1);
  return PQX_OK;
}

}  // namespace pqx
