#include <algorithm>

#include "any_address.h"
#include "plain.h"
#include "tables.h"

namespace plain {
namespace {

struct Ycc {
  int y, cb, cr;
};

/// Where a pixel of so many bytes keeps its channels; a = -1: no alpha.
struct Layout {
  int bytes, r, g, b, a;
};
constexpr Layout RGB{3, 0, 1, 2, -1}, BGRA{4, 2, 1, 0, 3}, ARGB{4, 1, 2, 3, 0};

/// clip() as a table, from the lowest half-unit sum on.
constexpr int lowest = -576;
constexpr auto clip_table = [] {
  std::array<uint8_t, 1664> t{};
  for (int i = 0; i < int(t.size()); ++i) t[size_t(i)] = clip(i + lowest);
  return t;
}();

template <Layout L>
void put(uint8_t* pixel, Ycc c) {
  const uint8_t* clipped = clip_table.data() - lowest + 2 * c.y;
  pixel[L.r] = clipped[tRCr[c.cr] - 359];
  pixel[L.g] = clipped[tGCb[c.cb] - tGCr[c.cr]];
  pixel[L.b] = clipped[tBCb[c.cb] - 454];
  if (L.a >= 0) pixel[L.a] = 255;
}

template <Layout L>
pqx_Status convert_444(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  for (int i = 0; i < len; ++i) put<L>(dst + L.bytes * int64_t(i), {y[i], cb[i], cr[i]});
  return PQX_OK;
}

template <Layout L>
pqx_Status convert_422_nearest(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  for (int j = 0; j < len / 2; ++j) {
    uint8_t* pixel = dst + 2 * L.bytes * int64_t(j);
    put<L>(pixel, {y[2 * j], cb[j], cr[j]});
    put<L>(pixel + L.bytes, {y[2 * j + 1], cb[j], cr[j]});
  }
  return PQX_OK;
}

template <Layout L>
pqx_Status convert_420_nearest(const uint8_t* y0, const uint8_t* y1, const uint8_t* cb, const uint8_t* cr,
                               uint8_t* dst0, uint8_t* dst1, int len) {
  convert_422_nearest<L>(y0, cb, cr, dst0, len);
  return convert_422_nearest<L>(y1, cb, cr, dst1, len);
}

template <Layout L>
pqx_Status convert_422_bilinear(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  const int pairs = std::max(len / 2, 1);
  for (int j = 0; j < pairs; ++j) {
    const int before = std::max(j - 1, 0), behind = std::min(j + 1, pairs - 1);
    auto left = [=](const uint8_t* c) { return (3 * c[j] + c[before] + 1) >> 2; };
    auto right = [=](const uint8_t* c) { return (3 * c[j] + c[behind] + 2) >> 2; };
    uint8_t* pixel = dst + 2 * L.bytes * int64_t(j);
    put<L>(pixel, {y[2 * j], left(cb), left(cr)});
    put<L>(pixel + L.bytes, {y[2 * j + 1], right(cb), right(cr)});
  }
  return PQX_OK;
}

/// Chroma of `pairs` pairs of pixels from pair `first` on; one sample more repeats the last.
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

/// One row of a pair, its chroma from the nearer and the farther chroma row.
template <Layout L>
void convert_420_bilinear(const uint8_t* y, const uint8_t* cb_near, const uint8_t* cb_far, const uint8_t* cr_near,
                          const uint8_t* cr_far, uint8_t* dst, int len) {
  if (len < 1) return;
  const int columns = std::max(len / 2, 2);
  for (int j = 0; j < columns; j += block) {
    uint8_t cb[2 * block + 1], cr[2 * block + 1];
    const int pairs = std::min(block, columns - j), pixels = j + pairs == columns ? len - 2 * j : 2 * pairs;
    interpolate(cb_near, cb_far, columns, j, pairs, cb);
    interpolate(cr_near, cr_far, columns, j, pairs, cr);
    convert_444<L>(y + 2 * j, cb, cr, dst + 2 * L.bytes * int64_t(j), pixels);
  }
}

int twelve_bits(float v) {
  if (double(v) >= 2147483647.0) return 4095;
  if (double(v) < -2147483648.0) return 0;
  return (int32_t(v) >> 20) + 2048;
}

}  // namespace

pqx_Status ColorYCC2RGB444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_444<RGB>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2BGRA444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_444<BGRA>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2ARGB444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_444<ARGB>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2RGB422_NN_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_422_nearest<RGB>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2BGRA422_NN_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_422_nearest<BGRA>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2RGB422_BL_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_422_bilinear<RGB>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2BGRA422_BL_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, uint8_t* pDst, int len) {
  return convert_422_bilinear<BGRA>(pY, pCb, pCr, pDst, len);
}
pqx_Status ColorYCC2RGB420_NN_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCb, const uint8_t* pCr,
                                 uint8_t* pDst0, uint8_t* pDst1, int len) {
  return convert_420_nearest<RGB>(pY0, pY1, pCb, pCr, pDst0, pDst1, len);
}
pqx_Status ColorYCC2BGRA420_NN_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCb, const uint8_t* pCr,
                                  uint8_t* pDst0, uint8_t* pDst1, int len) {
  return convert_420_nearest<BGRA>(pY0, pY1, pCb, pCr, pDst0, pDst1, len);
}
pqx_Status ColorYCC2RGB420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA, const uint8_t* pCrA,
                                 const uint8_t* pCbB, const uint8_t* pCrB, const uint8_t* pCbC, const uint8_t* pCrC,
                                 uint8_t* pDst0, uint8_t* pDst1, int len) {
  convert_420_bilinear<RGB>(pY0, pCbB, pCbA, pCrB, pCrA, pDst0, len);
  convert_420_bilinear<RGB>(pY1, pCbB, pCbC, pCrB, pCrC, pDst1, len);
  return PQX_OK;
}
pqx_Status ColorYCC2BGRA420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA, const uint8_t* pCrA,
                                  const uint8_t* pCbB, const uint8_t* pCrB, const uint8_t* pCbC, const uint8_t* pCrC,
                                  uint8_t* pDst0, uint8_t* pDst1, int len) {
  convert_420_bilinear<BGRA>(pY0, pCbB, pCbA, pCrB, pCrA, pDst0, len);
  convert_420_bilinear<BGRA>(pY1, pCbB, pCbC, pCrB, pCrC, pDst1, len);
  return PQX_OK;
}

