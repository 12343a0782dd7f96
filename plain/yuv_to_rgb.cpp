#include <string.h>

#include <array>

#include "plain.h"
#include "tables.h"

namespace plain {
namespace {

/// Where a pixel of so many bytes keeps its channels; a = -1: no alpha.
struct Layout {
  int bytes, r, g, b, a;
};
constexpr Layout RGB{3, 0, 1, 2, -1}, ARGB{4, 1, 2, 3, 0}, ABGR{4, 3, 2, 1, 0}, RGBA{4, 0, 1, 2, 3};

/// What the chroma of a pixel adds to its luma, in half units.
struct Chroma {
  int r, g, b;
};
Chroma chroma(int u, int v) { return {tRV[v] - 446, tGU[u] - tGV[v], tBU[u] - 554}; }

constexpr auto clipped = [] {  // the bytes of half-unit sums from -576 on
  std::array<uint8_t, 1664> t{};
  for (int i = 0; i < int(t.size()); ++i) t[size_t(i)] = clip(i - 576);
  return t;
}();

template <Layout L>
void put(uint8_t* pixel, int y, Chroma c) {
  const uint8_t* clip_from_luma = &clipped[size_t(576 + tYY[y])];
  pixel[L.r] = clip_from_luma[c.r];
  pixel[L.g] = clip_from_luma[c.g];
  pixel[L.b] = clip_from_luma[c.b];
  if (L.a >= 0) pixel[L.a] = 0;
}

constexpr int lowest = -288;
constexpr auto clamped = [] {  // the bytes of sums from the lowest on
  std::array<uint8_t, 1088> t{};
  for (int i = 0; i < int(t.size()); ++i) t[size_t(i)] = clamp_to_byte(i + lowest);
  return t;
}();

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
      const int s = Yuv2rgb[y[x]] + yUv2rgb[u[x]] + yuV2rgb[v[x]];
      uint8_t* pixel = dst + L.bytes * x;
      pixel[L.r] = clamped[size_t((s & 1023) - 256 - lowest)];
      pixel[L.g] = clamped[size_t((s >> 10 & 1023) - 256 - lowest)];
      pixel[L.b] = clamped[size_t((s >> 20) - lowest)];
      if (L.a >= 0) pixel[L.a] = 0;
    }
  return PQX_OK;
}

template <int zoom>
void put_square(uint8_t* dst, int64_t dst_step, int y, Chroma c) {
  const uint8_t* clip_from_luma = &clipped[size_t(576 + tYY[y])];
  const uint32_t r = clip_from_luma[c.r], g = clip_from_luma[c.g], b = clip_from_luma[c.b];
  const uint32_t abgr = r << 24 | g << 16 | b << 8;
  for (int row = 0; row < zoom; ++row)
    for (int column = 0; column < zoom; ++column) memcpy(dst + row * dst_step + 4 * column, &abgr, 4);
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
    auto put_at = [=](int64_t x, Chroma c) { put_square<zoom>(squares + 4 * zoom * x, dst_step, luma[x], c); };
    int64_t x = window.x0;
    if (x < window.x1 && x % 2) put_at(x, chroma(us[x >> 1], vs[x >> 1])), ++x;
    for (; x + 1 < window.x1; x += 2) {
      const Chroma c = chroma(us[x >> 1], vs[x >> 1]);
      put_at(x, c);
      put_at(x + 1, c);
    }
    if (x < window.x1) put_at(x, chroma(us[x >> 1], vs[x >> 1]));
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
