/// Studio range YUV with shared chroma to packed pixels for display: whole pictures, enlarged ones and windows.
#pragma once

#include <stdint.h>

#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

/// How many pixels share one U and one V.
struct Sampling {
  int columns, rows;
};
inline constexpr Sampling yuv411{4, 1}, yuv420{2, 2}, yuv422{2, 1};

/// What the chroma of a pixel adds to its luma, in half units.
struct ChromaTerms {
  int r, g, b;
};
inline ChromaTerms chroma_terms(int u, int v) {
  return {pqx_tRV[v] - 446, pqx_tGU[u] - pqx_tGV[v], pqx_tBU[u] - 554};
}

/// The rows of the destination that one row of pixels fills.
template <PixelLayout L, int zoom>
struct Target {
  uint8_t* row;
  int64_t step;

  void put(int64_t x, int y, ChromaTerms c) const {
    const uint8_t *clip = pqx_tClip + 576, r = clip[pqx_tYY[y] + c.r], g = clip[pqx_tYY[y] + c.g],
                  b = clip[pqx_tYY[y] + c.b];
    for (int copy = 0; copy < zoom * zoom; ++copy) {
      uint8_t* pixel = row + copy / zoom * step + L.bytes * (zoom * x + copy % zoom);
      pixel[L.r] = r;
      pixel[L.g] = g;
      pixel[L.b] = b;
      if constexpr (L.a >= 0) pixel[L.a] = 0;
    }
  }
};

template <PixelLayout L, Sampling sampling, int zoom = 1>
void convert_rows(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v, uint8_t* dst,
                  int64_t dst_step, int64_t n) {
  for (int64_t x = 0; x < n; ++x) {
    const ChromaTerms c = chroma_terms(u[x / sampling.columns], v[x / sampling.columns]);
    for (int row = 0; row < sampling.rows; ++row)
      Target<L, zoom>{dst + zoom * row * dst_step, dst_step}.put(x, y[row * y_step + x], c);
  }
}

template <PixelLayout L, Sampling sampling>
pqx_Status yuv_to_rgb(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v, int64_t uv_step,
                      uint8_t* dst, int64_t dst_step, int width, int height) {
  const int64_t n = sampling.columns * int64_t(width / sampling.columns);
  for (int64_t k = 0; k < height / sampling.rows; ++k)
    convert_rows<L, sampling>(y + k * sampling.rows * y_step, y_step, u + k * uv_step, v + k * uv_step,
                              dst + k * sampling.rows * dst_step, dst_step, n);
  return PQX_OK;
}

/// With an odd width, every pair of rows but the first starts one sample and one square early.
template <int zoom>
pqx_Status yuv420_to_zoomed_abgr(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v,
                                 int64_t uv_step, uint8_t* dst, int64_t dst_step, int width, int height) {
  const int64_t odd = width & 1, n = width - odd;
  for (int64_t k = 0; k < height >> 1; ++k)
    convert_rows<layout::ABGR, yuv420, zoom>(y + k * (2 * y_step - odd), y_step, u + k * uv_step, v + k * uv_step,
                                             dst + k * zoom * (2 * dst_step - 4 * odd), dst_step, n);
  return PQX_OK;
}

struct Rectangle {
  int64_t x0, y0, x1, y1;
};

template <int zoom>
pqx_Status yuv420_window_to_abgr(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v,
                                 int64_t uv_step, uint8_t* dst, int64_t dst_step, Rectangle window) {
  for (int64_t row = window.y0; row < window.y1; ++row)
    for (int64_t x = window.x0; x < window.x1; ++x) {
      const int64_t pair = (row >> 1) * uv_step + (x >> 1);
      Target<layout::ABGR, zoom>{dst + zoom * row * dst_step, dst_step}.put(x, y[row * y_step + x],
                                                                            chroma_terms(u[pair], v[pair]));
    }
  return PQX_OK;
}

}  // namespace pqx