pqx_Status ColorYCCK2CMYK444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr, const uint8_t* pK,
                                uint8_t* pDst, int len) {
  for (int i = 0; i < len; ++i) {
    const int cb = pCb[i], cr = pCr[i];
    const uint8_t* clipped = clip_table.data() - lowest + 2 * (255 - pY[i]);
    uint8_t* pixel = pDst + 4 * int64_t(i);
    pixel[0] = clipped[359 - tRCr[cr]];
    pixel[1] = clipped[tGCr[cr] - tGCb[cb]];
    pixel[2] = clipped[454 - tBCb[cb]];
    pixel[3] = pK[i];
  }
  return PQX_OK;
}

pqx_Status ColorYCC2RGB444_16S(const int16_t* pY, const int16_t* pCb, const int16_t* pCr, int16_t* pDst, int len) {
  const auto *y = any_address(pY), *cb = any_address(pCb), *cr = any_address(pCr);
  auto* d = any_address(pDst);
  for (int i = 0; i < len; ++i, d += 3) {
    const float yf = float(y[i]) * 1048576.0f - 2146959360.0f;
    const auto b = float(int32_t(uint32_t(cb[i] - 2048) << 20)), r = float(int32_t(uint32_t(cr[i] - 2048) << 20));
    d[0] = AnyAddress16(twelve_bits(r * 1.402f + yf));
    d[1] = AnyAddress16(twelve_bits(yf - b * 0.34414f - r * 0.71414f));
    d[2] = AnyAddress16(twelve_bits(b * 1.772f + yf));
  }
  return PQX_OK;
}

}  // namespace plain
