#include <algorithm>

#include "any_address.h"
#include "pixels.h"
#include "plain.h"

namespace plain {
namespace {

struct Ycc {
  int y, cb, cr;
};

template <Layout L>
void put(uint8_t* pixel, Ycc c) {
  const uint8_t* clipped = clip_from(2 * c.y);
  pixel[L.r] = clipped[pqx_tRCr[c.cr] - 359];
  pixel[L.g] = clipped[pqx_tGCb[c.cb] - pqx_tGCr[c.cr]];
  pixel[L.b] = clipped[pqx_tBCb[c.cb] - 454];
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

/// One row of a pair, its chroma from the nearer and the farther chroma row.
template <Layout L>
void convert_420_bilinear(const uint8_t* y, const uint8_t* cb_near, const uint8_t* cb_far, const uint8_t* cr_near,
                          const uint8_t* cr_far, uint8_t* dst, int len) {
  const int columns = std::max(len / 2, 2);
  for (int i = 0; i < len; ++i) {
    const int x = std::min(i, 2 * columns - 1), j = x / 2;  // an odd last pixel has its neighbour's chroma
    const int next = x % 2 ? std::min(j + 1, columns - 1) : std::max(j - 1, 0), half = x % 2 ? 7 : 8;
    const auto chroma = [=](const uint8_t* near, const uint8_t* far) {
      return (3 * (3 * near[j] + far[j]) + 3 * near[next] + far[next] + half) >> 4;
    };
    put<L>(dst + L.bytes * int64_t(i), {y[i], chroma(cb_near, cb_far), chroma(cr_near, cr_far)});
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
    const uint8_t* clipped = clip_from(2 * (255 - pY[i]));
    uint8_t* pixel = pDst + 4 * int64_t(i);
    pixel[0] = clipped[359 - pqx_tRCr[cr]];
    pixel[1] = clipped[pqx_tGCr[cr] - pqx_tGCb[cb]];
    pixel[2] = clipped[454 - pqx_tBCb[cb]];
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
