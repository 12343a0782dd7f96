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

/// The values with one index of as many rows or columns as there are lanes.
template <class Lanes>
struct Eight {
  Lanes at[8];
};

template <class Lanes, class Upper>
[[gnu::always_inline]] inline Eight<Lanes> inverse_pass(const Cosines& k, Lanes X0, Lanes X1, Lanes X2, Lanes X3,
                                                        Upper X4, Upper X5, Upper X6, Upper X7) {
  const auto a = X1 * k.c7 - X7 * k.c1, b = X7 * k.c7 + X1 * k.c1, c = X3 * k.c3 + X5 * k.c5;
  const auto d = X5 * k.c3 - X3 * k.c5;
  const auto e = X0 + X4, f = X0 - X4, g = X2 * k.c6 - X6 * k.c2, h = X6 * k.c6 + X2 * k.c2;
  const auto p = c + b, q = (b - c) * half_root, r = d + a, t = (a - d) * half_root, u = t + q, w = q - t;
  const auto s0 = h + e * k.c4, s3 = e * k.c4 - h, s1 = g + f * k.c4, s2 = f * k.c4 - g;
  return {p + s0, u + s1, w + s2, r + s3, s3 - r, s2 - w, s1 - u, s0 - p};
}

/// One pass over the first count coefficients.
template <int count, class Lanes>
[[gnu::always_inline]] inline Eight<Lanes> inverse_pass(const Cosines& k, const Lanes* X) {
  if constexpr (count == 8)
    return inverse_pass(k, X[0], X[1], X[2], X[3], X[4], X[5], X[6], X[7]);
  else
    return inverse_pass(k, X[0], X[1], X[2], X[3], Zero(), Zero(), Zero(), Zero());
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

/// Pixels. Scaled by 2^24 a value outside of 0..255 leaves 32 bits, and saturating the conversion saturates the pixel:
/// from above by the minimum, from below because the conversion itself then gives -2^31. The pixel is the top byte.
struct Pixels {
  static constexpr int dc_bias = -1020;
  static constexpr const Cosines& row_cosines = pixel_cosines;
  uint8_t* dst;
  int64_t step;

  static i32x4 truncated(f64x2 z) { return {_mm_cvttpd_epi32(_mm_min_pd(z.v, _mm_set1_pd(2147483647.0)))}; }
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

inline f64x2 interleave_low(f64x2 a, f64x2 b) {
  return {_mm_castsi128_pd(_mm_unpacklo_epi64(_mm_castpd_si128(a.v), _mm_castpd_si128(b.v)))};
}
inline f64x2 interleave_high(f64x2 a, f64x2 b) {
  return {_mm_castsi128_pd(_mm_unpackhi_epi64(_mm_castpd_si128(a.v), _mm_castpd_si128(b.v)))};
}

/// The coefficients with u < rows and v < columns, of which alone anything is read, with the others taken as zero.
template <int rows, int columns, class Output>
pqx_Status inverse_of_corner(const int16_t* src, Output output) {
  f64x2 X[columns / 2][8];
  // With its sign bit flipped a word x is x + 32768 >= 0, and behind the upper half of 2^52 it makes the double
  // 2^52 + 32768 + x.
  const i16x8 sign = all_i16(-32768);
  const __m128i exponent = _mm_set1_epi32(0x43300000), zero = _mm_setzero_si128();
  const f64x2 offset = {_mm_set1_pd(0x1p52 + 32768)};
  const f64x2 dc_offset = {_mm_set_pd(0x1p52 + 32768, 0x1p52 + 32768 - Output::dc_bias)};
#pragma GCC unroll 8
  for (int u = 0; u < rows; ++u) {
    const i16x8 row = (columns == 8 ? load<i16x8>(src + 8 * u) : load_half<i16x8>(src + 8 * u)) + sign;
    const __m128i left = _mm_unpacklo_epi16(row.v, zero);
    X[0][u] = f64x2{_mm_castsi128_pd(_mm_unpacklo_epi32(left, exponent))} - (u ? offset : dc_offset);
    X[1][u] = f64x2{_mm_castsi128_pd(_mm_unpackhi_epi32(left, exponent))} - offset;
    if constexpr (columns == 8) {
      const __m128i right = _mm_unpackhi_epi16(row.v, zero);
      X[2][u] = f64x2{_mm_castsi128_pd(_mm_unpacklo_epi32(right, exponent))} - offset;
      X[3][u] = f64x2{_mm_castsi128_pd(_mm_unpackhi_epi32(right, exponent))} - offset;
    }
  }
  Eight<f64x2> column_pair[columns / 2];
  for (int pair = 0; pair < columns / 2; ++pair) column_pair[pair] = inverse_pass<rows>(inverse_cosines, X[pair]);
  for (int y = 0; y < 8; y += 2) {
    f64x2 row_pair[columns];
#pragma GCC unroll 4
    for (int pair = 0; pair < columns / 2; ++pair) {
      row_pair[2 * pair] = interleave_low(column_pair[pair].at[y], column_pair[pair].at[y + 1]);
      row_pair[2 * pair + 1] = interleave_high(column_pair[pair].at[y], column_pair[pair].at[y + 1]);
    }
    const Eight<f64x2> z = inverse_pass<columns>(Output::row_cosines, row_pair);
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

/// A mask of two bits for each word that is zero.
inline int zero_words(i16x8 a) { return _mm_movemask_epi8(_mm_cmpeq_epi16(a.v, _mm_setzero_si128())); }

/// Blocks of a decoder are mostly zero: passes leave out the lower rows and right columns where all are.
template <class Output>
pqx_Status inverse_8x8(const int16_t* src, Output output) {
  const Block X = load_block(src);
  const i16x8 not_dc = {_mm_set_epi16(-1, -1, -1, -1, -1, -1, -1, 0)};
  const i16x8 lower_rows = X.row[4] | X.row[5] | X.row[6] | X.row[7];
  const int zero_columns = zero_words((X.row[0] & not_dc) | X.row[1] | X.row[2] | X.row[3] | lower_rows);
  if (zero_columns == 0xffff) return inverse_of_dc(src, output);
  const bool left = zero_columns >> 8 == 0xff, upper = zero_words(lower_rows) == 0xffff;
  if (left && upper) return inverse_of_corner<4, 4>(src, output);
  if (left) return inverse_of_corner<8, 4>(src, output);
  if (upper) return inverse_of_corner<4, 8>(src, output);
  return inverse_of_corner<8, 8>(src, output);
}

}  // namespace pqx::dct
