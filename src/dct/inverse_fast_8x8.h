/// Inverse 8x8 transform of moderate coefficients by the same passes in single precision, which takes half as many
/// operations and decides nearly always.
///
/// Coefficients enter times 2^16, so that a result in 32 bits holds a sample in its high word and a fraction in its low
/// one. 4 more on the DC are half a sample: cutting the fraction off rounds. An operation errs by at most 2^-24 of its
/// result, which is a sum over the coefficients. Carried to the samples and added to the errors of the typed arithmetic,
/// of its bias, which the DC gain shrinks, and of the conversion to integers, that makes
///
///     |fast - typed| <= (790 * sum of |AC| + 280 * |DC|) * 2^-32 + 2^-16,
///
/// which tests/dct/internal computes. A fraction farther than that from 0 and 1 belongs to the same sample; a block that
/// holds a closer one is computed anew as the types demand.
#pragma once

#include "dct/inverse_8x8.h"

namespace pqx::dct {

inline constexpr int error_per_ac = 790, error_per_dc = 280;
/// In units of 2^-16. Of blocks just below it, one in ten of residuals and one in five of pixels is computed twice. Residuals below
/// it lie within -2048..2047, where typed ones are rounded downward. Pixels saturate; blocks of 64 pixels never come close:
/// the sum over their AC is at most 8192.
template <class Output>
inline constexpr int error_limit = 52;
template <>
inline constexpr int error_limit<Pixels> = 104;

inline i16x8 without_dc(i16x8 first_row) { return first_row & i16x8{_mm_setr_epi16(0, -1, -1, -1, -1, -1, -1, -1)}; }

/// The largest |fast - typed| in units of 2^-16, rounded up. Unsigned sums saturate, far above the limit.
template <int rows, int columns>
[[gnu::always_inline]] inline int error_bound(const int16_t* src) {
  __m128i sum = _mm_setzero_si128();
#pragma GCC unroll 8
  for (int u = 0; u < rows; ++u) {
    const i16x8 row = load_row<columns>(src + 8 * u), x = u == 0 ? without_dc(row) : row;
    sum = _mm_adds_epu16(sum, _mm_max_epi16(x.v, (all_i16(0) - x).v));
  }
  if (columns == 8) sum = _mm_adds_epu16(sum, _mm_unpackhi_epi64(sum, sum));
  sum = _mm_adds_epu16(sum, _mm_shuffle_epi32(sum, 1));
  sum = _mm_adds_epu16(sum, _mm_shufflelo_epi16(sum, 1));
  const int ac = uint16_t(_mm_cvtsi128_si32(sum)), dc = load_one<int16_t>(src);
  return ((error_per_ac * ac + error_per_dc * (dc < 0 ? -dc : dc)) >> 16) + 2;
}

/// Splits results into samples and fractions, and remembers how close those came to 0 and 1.
struct Splitter {
  int error;
  // With the error added, fractions that are too close wrap to less than twice the error; here to the lowest words.
  i16x8 lowest = all_i16(32767);

  [[gnu::always_inline]] void operator()(const Lines<f32x4>& columns, i16x8* four_rows) {
    Block words;
#pragma GCC unroll 8
    for (int x = 0; x < 8; ++x) words.row[x] = {_mm_cvtps_epi32(columns.at[x].v)};
    words = transposed(words);
#pragma GCC unroll 4
    for (int y = 0; y < 4; ++y) {
      lowest = {_mm_min_epi16(lowest.v, (words.row[2 * y] + all_i16(error - 32768)).v)};
      four_rows[y] = words.row[2 * y + 1];
    }
  }
  bool too_close() const { return _mm_movemask_epi8(_mm_cmplt_epi16(lowest.v, all_i16(2 * error - 32768).v)) != 0; }
};

/// The samples, of which split makes four rows at a time.
template <int rows, int columns, class Split>
[[gnu::always_inline]] inline Block inverse_fast(const int16_t* src, Split& split) {
  const i16x8 half_sample = {_mm_setr_epi16(4, 0, 0, 0, 0, 0, 0, 0)};
  Lines<f32x4> left, right{};
#pragma GCC unroll 8
  for (int u = 0; u < rows; ++u) {
    const i16x8 row = load_row<columns>(src + 8 * u), x = u == 0 ? row + half_sample : row;
    left.at[u] = floats(as<i32x4>(interleave_low(all_i16(0), x)));
    right.at[u] = floats(as<i32x4>(interleave_high(all_i16(0), x)));
  }
  left = inverse_pass<rows>(inverse_cosines, left);
  if constexpr (columns == 8) right = inverse_pass<rows>(inverse_cosines, right);
  Block samples;
  split(inverse_pass<columns>(inverse_cosines, four_columns<0, 1>(left, right)), samples.row);
  split(inverse_pass<columns>(inverse_cosines, four_columns<4, 1>(left, right)), samples.row + 4);
  return samples;
}

inline void put(const Residuals& output, const Block& samples) { store_block(output.dst, samples); }
inline void put(const Pixels& output, const Block& samples) {
#pragma GCC unroll 4
  for (int y = 0; y < 8; y += 2) {
    const u8x16 two_rows = pack(samples.row[y], samples.row[y + 1]);
    store_half(output.dst + y * output.step, two_rows);
    store_high_half(output.dst + (y + 1) * output.step, two_rows);
  }
}

/// The coefficients with u < rows and v < columns, of which alone anything is read, with the others taken as zero.
template <int rows, int columns, class Output>
pqx_Status inverse_of_corner(const int16_t* src, Output output) {
  Splitter split{error_bound<rows, columns>(src)};
  if (split.error >= error_limit<Output>) return inverse_typed<rows, columns>(src, output);
  const Block samples = inverse_fast<rows, columns>(src, split);
  if (split.too_close()) [[unlikely]]
    return inverse_typed<rows, columns>(src, output);
  put(output, samples);
  return PQX_OK;
}

/// A mask of two bits for each word that is zero.
inline int zero_words(i16x8 a) { return _mm_movemask_epi8(_mm_cmpeq_epi16(a.v, _mm_setzero_si128())); }

/// Blocks of a decoder are mostly zero: passes leave out the lower rows and right columns where all are.
template <class Output>
pqx_Status inverse_8x8(const int16_t* src, Output output) {
  const Block X = load_block(src);
  const i16x8 lower_rows = X.row[4] | X.row[5] | X.row[6] | X.row[7];
  const int zero_columns = zero_words(without_dc(X.row[0]) | X.row[1] | X.row[2] | X.row[3] | lower_rows);
  if (zero_columns == 0xffff) return inverse_of_dc(src, output);
  const bool left = zero_columns >> 8 == 0xff, upper = zero_words(lower_rows) == 0xffff;
  if (left && upper) return inverse_of_corner<4, 4>(src, output);
  if (left) return inverse_of_corner<8, 4>(src, output);
  if (upper) return inverse_of_corner<4, 8>(src, output);
  return inverse_of_corner<8, 8>(src, output);
}

}  // namespace pqx::dct
