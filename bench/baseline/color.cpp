#include <string.h>

#include <algorithm>

#include "baseline.h"
#include "pixels.h"

namespace baseline {
namespace {

using plain::Layout;

// Sums of both chroma fields of four pixels at once, each of nine bits with room for the carries.
template <Layout L>
uint32_t ycc_word(const uint8_t* row, int64_t i) {
  const uint8_t* pixel = row + L.bytes * i;
  return pqx_t_r2j[pixel[L.r]] + pqx_t_g2j[pixel[L.g]] + pqx_t_b2j[pixel[L.b]];
}

template <Layout L>
pqx_Status to_ycc420(const uint8_t* src0, const uint8_t* src1, uint8_t* y0, uint8_t* y1, uint8_t* cb, uint8_t* cr,
                     int len) {
  constexpr uint32_t chroma = 511 << 10 | 511u << 21;
  for (int j = 0; j < len / 2; ++j) {
    const uint32_t s = ycc_word<L>(src0, 2 * j), t = ycc_word<L>(src0, 2 * j + 1), v = ycc_word<L>(src1, 2 * j),
                   w = ycc_word<L>(src1, 2 * j + 1);
    y0[2 * j] = uint8_t(s);
    y0[2 * j + 1] = uint8_t(t);
    y1[2 * j] = uint8_t(v);
    y1[2 * j + 1] = uint8_t(w);
    const uint32_t sum = ((s + t) & chroma) + ((v + w) & chroma) + (j % 2 ? 2 << 10 | 2 << 21 : 0);
    cb[j] = uint8_t(sum >> 12);
    cr[j] = uint8_t(sum >> 23);
  }
  return PQX_OK;
}

// Chroma of `pairs` pairs of pixels from pair `first` on, which vectors can do; one sample more repeats the last.
constexpr int block = 256;
void interpolate(const uint8_t* near, const uint8_t* far, int columns, int first, int pairs, uint8_t* out) {
  int16_t sums[block + 2];
  auto sum = [=](int j) { return int16_t(3 * near[j] + far[j]); };
  sums[0] = sum(std::max(first - 1, 0));
  for (int j = 0; j < pairs; ++j) sums[j + 1] = sum(first + j);
  sums[pairs + 1] = sum(std::min(first + pairs, columns - 1));
  for (int j = 0; j < pairs; ++j) {
    out[2 * j] = uint8_t((3 * sums[j + 1] + sums[j] + 8) >> 4);
    out[2 * j + 1] = uint8_t((3 * sums[j + 1] + sums[j + 2] + 7) >> 4);
  }
  out[2 * pairs] = out[2 * pairs - 1];
}

template <auto convert_444, int bytes>
void from_ycc420(const uint8_t* y, const uint8_t* cb_near, const uint8_t* cb_far, const uint8_t* cr_near,
                 const uint8_t* cr_far, uint8_t* dst, int len) {
  if (len < 1) return;
  const int columns = std::max(len / 2, 2);
  for (int j = 0; j < columns; j += block) {
    uint8_t cb[2 * block + 1], cr[2 * block + 1];
    const int pairs = std::min(block, columns - j), pixels = j + pairs == columns ? len - 2 * j : 2 * pairs;
    interpolate(cb_near, cb_far, columns, j, pairs, cb);
    interpolate(cr_near, cr_far, columns, j, pairs, cr);
    convert_444(y + 2 * j, cb, cr, dst + 2 * bytes * int64_t(j), pixels);
  }
}

struct Chroma {
  int r, g, b;
};

template <int zoom>
void put_square(uint8_t* dst, int64_t dst_step, int y, Chroma c) {
  const uint8_t* clipped = plain::clip_from(pqx_tYY[y]);
  const uint32_t r = clipped[c.r], g = clipped[c.g], b = clipped[c.b], abgr = r << 24 | g << 16 | b << 8;
  for (int row = 0; row < zoom; ++row)
    for (int column = 0; column < zoom; ++column) memcpy(dst + row * dst_step + 4 * column, &abgr, 4);
}

// Pairs of pixels share their chroma.
template <int zoom>
pqx_Status window_420(const uint8_t* y, int64_t y_step, const uint8_t* u, const uint8_t* v, int64_t uv_step,
                      uint8_t* dst, int64_t dst_step, int x0, int y0, int x1, int y1) {
  if (x0 >= x1) return PQX_OK;
  for (int64_t row = y0; row < y1; ++row) {
    const uint8_t *luma = y + row * y_step, *us = u + (row >> 1) * uv_step, *vs = v + (row >> 1) * uv_step;
    uint8_t* squares = dst + zoom * row * dst_step;
    const auto chroma = [=](int64_t x) {
      const int a = us[x >> 1], b = vs[x >> 1];
      return Chroma{pqx_tRV[b] - 446, pqx_tGU[a] - pqx_tGV[b], pqx_tBU[a] - 554};
    };
    const auto put = [=](int64_t x, Chroma c) { put_square<zoom>(squares + 4 * zoom * x, dst_step, luma[x], c); };
    int64_t x = x0;
    if (x % 2) put(x, chroma(x)), ++x;
    for (; x + 1 < x1; x += 2) {
      const Chroma c = chroma(x);
      put(x, c);
      put(x + 1, c);
    }
    if (x < x1) put(x, chroma(x));
  }
  return PQX_OK;
}

}  // namespace

pqx_Status ColorRGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1, uint8_t* pCb,
                                 uint8_t* pCr, int len) {
  return to_ycc420<plain::RGB>(pSrc0, pSrc1, pY0, pY1, pCb, pCr, len);
}
pqx_Status ColorABGR2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                  uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc420<plain::ABGR>(pSrc0, pSrc1, pY0, pY1, pCb, pCr, len);
}
pqx_Status ColorARGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                  uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc420<plain::ARGB>(pSrc0, pSrc1, pY0, pY1, pCb, pCr, len);
}
pqx_Status ColorBGRA2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                  uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc420<plain::BGRA>(pSrc0, pSrc1, pY0, pY1, pCb, pCr, len);
}

