#include <string.h>

#include <algorithm>

#include "pixels.h"
#include "plain.h"

namespace plain {
namespace {

/// What the chroma of a pixel adds to its luma, in half units.
struct Chroma {
  int r, g, b;
};
Chroma chroma(int u, int v) { return {pqx_tRV[v] - 446, pqx_tGU[u] - pqx_tGV[v], pqx_tBU[u] - 554}; }

template <Layout L>
void put(uint8_t* pixel, int y, Chroma c) {
  const uint8_t* clipped = clip_from(pqx_tYY[y]);
  pixel[L.r] = clipped[c.r];
  pixel[L.g] = clipped[c.g];
  pixel[L.b] = clipped[c.b];
  if (L.a >= 0) pixel[L.a] = 0;
}

/// One U and one V serve columns x rows pixels.
template <Layout L, int columns, int rows>
pqx_Status convert(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v, int64_t uv_step,
                   uint8_t* dst, int64_t dst_step, int width, int height) {
  for (int i = 0; i < height / rows; ++i) {
    for (int j = 0; j < width / columns; ++j) {
      const Chroma c = chroma(u[j], v[j]);
      const uint8_t* luma = y + columns * int64_t(j);
      uint8_t* pixel = dst + L.bytes * columns * int64_t(j);
      for (int row = 0; row < rows; ++row)
        for (int k = 0; k < columns; ++k) put<L>(pixel + row * dst_step + L.bytes * k, luma[row * y_step + k], c);
    }
    y += rows * y_step;
    u += uv_step;
    v += uv_step;
    dst += rows * dst_step;
  }
  return PQX_OK;
}

template <Layout L>
pqx_Status convert_444(const uint8_t* y, const uint8_t* u, const uint8_t* v, int64_t src_step, uint8_t* dst,
                       int64_t dst_step, int width, int height) {
  for (int i = 0; i < height; ++i, y += src_step, u += src_step, v += src_step, dst += dst_step)
    for (int64_t x = 0; x < width; ++x) {
      const int s = pqx_t_Yuv2rgb[y[x]] + pqx_t_yUv2rgb[u[x]] + pqx_t_yuV2rgb[v[x]];
      uint8_t* pixel = dst + L.bytes * x;
      pixel[L.r] = pqx_video_pClipOff256[s & 1023];
      pixel[L.g] = pqx_video_pClipOff256[s >> 10 & 1023];
      pixel[L.b] = uint8_t(std::clamp(s >> 20, 0, 255));
      if (L.a >= 0) pixel[L.a] = 0;
    }
  return PQX_OK;
}

template <int zoom>
void put_square(uint8_t* dst, int64_t dst_step, int y, Chroma c) {
  uint8_t pixel[4];
  put<ABGR>(pixel, y, c);
  for (int row = 0; row < zoom; ++row)
    for (int column = 0; column < zoom; ++column) memcpy(dst + row * dst_step + 4 * column, pixel, 4);
}

template <int zoom>
pqx_Status convert_zoomed(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v, int64_t uv_step,
                          uint8_t* dst, int64_t dst_step, int width, int height) {
  const int64_t pairs = width >> 1;
  for (int i = 0; i < height >> 1; ++i) {
    for (int64_t j = 0; j < pairs; ++j) {
      const Chroma c = chroma(u[j], v[j]);
      const uint8_t* luma = y + 2 * j;
      uint8_t* square = dst + 8 * zoom * j;
      for (int row = 0; row < 2; ++row)
        for (int k = 0; k < 2; ++k)
          put_square<zoom>(square + zoom * (row * dst_step + 4 * k), dst_step, luma[row * y_step + k], c);
    }
    y += 2 * y_step - width + 2 * pairs;
    u += uv_step;
    v += uv_step;
    dst += 2 * zoom * dst_step - 4 * zoom * int64_t(width) + 8 * zoom * pairs;
  }
  return PQX_OK;
}

struct Rectangle {
  int x0, y0, x1, y1;
};

template <int zoom>
pqx_Status convert_window(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v, int64_t uv_step,
                          uint8_t* dst, int64_t dst_step, Rectangle window) {
  if (window.x0 >= window.x1) return PQX_OK;
  for (int64_t row = window.y0; row < window.y1; ++row) {
    const uint8_t *luma = y + row * y_step, *us = u + (row >> 1) * uv_step, *vs = v + (row >> 1) * uv_step;
    uint8_t* squares = dst + zoom * row * dst_step;
    for (int64_t x = window.x0; x < window.x1; ++x)
      put_square<zoom>(squares + 4 * zoom * x, dst_step, luma[x], chroma(us[x >> 1], vs[x >> 1]));
  }
  return PQX_OK;
}

}  // namespace

pqx_Status ColorYUV2RGB411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                              uint8_t* pDst, int dstStep, int width, int height) {
  return convert<RGB, 4, 1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ARGB411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<ARGB, 4, 1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ABGR411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<ABGR, 4, 1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2RGB420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                              uint8_t* pDst, int dstStep, int width, int height) {
  return convert<RGB, 2, 2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ARGB420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<ARGB, 2, 2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ABGR420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<ABGR, 2, 2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2RGBA420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<RGBA, 2, 2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2RGB422_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                              uint8_t* pDst, int dstStep, int width, int height) {
  return convert<RGB, 2, 1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ARGB422_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<ARGB, 2, 1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ABGR422_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                               uint8_t* pDst, int dstStep, int width, int height) {
  return convert<ABGR, 2, 1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2RGB444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep, uint8_t* pDst,
                              int dstStep, int width, int height) {
  return convert_444<RGB>(pY, pU, pV, srcStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ARGB444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep, uint8_t* pDst,
                               int dstStep, int width, int height) {
  return convert_444<ARGB>(pY, pU, pV, srcStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ABGR444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep, uint8_t* pDst,
                               int dstStep, int width, int height) {
  return convert_444<ABGR>(pY, pU, pV, srcStep, pDst, dstStep, width, height);
}

pqx_Status ColorYUV2ABGR420_X2_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                  uint8_t* pDst, int dstStep, int width, int height) {
  return convert_zoomed<2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}
pqx_Status ColorYUV2ABGR420_X3_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                  uint8_t* pDst, int dstStep, int width, int height) {
  return convert_zoomed<3>(pY, yStep, pU, pV, uvStep, pDst, dstStep, width, height);
}

pqx_Status ColorYUV2ABGR420_W_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                 uint8_t* pDst, int dstStep, int, int, int x0, int y0, int x1, int y1) {
  return convert_window<1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, {x0, y0, x1, y1});
}
pqx_Status ColorYUV2ABGR420_WX2_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                   uint8_t* pDst, int dstStep, int, int, int x0, int y0, int x1, int y1) {
  return convert_window<2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, {x0, y0, x1, y1});
}
pqx_Status ColorYUV2ABGR420_WX3_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                   uint8_t* pDst, int dstStep, int, int, int x0, int y0, int x1, int y1) {
  return convert_window<3>(pY, yStep, pU, pV, uvStep, pDst, dstStep, {x0, y0, x1, y1});
}

}  // namespace plain
