/// Forward 8x8 transform: an 8-point pass over the rows, the same pass over the columns of the results.
///
/// The types decide the last bit: sums of inputs are single precision, each product with a constant and each sum of
/// two products is double precision, and every result of a pass is rounded to single precision.
#pragma once

#include "dct/block_8x8.h"
#include "dct/constants_8x8.h"

namespace pqx::dct {

/// Four lanes in double precision.
struct f64x4 {
  f64x2 low, high;
};
/// By way of memory: from there the conversion needs no shuffle. Compilers know it only between registers.
inline f64x4 widened(f32x4 a) {
  struct {
    struct Two {
      float at[2];
    } low, high;
  } half;
  store(&half, a);
  f64x4 wide;
  asm("cvtps2pd %1, %0" : "=x"(wide.low.v) : "m"(half.low));
  asm("cvtps2pd %1, %0" : "=x"(wide.high.v) : "m"(half.high));
  return wide;
}
inline f32x4 narrowed(f64x4 a) {
  const __m128i low = _mm_castps_si128(_mm_cvtpd_ps(a.low.v)), high = _mm_castps_si128(_mm_cvtpd_ps(a.high.v));
  return {_mm_castsi128_ps(_mm_unpacklo_epi64(low, high))};
}
inline f64x4 operator+(f64x4 a, f64x4 b) { return {a.low + b.low, a.high + b.high}; }
inline f64x4 operator-(f64x4 a, f64x4 b) { return {a.low - b.low, a.high - b.high}; }
inline f64x4 operator*(f64x4 a, const Factor& c) { return {a.low * c, a.high * c}; }

[[gnu::always_inline]] inline Lines<f32x4> forward_pass(const Lines<f32x4>& x) {
  const Cosines& k = forward_cosines;
  const f32x4 s07 = x.at[0] + x.at[7], s16 = x.at[1] + x.at[6], s25 = x.at[2] + x.at[5], s34 = x.at[3] + x.at[4];
  const f32x4 d07 = x.at[0] - x.at[7], d16 = x.at[1] - x.at[6], d25 = x.at[2] - x.at[5], d34 = x.at[3] - x.at[4];
  Lines<f32x4> X;
  const f64x4 a = widened(s07 + s34) * k.c4, e = widened(s16 + s25) * k.c4;
  X.at[0] = narrowed(a + e);
  X.at[4] = narrowed(a - e);
  const f64x4 b = widened(s07 - s34), c = widened(s16 - s25);
  X.at[2] = narrowed(b * k.c2 + c * k.c6);
  X.at[6] = narrowed(b * k.c6 - c * k.c2);
  const f64x4 m1 = widened(d16) * half_root, m2 = widened(d25) * half_root;
  const f32x4 p = narrowed(m2 + m1), q = narrowed(m1 - m2);
  const f64x4 g = widened(d07 + p), h = widened(d34 + q), i = widened(d07 - p), j = widened(d34 - q);
  X.at[1] = narrowed(g * k.c1 + h * k.c7);
  X.at[7] = narrowed(g * k.c7 - h * k.c1);
  X.at[3] = narrowed(i * k.c3 - j * k.c5);
  X.at[5] = narrowed(i * k.c5 + j * k.c3);
  return X;
}

/// Result v of the pass alone.
inline f32x4 forward_pass(const Lines<f32x4>& x, int v) {
  const Result& k = forward_results[v];
  f32x4 first, second;
  if (v % 2 == 0) {
    const f32x4 s07 = x.at[0] + x.at[7], s16 = x.at[1] + x.at[6], s25 = x.at[2] + x.at[5], s34 = x.at[3] + x.at[4];
    first = s07 + s34 * k.sign;
    second = s16 + s25 * k.sign;
  } else {
    const f32x4 d07 = x.at[0] - x.at[7], d16 = x.at[1] - x.at[6], d25 = x.at[2] - x.at[5], d34 = x.at[3] - x.at[4];
    const f64x4 m1 = widened(d16) * half_root, m2 = widened(d25) * half_root;
    first = d07 + narrowed(m2 + m1) * k.sign;
    second = d34 + narrowed(m1 - m2) * k.sign;
  }
  return narrowed(widened(first) * k.first + widened(second) * k.second);
}

/// Samples of rows 0 to 3 and 4 to 7 from the columns of a block; their sums are exact.
inline Lines<f32x4> upper_rows(const Block& columns) {
  Lines<f32x4> x;
#pragma GCC unroll 8
  for (int k = 0; k < 8; ++k) x.at[k] = floats(as<i32x4>(interleave_low(columns.row[k], columns.row[k])) >> 16);
  return x;
}
inline Lines<f32x4> lower_rows(const Block& columns) {
  Lines<f32x4> x;
#pragma GCC unroll 8
  for (int k = 0; k < 8; ++k) x.at[k] = floats(as<i32x4>(interleave_high(columns.row[k], columns.row[k])) >> 16);
  return x;
}

// z + 4096.5 truncated is z + 4096 rounded, halves upward, where it is positive. 64 samples make coefficients below
// 2^19, so that 32 bits hold it; the low 16 count.
inline i32x4 rounded_plus_4096(f32x4 z) {
  const f64x2 offset = {_mm_set1_pd(4096.5)};
  const f64x4 wide = widened(z);
  return {_mm_unpacklo_epi64(_mm_cvttpd_epi32((wide.low + offset).v), _mm_cvttpd_epi32((wide.high + offset).v))};
}

/// The coefficients of the block with these columns.
inline Block forward_typed(const Block& columns) {
  const Lines<f32x4> upper = forward_pass(upper_rows(columns)), lower = forward_pass(lower_rows(columns));
  const Lines<f32x4> even = forward_pass(four_columns<0, 2>(upper, lower));
  const Lines<f32x4> odd = forward_pass(four_columns<1, 2>(upper, lower));
  Block result;
#pragma GCC unroll 8
  for (int u = 0; u < 8; ++u) {
    const i32x4 words = (rounded_plus_4096(even.at[u]) & all_i32(0xffff)) | rounded_plus_4096(odd.at[u]) << 16;
    result.row[u] = as<i16x8>(words) - all_i16(4096);
  }
  return result;
}

}  // namespace pqx::dct
