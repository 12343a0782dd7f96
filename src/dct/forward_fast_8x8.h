/// Forward 8x8 transform of samples of few bits in single precision, which is much faster and decides nearly always.
///
/// Here as in the typed arithmetic a rounding errs by at most half a unit in the last place of the largest value that
/// the samples can bring there. Carried to the results and added to what the constants err, that makes
///
///     |fast - typed| <= 2.15 * 2^-12 for samples 0..255 and 2.15 * 2^-11 for samples -256..255,
///
/// which tests/dct/internal computes. A result farther than that from every n + 1/2 is rounded to the same integer; a
/// column that holds a closer one is computed anew as the types demand. The four coefficients with u and v in {0, 4}
/// are multiples of 1/8 and often lie on n + 1/2, so they are always typed.
#pragma once

#include "dct/forward_8x8.h"

namespace pqx::dct {

/// One value of eight rows.
struct EightRows {
  f32x4 upper, lower;
};
inline EightRows operator+(EightRows a, EightRows b) { return {a.upper + b.upper, a.lower + b.lower}; }
inline EightRows operator-(EightRows a, EightRows b) { return {a.upper - b.upper, a.lower - b.lower}; }
inline EightRows operator*(EightRows a, const Factor& c) { return {a.upper * c, a.lower * c}; }

/// n * c4 as typed, for |n| <= 2048. The upper part of c4 has so few bits that its product is exact; with the lower
/// part the sum is rounded as a product in double precision would be. Words enter as high halves: times 2^16.
inline EightRows typed_c4_product(i16x8 n) {
  const i16x8 zero = all_i16(0);
  const EightRows f = {floats(as<i32x4>(interleave_low(zero, n))), floats(as<i32x4>(interleave_high(zero, n)))};
  return f * c4_high + f * c4_low;
}

/// ka * a + kb * b. The constants below leave it under 2^24, so that it is exact.
struct Pairs {
  i16x8 upper, lower;
  Pairs(i16x8 a, i16x8 b) : upper(interleave_low(a, b)), lower(interleave_high(a, b)) {}
};
inline EightRows products(const Pairs& ab, int ka, int kb) {
  const auto k = alternating<i16x8>(ka, kb);
  return {floats(pair_products(ab.upper, k)), floats(pair_products(ab.lower, k))};
}

struct RowResults {
  Lines<f32x4> upper, lower;
  void set(int v, EightRows X) { upper.at[v] = X.upper, lower.at[v] = X.lower; }
};

/// The row pass, in integers as far as they go. 5741 : 2378 is c2 : c6 and 8119 : 5741 is sqrt(2), to 25 bits and
/// more; results 1 to 3 and 5 to 7 keep factors that the column pass divides out.
[[gnu::always_inline]] inline RowResults scaled_row_pass(const Block& x) {
  const i16x8 s07 = x.row[0] + x.row[7], s16 = x.row[1] + x.row[6], s25 = x.row[2] + x.row[5],
              s34 = x.row[3] + x.row[4];
  const i16x8 d07 = x.row[0] - x.row[7], d16 = x.row[1] - x.row[6], d25 = x.row[2] - x.row[5],
              d34 = x.row[3] - x.row[4];
  RowResults X;
  X.set(0, typed_c4_product(s07 + s34 + (s16 + s25)));
  X.set(4, typed_c4_product(s07 + s34 - (s16 + s25)));
  const Pairs bc(s07 - s34, s16 - s25);
  X.set(2, products(bc, 5741, 2378));
  X.set(6, products(bc, 2378, -5741));
  const Pairs first(d07, d25 + d16), second(d34, d16 - d25);
  const EightRows g = products(first, 8119, 5741), h = products(second, 8119, 5741);
  X.set(1, g + h * c7_over_c1);
  X.set(7, g * c7_over_c1 - h);
  const EightRows i = products(first, 8119, -5741), j = products(second, 8119, -5741);
  X.set(3, i - j * c5_over_c3);
  X.set(5, i * c5_over_c3 + j);
  return X;
}

/// Rounds results to integers and remembers how close they came to n + 1/2, in units of 2^-bits.
template <int bits>
struct Rounding {
  static constexpr int band = 2;
  static constexpr double safe_distance = (band + 0.5) / (1 << bits);

  i32x4 above_band = all_i32(32767);

  // A result below the limit added to this has the unit as its last place, and its low bits count the units from the
  // lower end of the band around n + 1/2. The sum is rounded to the unit, so that whatever seems to be outside of the
  // band is at least half a unit farther out.
  static constexpr int limit = 1 << (22 - bits);
  static constexpr float origin = 3 * limit + 0.5f + float(band) / (1 << bits);

