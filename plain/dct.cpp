#include <string.h>

#include "plain.h"

namespace plain {
namespace {

constexpr double C1 = 0.4903926402016152, C2 = 0.46193976625564337, C3 = 0.4157348061512726, C4 = 0.3535533905932738,
                 C5 = 0.27778511650980114, C6 = 0.19134171618254492, C7 = 0.09754516100806417,
                 R2 = 0.7071067811865476;

// One 8-point pass. T is int for samples, whose sums are exact, and float for columns of results.
template <class T>
void forward_pass(const T (&x)[8], float (&X)[8]) {
  const float s07 = float(x[0] + x[7]), s16 = float(x[1] + x[6]), s25 = float(x[2] + x[5]), s34 = float(x[3] + x[4]);
  const float d07 = float(x[0] - x[7]), d16 = float(x[1] - x[6]), d25 = float(x[2] - x[5]), d34 = float(x[3] - x[4]);
  const float b = s07 - s34, c = s16 - s25;
  const double a = double(s07 + s34) * C4, e = double(s16 + s25) * C4;
  X[0] = float(a + e);
  X[4] = float(a - e);
  X[2] = float(double(b) * C2 + double(c) * C6);
  X[6] = float(double(b) * C6 - double(c) * C2);
  const double m1 = double(d16) * R2, m2 = double(d25) * R2;
  const float p = float(m2 + m1), q = float(m1 - m2);
  const float g = d07 + p, h = d34 + q, j = d07 - p, k = d34 - q;
  X[1] = float(double(g) * C1 + double(h) * C7);
  X[7] = float(double(g) * C7 - double(h) * C1);
  X[3] = float(double(j) * C3 - double(k) * C5);
  X[5] = float(double(j) * C5 + double(k) * C3);
}

template <class Sample>
pqx_Status forward(const void* src, int64_t step_bytes, void* dst) {
  float rows[8][8];
  for (int y = 0; y < 8; ++y) {
    Sample row[8];
    memcpy(row, static_cast<const char*>(src) + y * step_bytes, sizeof row);
    int x[8];
    for (int i = 0; i < 8; ++i) x[i] = row[i];
    forward_pass(x, rows[y]);
  }
  int16_t out[64];
  for (int v = 0; v < 8; ++v) {
    float x[8], X[8];
    for (int y = 0; y < 8; ++y) x[y] = rows[y][v];
    forward_pass(x, X);
    for (int u = 0; u < 8; ++u) out[8 * u + v] = int16_t(int32_t(double(X[u]) + 4096.5) - 4096);
  }
  memcpy(dst, out, sizeof out);
  return PQX_OK;
}

// The DC gain of the inverse is a little below 1, not C4.
constexpr double C4i = 0.35355339;

/// One inverse 8-point pass over the first n inputs, every constant but R2 multiplied by scale.
template <int n>
void inverse_pass(const double* X, double scale, double (&x)[8]) {
  const auto in = [X](int k) { return k < n ? X[k] : 0.0; };
  const double c1 = C1 * scale, c2 = C2 * scale, c3 = C3 * scale, c4 = C4i * scale, c5 = C5 * scale, c6 = C6 * scale,
               c7 = C7 * scale;
  const double a = in(1) * c7 - in(7) * c1, b = in(7) * c7 + in(1) * c1, c = in(3) * c3 + in(5) * c5,
               d = in(5) * c3 - in(3) * c5;
  const double e = in(0) + in(4), f = in(0) - in(4), g = in(2) * c6 - in(6) * c2, h = in(6) * c6 + in(2) * c2;
  const double p = c + b, q = (b - c) * R2, r = d + a, t = (a - d) * R2, u = t + q, w = q - t;
  const double s0 = h + e * c4, s3 = e * c4 - h, s1 = g + f * c4, s2 = f * c4 - g;
  x[0] = p + s0;
  x[1] = u + s1;
  x[2] = w + s2;
  x[3] = r + s3;
  x[4] = s3 - r;
  x[5] = s2 - w;
  x[6] = s1 - u;
  x[7] = s0 - p;
}

struct Residual {
  static constexpr int dc_bias = 16388;
  static constexpr double scale = 1;
  using Sample = int16_t;
  static Sample convert(double z) { return Sample(int32_t(z) - 2048); }
};

struct Pixel {
  static constexpr int dc_bias = -1020;
  static constexpr double scale = 1 << 24;
  using Sample = uint8_t;
  static Sample convert(double z) {
    if (z > 2147483647.0) return 255;
    if (!(z > -2147483648.0)) return 0;
    return Sample((uint32_t(int32_t(z)) >> 24) - 128);
  }
};

/// The inverse of the coefficients with u < n and v < n; no other is read.
template <class Output, int n>
pqx_Status inverse(const void* src, void* dst, int64_t step_bytes) {
  double columns[8][8];
  int16_t in[8][n];
  for (int u = 0; u < n; ++u) memcpy(in[u], static_cast<const char*>(src) + 16 * u, sizeof in[u]);
  for (int v = 0; v < n; ++v) {
    double X[8];
    for (int u = 0; u < n; ++u) X[u] = in[u][v];
    if (v == 0) X[0] += Output::dc_bias;
    inverse_pass<n>(X, 1, columns[v]);
  }
  for (int y = 0; y < 8; ++y) {
    double X[8], x[8];
    for (int v = 0; v < n; ++v) X[v] = columns[v][y];
    inverse_pass<n>(X, Output::scale, x);
    typename Output::Sample row[8];
    for (int i = 0; i < 8; ++i) row[i] = Output::convert(x[i]);
    memcpy(static_cast<char*>(dst) + y * step_bytes, row, sizeof row);
  }
  return PQX_OK;
}

int first(const int16_t* p) {
  int16_t value;
  memcpy(&value, p, sizeof value);
  return value;
}

}  // namespace

pqx_Status DCT8x8Fwd_16S(const int16_t* pSrc, int16_t* pDst) { return forward<int16_t>(pSrc, 16, pDst); }
pqx_Status DCT8x8Fwd_12S_16S(const int16_t* pSrc, int16_t* pDst) { return forward<int16_t>(pSrc, 16, pDst); }
pqx_Status DCT8x8Fwd_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  return forward<uint8_t>(pSrc, srcStep, pDst);
}

pqx_Status DCT8x8Inv_16S(const int16_t* pSrc, int16_t* pDst) { return inverse<Residual, 8>(pSrc, pDst, 16); }
pqx_Status DCT8x8Inv_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  return inverse<Pixel, 8>(pSrc, pDst, dstStep);
}
pqx_Status DCT8x8Inv_1Q_16S(const int16_t* pSrc, int16_t* pDst) { return inverse<Residual, 4>(pSrc, pDst, 16); }
pqx_Status DCT8x8Inv_1Q_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  return inverse<Pixel, 4>(pSrc, pDst, dstStep);
}

pqx_Status DCT8x8Inv_DC_16S(const int16_t* pSrc, int16_t* pDst) {
  int16_t out[64];
  const auto value = int16_t((first(pSrc) + 4) >> 3);
  for (int16_t& sample : out) sample = value;
  memcpy(pDst, out, sizeof out);
  return PQX_OK;
}
pqx_Status DCT8x8Inv_DC_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  const int dc = first(pSrc);
  const int pixel = dc < 0 ? 0 : dc >= 2044 ? 255 : (dc + 4) >> 3;
  for (int64_t y = 0; y < 8; ++y) memset(pDst + y * dstStep, pixel, 8);
  return PQX_OK;
}

}  // namespace plain
