/// Inverse 8x8 transform in double precision: an 8-point pass over the columns, the same pass over the rows of the
/// results. A bias on the DC makes the final truncation a rounding.
#pragma once

#include "dct/block_8x8.h"
#include "dct/constants_8x8.h"
#include "pqx_video.h"

namespace pqx::dct {

/// A coefficient known to be zero. Terms that hold it are left out, which changes no result.
struct Zero {};
template <class Lanes>
struct Negated {
  Lanes of;
};
inline Zero operator*(Zero, const Factor&) { return {}; }
template <class Lanes>
Lanes operator+(Lanes a, Zero) {
  return a;
}
template <class Lanes>
Lanes operator+(Zero, Lanes a) {
  return a;
}
template <class Lanes>
Lanes operator-(Lanes a, Zero) {
  return a;
}
template <class Lanes>
Negated<Lanes> operator-(Zero, Lanes a) {
  return {a};
}
template <class Lanes>
Lanes operator+(Negated<Lanes> a, Lanes b) {
  return b - a.of;
}
template <class Lanes>
Lanes operator-(Lanes a, Negated<Lanes> b) {
  return a + b.of;
}

template <class Lanes, class Upper, class Last>
[[gnu::always_inline]] inline Lines<Lanes> inverse_pass(const Cosines& k, Lanes X0, Lanes X1, Lanes X2, Lanes X3,
                                                        Upper X4, Upper X5, Upper X6, Last X7) {
  const auto a = X1 * k.c7 - X7 * k.c1, b = X7 * k.c7 + X1 * k.c1, c = X3 * k.c3 + X5 * k.c5;
  const auto d = X5 * k.c3 - X3 * k.c5;
  const auto e = X0 + X4, f = X0 - X4, g = X2 * k.c6 - X6 * k.c2, h = X6 * k.c6 + X2 * k.c2;
  const auto p = c + b, q = (b - c) * half_root, r = d + a, t = (a - d) * half_root, u = t + q, w = q - t;
  const auto s0 = h + e * k.c4, s3 = e * k.c4 - h, s1 = g + f * k.c4, s2 = f * k.c4 - g;
  return {p + s0, u + s1, w + s2, r + s3, s3 - r, s2 - w, s1 - u, s0 - p};
}

/// One pass over the first count coefficients.
template <int count, class Lanes>
[[gnu::always_inline]] inline Lines<Lanes> inverse_pass(const Cosines& k, const Lines<Lanes>& X) {
  const Lanes* x = X.at;
  if constexpr (count == 8)
    return inverse_pass(k, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7]);
  else
    return inverse_pass(k, x[0], x[1], x[2], x[3], Zero(), Zero(), Zero(), Zero());
}

/// Two rows of words: the low or the high ones of 32-bit integers, of which a register holds one column in its low half.
template <bool high>
[[gnu::always_inline]] inline void gather_rows(const i32x4 (&column)[8], i16x8& upper, i16x8& lower) {
  constexpr int word = high ? _MM_SHUFFLE(3, 1, 3, 1) : _MM_SHUFFLE(2, 0, 2, 0);
  const auto pair = [&](int k) { return _mm_castsi128_ps(_mm_unpacklo_epi16(column[k].v, column[k + 1].v)); };
  const __m128 left = _mm_shuffle_ps(pair(0), pair(2), word), right = _mm_shuffle_ps(pair(4), pair(6), word);
  upper = {_mm_castps_si128(_mm_shuffle_ps(left, right, _MM_SHUFFLE(2, 0, 2, 0)))};
  lower = {_mm_castps_si128(_mm_shuffle_ps(left, right, _MM_SHUFFLE(3, 1, 3, 1)))};
}

/// 16-bit samples. 32 bits always hold a result, for 64 coefficients make samples below 2^18; the low 16 are kept.
struct Residuals {
  static constexpr int dc_bias = 16388;
  static constexpr const Cosines& row_cosines = inverse_cosines;
  int16_t* dst;

  static i32x4 truncated(f64x2 z) { return {_mm_cvttpd_epi32(z.v)}; }
  void put_two_rows(int y, const i32x4 (&column)[8]) const {
    i16x8 upper, lower;
    gather_rows<false>(column, upper, lower);
    store(dst + 8 * y, upper - all_i16(2048));
    store(dst + 8 * y + 8, lower - all_i16(2048));
  }
  void put_everywhere(i32x4 result) const {
    const i16x8 samples = all_i16(_mm_cvtsi128_si32(result.v) - 2048);
#pragma GCC unroll 8
    for (int y = 0; y < 8; ++y) store(dst + 8 * y, samples);
  }
};

/// Pixels. Scaled by 2^24 a value outside of 0..255 leaves 32 bits, and saturating what is converted saturates the pixel,
/// which is the top byte. Conversion would make -2^31 of all that is too low, but raise an exception.
struct Pixels {
  static constexpr int dc_bias = -1020;
  static constexpr const Cosines& row_cosines = pixel_cosines;
  uint8_t* dst;
  int64_t step;