  [[gnu::always_inline]] i32x4 operator()(f32x4 z) {
    const i32x4 sum = {_mm_castps_si128(_mm_add_ps(z.v, _mm_set1_ps(origin)))};
    above_band = {_mm_min_epi16(above_band.v, (sum & all_i32((1 << bits) - 1)).v)};
    return {_mm_cvtps_epi32(z.v)};
  }
  i32x4 too_close() const { return {_mm_cmplt_epi32(above_band.v, all_i32(2 * band + 1).v)}; }
};
using RoundPixels = Rounding<12>;     // of samples 0..255
using RoundResiduals = Rounding<11>;  // of samples -256..255

struct FourColumns {
  Lines<i32x4> result;
  f32x4 s0734, s1625;
};

/// The column pass. The factors of the first column of the four make its results 0 and 4 zero, far from 1/2.
template <class Round>
[[gnu::always_inline]] inline FourColumns fast_column_pass(const Lines<f32x4>& x, const ColumnCosines& k,
                                                           Round& round) {
  const f32x4 s07 = x.at[0] + x.at[7], s16 = x.at[1] + x.at[6], s25 = x.at[2] + x.at[5], s34 = x.at[3] + x.at[4];
  FourColumns X;
  X.s0734 = s07 + s34;
  X.s1625 = s16 + s25;
  X.result.at[0] = round((X.s0734 + X.s1625) * k.c4);
  X.result.at[4] = round((X.s0734 - X.s1625) * k.c4);
  const f32x4 b = s07 - s34, c = s16 - s25;
  X.result.at[2] = round(b * k.c2 + c * k.c6);
  X.result.at[6] = round(b * k.c6 - c * k.c2);
  const f32x4 d07 = x.at[0] - x.at[7], d16 = x.at[1] - x.at[6], d25 = x.at[2] - x.at[5], d34 = x.at[3] - x.at[4];
  const f32x4 p = (d25 + d16) * half_root, q = (d16 - d25) * half_root;
  const f32x4 g = d07 + p, h = d34 + q, i = d07 - p, j = d34 - q;
  X.result.at[1] = round(g * k.c1 + h * k.c7);
  X.result.at[7] = round(g * k.c7 - h * k.c1);
  X.result.at[3] = round(i * k.c3 - j * k.c5);
  X.result.at[5] = round(i * k.c5 + j * k.c3);
  return X;
}

/// Adds coefficients 0 and 4 of rows 0 and 4 to a result that holds zero there: the first columns' sums are as typed.
inline void add_typed_corners(const FourColumns& left, const FourColumns& right, Block& result) {
  const f64x2 a = f64x2{_mm_cvtps_pd(_mm_unpacklo_ps(left.s0734.v, right.s0734.v))} * forward_cosines.c4;
  const f64x2 e = f64x2{_mm_cvtps_pd(_mm_unpacklo_ps(left.s1625.v, right.s1625.v))} * forward_cosines.c4;
  const f32x4 z = narrowed({a + e, a - e});
  const i32x4 nearest = {_mm_cvtps_epi32(z.v)};  // halves to even, so that one in two has yet to go up
  const i32x4 down_from_half = {_mm_castps_si128(_mm_cmpeq_ps((z - floats(nearest)).v, _mm_set1_ps(0.5f)))};
  const i32x4 words = (nearest - down_from_half) & all_i32(0xffff);
  result.row[0] = result.row[0] | as<i16x8>(interleave_low(words, all_i32(0)));
  result.row[4] = result.row[4] | as<i16x8>(interleave_high(words, all_i32(0)));
}

template <int y>
f32x4 everywhere(f32x4 a) {
  return {_mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(y, y, y, y))};
}

/// Computes columns anew, those whose bits are set. Loads the samples again, as the usual case does not keep them.
template <class Load>
[[gnu::noinline]] void redo_typed(Load load, unsigned columns, Block& result) {
  const Block samples = load();
  const Lines<f32x4> x_upper = upper_rows(samples), x_lower = lower_rows(samples);
  for (; columns; columns &= columns - 1) {
    const int v = __builtin_ctz(columns);
    const f32x4 upper = forward_pass(x_upper, v), lower = forward_pass(x_lower, v);
    const Lines<f32x4> z =
        forward_pass({everywhere<0>(upper), everywhere<1>(upper), everywhere<2>(upper), everywhere<3>(upper),
                      everywhere<0>(lower), everywhere<1>(lower), everywhere<2>(lower), everywhere<3>(lower)});
    const i16x8 column = {_mm_cmpeq_epi16(all_i16(v).v, _mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7))};
    for (int u = 0; u < 8; ++u) {
      const i32x4 coefficient = rounded_plus_4096(z.at[u]) - all_i32(4096);
      result.row[u] = {_mm_or_si128(_mm_andnot_si128(column.v, result.row[u].v),
                                    _mm_and_si128(column.v, pack(coefficient, coefficient).v))};
    }
  }
}

/// The coefficients of the block whose columns are loaded.
template <class Round, class Load>
[[gnu::always_inline]] inline Block forward_fast(Load load) {
  const RowResults rows = scaled_row_pass(load());
  Round round_left, round_right;
  const FourColumns left = fast_column_pass(four_columns<0, 1>(rows.upper, rows.lower), left_cosines, round_left);
  const FourColumns right = fast_column_pass(four_columns<4, 1>(rows.upper, rows.lower), right_cosines, round_right);
  Block result;
#pragma GCC unroll 8
  for (int u = 0; u < 8; ++u) result.row[u] = pack(left.result.at[u], right.result.at[u]);
  add_typed_corners(left, right, result);
  const i16x8 too_close = pack(round_left.too_close(), round_right.too_close());
  if (const int columns = _mm_movemask_epi8(_mm_packs_epi16(too_close.v, _mm_setzero_si128()))) [[unlikely]] {
    Block redone = result;
    redo_typed(load, unsigned(columns), redone);
    return redone;
  }
  return result;
}

inline bool all_in_nine_bits(const Block& samples) {
  i16x8 offset_samples = all_i16(0);
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) offset_samples = offset_samples | (samples.row[y] + all_i16(256));
  const __m128i high_bits = (offset_samples & all_i16(~511)).v;
  return _mm_movemask_epi8(_mm_cmpeq_epi16(high_bits, _mm_setzero_si128())) == 0xffff;
}

}  // namespace pqx::dct
