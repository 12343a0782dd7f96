/// Forward 8x8 transform: an 8-point pass over the rows, the same pass over the columns of the results.
///
/// The types decide the last bit: sums of inputs are single precision, each product with a constant and each sum of
/// two products is double precision, and every result of a pass is rounded to single precision.
#pragma once

#include "dct/block_8x8.h"
#include "dct/constants_8x8.h"
#include "pqx_video.h"

namespace pqx::dct {

/// Four lanes in double precision.
struct f64x4 {
  f64x2 low, high;
};
inline f64x4 widened(f32x4 a) {
  return {{_mm_cvtps_pd(a.v)},
          {_mm_cvtps_pd(_mm_castsi128_ps(_mm_unpackhi_epi64(_mm_castps_si128(a.v), _mm_castps_si128(a.v))))}};
}
inline f32x4 narrowed(f64x4 a) {
  return {_mm_castsi128_ps(
      _mm_unpacklo_epi64(_mm_castps_si128(_mm_cvtpd_ps(a.low.v)), _mm_castps_si128(_mm_cvtpd_ps(a.high.v))))};
}
inline f64x4 operator+(f64x4 a, f64x4 b) { return {a.low + b.low, a.high + b.high}; }
inline f64x4 operator-(f64x4 a, f64x4 b) { return {a.low - b.low, a.high - b.high}; }
inline f64x4 operator*(f64x4 a, const Factor& c) { return {a.low * c, a.high * c}; }

/// The values with one index of four rows or columns.
struct FourLines {
  f32x4 at[8];
};

[[gnu::always_inline]] inline FourLines forward_pass(const FourLines& x) {
  const f32x4 s07 = x.at[0] + x.at[7], s16 = x.at[1] + x.at[6], s25 = x.at[2] + x.at[5], s34 = x.at[3] + x.at[4];
  const f32x4 d07 = x.at[0] - x.at[7], d16 = x.at[1] - x.at[6], d25 = x.at[2] - x.at[5], d34 = x.at[3] - x.at[4];
  FourLines X;
  const f64x4 a = widened(s07 + s34) * forward_cosines.c4, e = widened(s16 + s25) * forward_cosines.c4;
  X.at[0] = narrowed(a + e);
  X.at[4] = narrowed(a - e);
  const f64x4 b = widened(s07 - s34), c = widened(s16 - s25);
  X.at[2] = narrowed(b * forward_cosines.c2 + c * forward_cosines.c6);
  X.at[6] = narrowed(b * forward_cosines.c6 - c * forward_cosines.c2);
  const f64x4 m1 = widened(d16) * half_root, m2 = widened(d25) * half_root;
  const f32x4 p = narrowed(m2 + m1), q = narrowed(m1 - m2);
  const f64x4 g = widened(d07 + p), h = widened(d34 + q), j = widened(d07 - p), k = widened(d34 - q);
  X.at[1] = narrowed(g * forward_cosines.c1 + h * forward_cosines.c7);
  X.at[7] = narrowed(g * forward_cosines.c7 - h * forward_cosines.c1);
  X.at[3] = narrowed(j * forward_cosines.c3 - k * forward_cosines.c5);
  X.at[5] = narrowed(j * forward_cosines.c5 + k * forward_cosines.c3);
  return X;
}

inline f32x4 to_float(i32x4 a) { return {_mm_cvtepi32_ps(a.v)}; }
inline i32x4 low_words(i16x8 a) { return i32x4{_mm_unpacklo_epi16(a.v, a.v)} >> 16; }
inline i32x4 high_words(i16x8 a) { return i32x4{_mm_unpackhi_epi16(a.v, a.v)} >> 16; }

// Columns first to first + 3 of eight rows' results, of which upper holds rows 0 to 3.
inline FourLines columns(const FourLines& upper, const FourLines& lower, int first) {
  FourLines c;
#pragma GCC unroll 8
  for (int half = 0; half < 2; ++half) {
    const f32x4* r = (half ? lower : upper).at + first;
    __m128i a0 = _mm_castps_si128(r[0].v), a1 = _mm_castps_si128(r[1].v), a2 = _mm_castps_si128(r[2].v),
            a3 = _mm_castps_si128(r[3].v);
    __m128i b0 = _mm_unpacklo_epi32(a0, a1), b1 = _mm_unpacklo_epi32(a2, a3), b2 = _mm_unpackhi_epi32(a0, a1),
            b3 = _mm_unpackhi_epi32(a2, a3);
    __m128 c0 = _mm_castsi128_ps(_mm_unpacklo_epi64(b0, b1)), c1 = _mm_castsi128_ps(_mm_unpackhi_epi64(b0, b1)),
           c2 = _mm_castsi128_ps(_mm_unpacklo_epi64(b2, b3)), c3 = _mm_castsi128_ps(_mm_unpackhi_epi64(b2, b3));
    f32x4* to = c.at + 4 * half;
    to[0] = {c0}, to[1] = {c1}, to[2] = {c2}, to[3] = {c3};
  }
  return c;
}

// z + 4096.5 truncated is z rounded with halves upward wherever it is positive. 32 bits always hold it: 64 samples
// make coefficients below 2^19. Only the low 16 bits are kept.
inline i32x4 offset_and_truncated(f32x4 z) {
  const f64x2 offset = {_mm_set1_pd(4096.5)};
  const f64x4 wide = widened(z);
  return {_mm_unpacklo_epi64(_mm_cvttpd_epi32((wide.low + offset).v), _mm_cvttpd_epi32((wide.high + offset).v))};
}
inline i32x4 low_word_extended(i32x4 a) { return a << 16 >> 16; }

inline pqx_Status forward_8x8(const Block& samples, int16_t* dst) {
  const Block x = transposed(samples);
  FourLines upper, lower;
#pragma GCC unroll 8
  for (int k = 0; k < 8; ++k) {
    upper.at[k] = to_float(low_words(x.row[k]));
    lower.at[k] = to_float(high_words(x.row[k]));
  }
  upper = forward_pass(upper);
  lower = forward_pass(lower);
  const FourLines left = forward_pass(columns(upper, lower, 0)), right = forward_pass(columns(upper, lower, 4));
#pragma GCC unroll 8
  for (int u = 0; u < 8; ++u) {
    const i32x4 a = offset_and_truncated(left.at[u]), b = offset_and_truncated(right.at[u]);
    store(dst + 8 * u, pack(low_word_extended(a), low_word_extended(b)) - all_i16(4096));
  }
  return PQX_OK;
}

}  // namespace pqx::dct