pqx_Status ColorYCC2RGB420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA, const uint8_t* pCrA,
                                 const uint8_t* pCbB, const uint8_t* pCrB, const uint8_t* pCbC, const uint8_t* pCrC,
                                 uint8_t* pDst0, uint8_t* pDst1, int len) {
  from_ycc420<plain::ColorYCC2RGB444_8U, 3>(pY0, pCbB, pCbA, pCrB, pCrA, pDst0, len);
  from_ycc420<plain::ColorYCC2RGB444_8U, 3>(pY1, pCbB, pCbC, pCrB, pCrC, pDst1, len);
  return PQX_OK;
}
pqx_Status ColorYCC2BGRA420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA, const uint8_t* pCrA,
                                  const uint8_t* pCbB, const uint8_t* pCrB, const uint8_t* pCbC, const uint8_t* pCrC,
                                  uint8_t* pDst0, uint8_t* pDst1, int len) {
  from_ycc420<plain::ColorYCC2BGRA444_8U, 4>(pY0, pCbB, pCbA, pCrB, pCrA, pDst0, len);
  from_ycc420<plain::ColorYCC2BGRA444_8U, 4>(pY1, pCbB, pCbC, pCrB, pCrC, pDst1, len);
  return PQX_OK;
}

pqx_Status ColorYUV2ABGR420_W_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                 uint8_t* pDst, int dstStep, int, int, int x0, int y0, int x1, int y1) {
  return window_420<1>(pY, yStep, pU, pV, uvStep, pDst, dstStep, x0, y0, x1, y1);
}
pqx_Status ColorYUV2ABGR420_WX2_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                   uint8_t* pDst, int dstStep, int, int, int x0, int y0, int x1, int y1) {
  return window_420<2>(pY, yStep, pU, pV, uvStep, pDst, dstStep, x0, y0, x1, y1);
}
pqx_Status ColorYUV2ABGR420_WX3_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV, int uvStep,
                                   uint8_t* pDst, int dstStep, int, int, int x0, int y0, int x1, int y1) {
  return window_420<3>(pY, yStep, pU, pV, uvStep, pDst, dstStep, x0, y0, x1, y1);
}

}  // namespace baseline
