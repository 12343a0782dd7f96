/// Box filters that halve a row of chroma: means of pairs (4:2:2) or of squares from two rows (4:2:0).
#pragma once

#include "common/lanes.h"
#include "common/rows.h"
#include "pqx_video.h"

namespace pqx {

// An exact half goes down at even outputs and up at odd ones (a quarter or three quarters of a square's mean
// likewise), so that rounding leaves no bias along a row. No mean leaves the range of its samples.
constexpr int mean_of_pair(int sum, int output) { return (sum + output % 2) >> 1; }
constexpr int mean_of_square(int sum, int output) { return (sum + 1 + output % 2) >> 2; }
static_assert(mean_of_square(0 + 1 + 0 + 1, 0) == 0 && mean_of_square(0 + 1 + 0 + 1, 1) == 1);

/// One row of T, walked in pairs.
template <class T>
struct PairSource {
  const T* row;

  bool may_run_ahead_of(const T* dst, int64_t bytes) const { return dst <= row || disjoint(row, bytes, dst, bytes); }
  int mean(int64_t k, int output) const {
    const T* s = row + 2 * k;
    return mean_of_pair(load_one<T>(s) + load_one<T>(s + 1), output);
  }

  // Eight byte means as words, four word means as 32-bit lanes.
  i16x8 means(int64_t k, u8x16) const {
    const auto s = load<u8x16>(row + 2 * k);
    return as_signed((even_bytes(s) + odd_bytes(s) + u16x8{_mm_set1_epi32(1 << 16)}) >> 1);
  }
  i32x4 means(int64_t k, i16x8) const {
    const auto s = load<i16x8>(row + 2 * k);
    return (pair_products(s, all_i16(1)) + i32x4{_mm_set_epi32(1, 0, 1, 0)}) >> 1;
  }
};

/// Two rows of T, walked in squares.
template <class T>
struct SquareSource {
  const T *upper, *lower;

  bool may_run_ahead_of(const T* dst, int64_t bytes) const {
    return PairSource<T>{upper}.may_run_ahead_of(dst, bytes) && PairSource<T>{lower}.may_run_ahead_of(dst, bytes);
  }
  int mean(int64_t k, int output) const {
    const T *a = upper + 2 * k, *b = lower + 2 * k;
    return mean_of_square(load_one<T>(a) + load_one<T>(a + 1) + load_one<T>(b) + load_one<T>(b + 1), output);
  }
  i16x8 means(int64_t k, u8x16) const {
    const auto a = load<u8x16>(upper + 2 * k), b = load<u8x16>(lower + 2 * k);
    const u16x8 sum = (even_bytes(a) + odd_bytes(a)) + (even_bytes(b) + odd_bytes(b));
    return as_signed((sum + u16x8{_mm_set1_epi32(2 << 16 | 1)}) >> 2);
  }
  i32x4 means(int64_t k, i16x8) const {
    const auto a = load<i16x8>(upper + 2 * k), b = load<i16x8>(lower + 2 * k);
    const i32x4 sum = pair_products(a, all_i16(1)) + pair_products(b, all_i16(1));
    return (sum + i32x4{_mm_set_epi32(2, 1, 2, 1)}) >> 2;
  }
};

inline u8x16 packed_lanes(uint8_t);
inline i16x8 packed_lanes(int16_t);

/// Writes the means of a row of len samples. A destination that starts at a source row or before it never catches
/// up with the reading; any other overlap takes the samples one after the other.
template <class T, class Source>
pqx_Status down_sample(Source source, int len, T* dst) {
  using Lanes = decltype(packed_lanes(T()));
  constexpr int lanes = 16 / sizeof(T);
  // A group of four samples gives two outputs; what is left of a group gives one.
  const int64_t outputs = len <= 0 ? 0 : int64_t(len) / 4 * 2 + (len % 4 != 0);
  int64_t k = 0;
  if (source.may_run_ahead_of(dst, 2 * outputs * int64_t(sizeof(T))))
    for (; k + lanes <= outputs; k += lanes)
      store(dst + k, pack(source.means(k, Lanes{}), source.means(k + lanes / 2, Lanes{})));
  for (; k < outputs; ++k) store_one(dst + k, T(source.mean(k, int(k & 1))));
  return PQX_OK;
}

}  // namespace pqx
