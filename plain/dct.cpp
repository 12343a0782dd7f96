#include <string.h>

#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

constexpr double C1 = 0.4903926402016152, C2 = 0.46193976625564337, C3 = 0.4157348061512726, C4 = 0.3535533905932738,
                 C5 = 0.27778511650980114, C6 = 0.19134171618254492, C7 = 0.09754516100806417,
                 R2 = 0.7071067811865476;

// One 8-point pass over values at a distance of stride. The sums of samples are exact integers, those of results
// single precision.
template <int stride, class T>
inline void forward_pass(const T* x, float* X) {
  const float s07 = float(x[0] + x[7 * stride]), s16 = float(x[stride] + x[6 * stride]),
              s25 = float(x[2 * stride] + x[5 * stride]), s34 = float(x[3 * stride] + x[4 * stride]);
  const float d07 = float(x[0] - x[7 * stride]), d16 = float(x[stride] - x[6 * stride]),
              d25 = float(x[2 * stride] - x[5 * stride]), d34 = float(x[3 * stride] - x[4 * stride]);
  const float b = s07 - s34, c = s16 - s25;
  const double a = double(s07 + s34) * C4, e = double(s16 + s25) * C4;
  X[0] = float(a + e);
  X[4 * stride] = float(a - e);
  X[2 * stride] = float(double(b) * C2 + double(c) * C6);
  X[6 * stride] = float(double(b) * C6 - double(c) * C2);
  const double m1 = double(d16) * R2, m2 = double(d25) * R2;
  const float p = float(m2 + m1), q = float(m1 - m2);
  const float g = d07 + p, h = d34 + q, j = d07 - p, k = d34 - q;
  X[stride] = float(double(g) * C1 + double(h) * C7);
  X[7 * stride] = float(double(g) * C7 - double(h) * C1);
  X[3 * stride] = float(double(j) * C3 - double(k) * C5);
  X[5 * stride] = float(double(j) * C5 + double(k) * C3);
}

template <class T>
pqx_Status forward(const T* src, int64_t step, int16_t* dst) {
  float block[64];
  for (int y = 0; y < 8; ++y) forward_pass<1>(src + y * step, block + 8 * y);
  for (int v = 0; v < 8; ++v) forward_pass<8>(block + v, block + v);
  for (int i = 0; i < 64; ++i) any_address(dst)[i] = AnyAddress16(int(double(block[i]) + 4096.5) - 4096);
  return PQX_OK;
}

constexpr double C4i = 0.35355339;  // of the inverse alone

// One inverse 8-point pass in place; the first n inputs count, the others are taken as zero. Scale multiplies every
// constant but R2.
template <int n, int stride>
inline void inverse_pass(double* values, double scale) {
  const double c1 = C1 * scale, c2 = C2 * scale, c3 = C3 * scale, c4 = C4i * scale, c5 = C5 * scale, c6 = C6 * scale,
               c7 = C7 * scale;
  const auto X = [=](int k) { return k < n ? values[k * stride] : 0.0; };
  const double a = X(1) * c7 - X(7) * c1, b = X(7) * c7 + X(1) * c1;
  const double c = X(3) * c3 + X(5) * c5, d = X(5) * c3 - X(3) * c5;
  const double e = X(0) + X(4), f = X(0) - X(4), g = X(2) * c6 - X(6) * c2, h = X(6) * c6 + X(2) * c2;
  const double p = c + b, q = (b - c) * R2, r = d + a, t = (a - d) * R2, u = t + q, w = q - t;
  const double s0 = h + e * c4, s3 = e * c4 - h, s1 = g + f * c4, s2 = f * c4 - g;
  values[0] = p + s0;
  values[stride] = u + s1;
  values[2 * stride] = w + s2;
  values[3 * stride] = r + s3;
  values[4 * stride] = s3 - r;
  values[5 * stride] = s2 - w;
  values[6 * stride] = s1 - u;
  values[7 * stride] = s0 - p;
}

/// The inverse of the coefficients with u < n and v < n, of which alone anything is read.
template <int n>
void inverse(const int16_t* src, int dc_bias, double scale, double* block) {
  for (int u = 0; u < n; ++u)
    for (int v = 0; v < n; ++v) block[8 * u + v] = any_address(src)[8 * u + v];
  block[0] += dc_bias;
  for (int v = 0; v < n; ++v) inverse_pass<n, 8>(block + v, 1);
  for (int y = 0; y < 8; ++y) inverse_pass<n, 1>(block + 8 * y, scale);
}

template <int n>
pqx_Status inverse_to_samples(const int16_t* src, int16_t* dst) {
  double block[64];
  inverse<n>(src, 16388, 1, block);
  for (int i = 0; i < 64; ++i) any_address(dst)[i] = AnyAddress16(int(block[i]) - 2048);
  return PQX_OK;
}

uint8_t pixel(double z) {
  if (z > 2147483647.0) return 255;
  if (!(z > -2147483648.0)) return 0;
  return uint8_t((uint32_t(int(z)) >> 24) - 128);
}

template <int n>
pqx_Status inverse_to_pixels(const int16_t* src, uint8_t* dst, int64_t step) {
  double block[64];
  inverse<n>(src, -1020, 1 << 24, block);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) dst[y * step + x] = pixel(block[8 * y + x]);
  return PQX_OK;
}

}  // namespace

pqx_Status DCT8x8Fwd_16S(const int16_t* pSrc, int16_t* pDst) { return forward(any_address(pSrc), 8, pDst); }
pqx_Status DCT8x8Fwd_12S_16S(const int16_t* pSrc, int16_t* pDst) { return forward(any_address(pSrc), 8, pDst); }
pqx_Status DCT8x8Fwd_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) { return forward(pSrc, srcStep, pDst); }

pqx_Status DCT8x8Inv_16S(const int16_t* pSrc, int16_t* pDst) { return inverse_to_samples<8>(pSrc, pDst); }
pqx_Status DCT8x8Inv_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  return inverse_to_pixels<8>(pSrc, pDst, dstStep);
}
pqx_Status DCT8x8Inv_1Q_16S(const int16_t* pSrc, int16_t* pDst) { return inverse_to_samples<4>(pSrc, pDst); }
pqx_Status DCT8x8Inv_1Q_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  return inverse_to_pixels<4>(pSrc, pDst, dstStep);
}

pqx_Status DCT8x8Inv_DC_16S(const int16_t* pSrc, int16_t* pDst) {
  const int sample = (*any_address(pSrc) + 4) >> 3;
  for (int i = 0; i < 64; ++i) any_address(pDst)[i] = AnyAddress16(sample);
  return PQX_OK;
}
pqx_Status DCT8x8Inv_DC_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  const int dc = *any_address(pSrc);
  const int pixel = dc < 0 ? 0 : dc >= 2044 ? 255 : (dc + 4) >> 3;
  for (int64_t y = 0; y < 8; ++y) memset(pDst + y * dstStep, pixel, 8);
  return PQX_OK;
}

}  // namespace plain