  static i32x4 truncated(f64x2 z) {
    const __m128d not_above = _mm_min_pd(z.v, _mm_set1_pd(2147483647.0));
    return {_mm_cvttpd_epi32(_mm_max_pd(not_above, _mm_set1_pd(-2147483648.0)))};
  }
  void put_two_rows(int y, const i32x4 (&column)[8]) const {
    i16x8 upper, lower;
    gather_rows<true>(column, upper, lower);
    const u8x16 pixels = u8x16{_mm_packs_epi16((upper >> 8).v, (lower >> 8).v)} - all_u8(128);
    store_half(dst + y * step, pixels);
    store_half(dst + (y + 1) * step, u8x16{_mm_unpackhi_epi64(pixels.v, pixels.v)});
  }
  void put_everywhere(i32x4 result) const {
    const u8x16 pixels = all_u8((_mm_cvtsi128_si32(result.v) >> 24) - 128);
#pragma GCC unroll 8
    for (int y = 0; y < 8; ++y) store_half(dst + y * step, pixels);
  }
};

/// Columns 2 * pair and 2 * pair + 1 of a row of words as doubles, less an offset. With its sign bit flipped a word x is
/// x + 32768 >= 0, and below the upper half of 2^52 that makes the double 2^52 + 32768 + x.
inline constexpr double word_offset = 0x1p52 + 32768;
template <int pair>
f64x2 doubles(i16x8 row, f64x2 offset) {
  const __m128i flipped = _mm_xor_si128(row.v, _mm_set1_epi16(-32768)), zero = _mm_setzero_si128();
  const i32x4 four = {pair < 2 ? _mm_unpacklo_epi16(flipped, zero) : _mm_unpackhi_epi16(flipped, zero)};
  const i32x4 exponent = all_i32(0x43300000);
  const i32x4 two = pair % 2 == 0 ? interleave_low(four, exponent) : interleave_high(four, exponent);
  return f64x2{_mm_castsi128_pd(two.v)} - offset;
}

/// The first 4 or all 8 words of a row.
template <int columns>
i16x8 load_row(const int16_t* row) {
  return load_bytes<2 * columns, i16x8>(row);
}

/// Pairs of columns, of which only the given rows and columns are read and set.
template <int rows, int columns>
[[gnu::always_inline]] inline void load_column_pairs(const int16_t* src, int dc_bias, Lines<f64x2>* pair) {
#pragma GCC unroll 8
  for (int u = 0; u < rows; ++u) {
    const f64x2 offset = {_mm_set1_pd(word_offset)};
    const f64x2 first_offset = {_mm_set_pd(word_offset, u ? word_offset : word_offset - dc_bias)};
    const auto row = load_row<columns>(src + 8 * u);
    pair[0].at[u] = doubles<0>(row, first_offset);
    pair[1].at[u] = doubles<1>(row, offset);
    if constexpr (columns == 8) {
      pair[2].at[u] = doubles<2>(row, offset);
      pair[3].at[u] = doubles<3>(row, offset);
    }
  }
}

/// Rows y and y + 1 from pairs of columns.
template <int columns>
[[gnu::always_inline]] inline Lines<f64x2> row_pair(const Lines<f64x2>* pair, int y) {
  Lines<f64x2> rows;
#pragma GCC unroll 4
  for (int k = 0; k < columns / 2; ++k) {
    const __m128i upper = _mm_castpd_si128(pair[k].at[y].v), lower = _mm_castpd_si128(pair[k].at[y + 1].v);
    rows.at[2 * k].v = _mm_castsi128_pd(_mm_unpacklo_epi64(upper, lower));
    rows.at[2 * k + 1].v = _mm_castsi128_pd(_mm_unpackhi_epi64(upper, lower));
  }
  return rows;
}

/// The coefficients with u < rows and v < columns, of which alone anything is read, with the others taken as zero.
template <int rows, int columns, class Output>
pqx_Status inverse_typed(const int16_t* src, Output output) {
  Lines<f64x2> pair[columns / 2];
  load_column_pairs<rows, columns>(src, Output::dc_bias, pair);
  for (Lines<f64x2>& two : pair) two = inverse_pass<rows>(inverse_cosines, two);
  for (int y = 0; y < 8; y += 2) {
    const Lines<f64x2> z = inverse_pass<columns>(Output::row_cosines, row_pair<columns>(pair, y));
    i32x4 result[8];
#pragma GCC unroll 8
    for (int x = 0; x < 8; ++x) result[x] = Output::truncated(z.at[x]);
    output.put_two_rows(y, result);
  }
  return PQX_OK;
}

/// With nothing but a DC both passes shrink to one product, the same for every sample.
template <class Output>
pqx_Status inverse_of_dc(const int16_t* src, Output output) {
  const f64x2 dc = {_mm_set1_pd(load_one<int16_t>(src) + Output::dc_bias)};
  output.put_everywhere(Output::truncated(dc * inverse_cosines.c4 * Output::row_cosines.c4));
  return PQX_OK;
}

}  // namespace pqx::dct
