/// Inverse 8x8 transform in double precision: an 8-point pass over the columns, the same pass over the rows of the
/// results. A bias on the DC makes the final truncation a rounding.
#pragma once

#include "dct/block_8x8.h"
#include "dct/constants_8x8.h"
#include "pqx_video.h"

namespace pqx::dct {

// Shorter than C4: with it the DC gain of two passes is 0.99999999664, which decides exact halves.
inline constexpr double C4i = 0.35355339;

inline f64x2 operator*(f64x2 a, double c) { return a * f64x2{_mm_set1_pd(c)}; }

/// The values with one index of two rows or columns.
struct TwoLines {
  f64x2 at[8];
};

inline TwoLines inverse_pass(const TwoLines& X) {
  const f64x2 a = X.at[1] * C7 - X.at[7] * C1, b = X.at[7] * C7 + X.at[1] * C1;
  const f64x2 c = X.at[3] * C3 + X.at[5] * C5, d = X.at[5] * C3 - X.at[3] * C5;
  const f64x2 e = X.at[0] + X.at[4], f = X.at[0] - X.at[4];
  const f64x2 g = X.at[2] * C6 - X.at[6] * C2, h = X.at[6] * C6 + X.at[2] * C2;
  const f64x2 p = c + b, q = (b - c) * R2, r = d + a, t = (a - d) * R2, u = t + q, w = q - t;
  const f64x2 s0 = h + e * C4i, s3 = e * C4i - h, s1 = g + f * C4i, s2 = f * C4i - g;
  return {p + s0, u + s1, w + s2, r + s3, s3 - r, s2 - w, s1 - u, s0 - p};
}

/// 16-bit samples. 32 bits always hold a result: 64 coefficients make samples below 2^19. Only the low 16 are kept.
struct Residuals {
  static constexpr int dc_bias = 16388;
  int16_t* dst;

  void put(int y, i32x4 left, i32x4 right) const {
    store(dst + 8 * y, pack(left << 16 >> 16, right << 16 >> 16) - all_i16(2048));
  }
  static i32x4 truncated(f64x2 z) { return {_mm_cvttpd_epi32(z.v)}; }
};

/// Pixels. Scaled by 2^24, which is exact, a value outside of 0..255 leaves 32 bits, and saturating the conversion
/// saturates the pixel: from above by the minimum, from below because the conversion itself then gives -2^31.
struct Pixels {
  static constexpr int dc_bias = -1020;
  uint8_t* dst;
  int64_t step;

  void put(int y, i32x4 left, i32x4 right) const {
    const i16x8 words = pack(left >> 24, right >> 24);
    store_half(dst + y * step, u8x16{_mm_packs_epi16(words.v, words.v)} - all_u8(128));
  }
  static i32x4 truncated(f64x2 z) {
    return {_mm_cvttpd_epi32(_mm_min_pd((z * double(1 << 24)).v, _mm_set1_pd(2147483647.0)))};
  }
};

template <class Output>
pqx_Status inverse_8x8(Block X, Output output) {
  f64x2 columns[8][4];  // a row of results is four pairs of columns
  for (int pair = 0; pair < 4; ++pair) {
    TwoLines x;
    for (int u = 0; u < 8; ++u) {
      const __m128i two = _mm_cvtsi32_si128(_mm_cvtsi128_si32(X.row[u].v));
      i32x4 wide = i32x4{_mm_unpacklo_epi16(two, two)} >> 16;
      if (pair == 0 && u == 0) wide = wide + i32x4{_mm_cvtsi32_si128(Output::dc_bias)};
      x.at[u] = {_mm_cvtepi32_pd(wide.v)};
      X.row[u].v = _mm_srli_si128(X.row[u].v, 4);
    }
    x = inverse_pass(x);
    for (int y = 0; y < 8; ++y) columns[y][pair] = x.at[y];
  }
  for (int y = 0; y < 8; y += 2) {
    TwoLines z;
    for (int pair = 0; pair < 4; ++pair) {
      z.at[2 * pair].v = _mm_unpacklo_pd(columns[y][pair].v, columns[y + 1][pair].v);
      z.at[2 * pair + 1].v = _mm_unpackhi_pd(columns[y][pair].v, columns[y + 1][pair].v);
    }
    z = inverse_pass(z);
    __m128i left[2], right[2];
    for (int half = 0; half < 2; ++half) {
      const f64x2* four = z.at + 4 * half;
      const __m128i x01 = _mm_unpacklo_epi32(Output::truncated(four[0]).v, Output::truncated(four[1]).v);
      const __m128i x23 = _mm_unpacklo_epi32(Output::truncated(four[2]).v, Output::truncated(four[3]).v);
      (half ? right : left)[0] = _mm_unpacklo_epi64(x01, x23);
      (half ? right : left)[1] = _mm_unpackhi_epi64(x01, x23);
    }
    output.put(y, {left[0]}, {right[0]});
    output.put(y + 1, {left[1]}, {right[1]});
  }
  return PQX_OK;
}

/// The coefficients with u < 4 and v < 4, of which alone anything is read, among zeros.
inline Block load_quarter(const int16_t* src) {
  Block b = {};
  for (int u = 0; u < 4; ++u) b.row[u] = load_half<i16x8>(src + 8 * u);
  return b;
}

}  // namespace pqx::dct
