/// Box filters that halve a row of chroma: means of pairs (4:2:2) or of squares from two rows (4:2:0).
#pragma once

#include "common/lanes.h"
#include "common/overlap.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx {

// An exact half goes down at even outputs and up at odd ones (a quarter or three quarters of a square's mean
// likewise), so that rounding leaves no bias along a row. No mean leaves the range of its samples.
constexpr int pair_rounding(int64_t output) { return int(output & 1); }
constexpr int square_rounding(int64_t output) { return 1 + int(output & 1); }
static_assert((0 + 1 + 0 + 1 + square_rounding(0)) >> 2 == 0 && (0 + 1 + 0 + 1 + square_rounding(1)) >> 2 == 1);

inline u8x16 narrow(u16x8 a, u16x8 b) { return pack(as<i16x8>(a), as<i16x8>(b)); }
inline i16x8 narrow(i32x4 a, i32x4 b) { return pack(a, b); }

/// So many bytes of outputs, from lanes twice as wide that part<source bytes>(i) makes of samples i on.
template <class T, int bytes, class Part>
auto narrowed(Part part) {
  if constexpr (bytes == 16) {
    return narrow(part.template operator()<16>(0), part.template operator()<16>(16 / sizeof(T)));
  } else {
    const auto lanes = part.template operator()<2 * bytes>(0);
    return narrow(lanes, lanes);
  }
}

/// Means of the pairs of s, the first of them rounded as output `turn`. A mean of bytes that is rounded upward is one
/// too high where the sum is odd and the half goes down.
template <int bytes>
u8x16 means_of_pairs(const uint8_t* s, int64_t turn) {
  const u8x16 even =
                  narrowed<uint8_t, bytes>([=]<int in>(int i) { return even_bytes(load_bytes<in, u8x16>(s + i)); }),
              odd = narrowed<uint8_t, bytes>([=]<int in>(int i) { return odd_bytes(load_bytes<in, u8x16>(s + i)); });
  return mean_up(even, odd) - ((even ^ odd) & alternating<u8x16>(1 - pair_rounding(turn), pair_rounding(turn)));
}
template <int bytes>
i16x8 means_of_pairs(const int16_t* s, int64_t turn) {
  return narrowed<int16_t, bytes>([=]<int in>(int i) {
    const i32x4 sums = pair_products(load_bytes<in, i16x8>(s + i), all_i16(1));
    return (sums + alternating<i32x4>(pair_rounding(turn), pair_rounding(turn + 1))) >> 1;
  });
}

/// Means of the squares of a and b. Words of two bytes are added as they are: less 255 times its upper bytes, such a
/// sum is that of all four.
template <int bytes>
u8x16 means_of_squares(const uint8_t* a, const uint8_t* b, int64_t turn) {
  return narrowed<uint8_t, bytes>([=]<int in>(int i) {
    const auto upper = load_bytes<in, u8x16>(a + i), lower = load_bytes<in, u8x16>(b + i);
    const u16x8 odd = odd_bytes(upper) + odd_bytes(lower), all = as<u16x8>(upper) + as<u16x8>(lower);
    const u16x8 sums = all + low_product(odd, all_u16(-255));
    return (sums + alternating<u16x8>(square_rounding(turn), square_rounding(turn + 1))) >> 2;
  });
}
template <int bytes>
i16x8 means_of_squares(const int16_t* a, const int16_t* b, int64_t turn) {
  return narrowed<int16_t, bytes>([=]<int in>(int i) {
    const i32x4 sums = pair_products(load_bytes<in, i16x8>(a + i), all_i16(1)) +
                       pair_products(load_bytes<in, i16x8>(b + i), all_i16(1));
    return (sums + alternating<i32x4>(square_rounding(turn), square_rounding(turn + 1))) >> 2;
  });
}

/// One row of T, walked in pairs.
template <class T>
struct PairSource {
  const T* row;

  bool may_run_ahead_of(const T* dst, int64_t bytes) const { return never_overtakes(row, bytes, dst); }
  int mean(int64_t k) const {
    const T* s = row + 2 * k;
    return (load_one<T>(s) + load_one<T>(s + 1) + pair_rounding(k)) >> 1;
  }
  template <int bytes>
  auto means(int64_t k, int64_t turn) const {
    return means_of_pairs<bytes>(row + 2 * k, turn);
  }
};

/// Two rows of T, walked in squares.
template <class T>
struct SquareSource {
  const T *upper, *lower;

  bool may_run_ahead_of(const T* dst, int64_t bytes) const {
    return PairSource<T>{upper}.may_run_ahead_of(dst, bytes) && PairSource<T>{lower}.may_run_ahead_of(dst, bytes);
  }
  int mean(int64_t k) const {
    const T *a = upper + 2 * k, *b = lower + 2 * k;
    return (load_one<T>(a) + load_one<T>(a + 1) + load_one<T>(b) + load_one<T>(b + 1) + square_rounding(k)) >> 2;
  }
  template <int bytes>
  auto means(int64_t k, int64_t turn) const {
    if constexpr (bytes == 16) prefetch_ahead(upper + 2 * k, lower + 2 * k);
    return means_of_squares<bytes>(upper + 2 * k, lower + 2 * k, turn);
  }
};

/// Writes n outputs, 4 bytes or more. The last piece overlaps the one before; it is computed before any output is stored,
/// as the row may be halved in place.
template <class T, int bytes = 16, class Source>
void store_outputs(Source source, int64_t n, T* dst) {
  constexpr int width = bytes / int(sizeof(T));
  if constexpr (bytes > 4)
    if (n < width) return store_outputs<T, bytes / 2>(source, n, dst);
  const auto last = source.template means<bytes>(n - width, n);
  for (int64_t k = 0; k < n - width; k += width) store_bytes<bytes>(dst + k, source.template means<bytes>(k, 0));
  store_bytes<bytes>(dst + n - width, last);
}

/// Writes the means of a row of len samples. A destination that starts at a source row or before it never catches
/// up with the reading; any other overlap takes the samples one after the other.
template <class T, class Source>
[[gnu::flatten]] static pqx_Status down_sample(Source source, int len, T* dst) {
  // A group of four samples gives two outputs; what is left of a group gives one.
  const int64_t outputs = len <= 0 ? 0 : int64_t(len) / 4 * 2 + (len % 4 != 0);
  if (outputs >= shortest_covered<T> && source.may_run_ahead_of(dst, 2 * outputs * int64_t(sizeof(T))))
    store_outputs(source, outputs, dst);
  else
    for (int64_t k = 0; k < outputs; ++k) store_one(dst + k, T(source.mean(k)));
  return PQX_OK;
}

}  // namespace pqx
