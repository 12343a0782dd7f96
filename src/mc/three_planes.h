/// All three half-sample planes of a block that ends where it ends: its last column and row repeat outward.
#pragma once

#include "mc/samples.h"
#include "pqx_video.h"

namespace pqx::mc {

struct Planes {
  uint8_t *x, *y, *xy;

  Planes operator+(int64_t distance) const { return {x + distance, y + distance, xy + distance}; }
};

/// The right neighbours of n samples inside a row.
struct Inside {
  template <int n>
  static u8x16 right(const uint8_t* p, u8x16) {
    return load_samples<n>(p + 1);
  }
};

/// The right neighbours of the last n samples of a row.
struct AtTheEnd {
  template <int n>
  static u8x16 right(const uint8_t*, u8x16 a) {
    if constexpr (n == 16)
      return u8x16{_mm_srli_si128(a.v, 1)} | (a & u8x16{_mm_set_epi64x(int64_t(0xffull << 56), 0)});
    else if constexpr (n == 8)
      return u8x16{_mm_srli_epi64(a.v, 8)} | (a & u8x16{_mm_set1_epi64x(int64_t(0xffull << 56))});
    else
      return u8x16{_mm_srli_epi32(a.v, 8)} | (a & u8x16{_mm_set1_epi32(int(0xffu << 24))});
  }
};

/// n samples of a row with the pairs that they make up with their right neighbours.
struct RowOfPairs {
  u8x16 samples;
  Square::Row pairs;
};
template <int n, class Neighbours>
[[gnu::always_inline]] inline RowOfPairs load_row(const uint8_t* p) {
  const u8x16 a = load_samples<n>(p), b = Neighbours::template right<n>(p, a);
  return {a, Square::row(a, b)};
}

template <int n>
[[gnu::always_inline]] inline void store_planes(const RowOfPairs& upper, const RowOfPairs& lower, const Planes& dst) {
  store_samples<n>(dst.x, upper.pairs.up);
  store_samples<n>(dst.y, mean_up(upper.samples, lower.samples));
  store_samples<n>(dst.xy, Square::between(upper.pairs, lower.pairs));
}

/// A block of n columns, each row of which is loaded once.
template <int n>
[[gnu::always_inline]] inline void interpolate_block(const uint8_t* src, Planes dst, int64_t step, int rows) {
  RowOfPairs upper = load_row<n, AtTheEnd>(src);
  const auto next_row = [&](int64_t at) __attribute__((always_inline)) {
    const RowOfPairs lower = load_row<n, AtTheEnd>(src + at + step);
    store_planes<n>(upper, lower, dst + at);
    upper = lower;
  };
  for (; rows > 4; rows -= 4, src += 4 * step, dst = dst + 4 * step) {
#pragma GCC unroll 4
    for (int k = 0; k < 4; ++k) next_row(k * step);
  }
#pragma GCC unroll 3
  for (int k = 0; k < 3 && rows > 1; ++k, --rows, src += step, dst = dst + step) next_row(0);
  store_planes<n>(upper, upper, dst);
}

/// A block of more columns, row by row in pieces of n, of which the last may cover columns of the one before again.
template <int n>
[[gnu::noinline]] void interpolate_rows(const uint8_t* src, Planes dst, int64_t step, int columns, int rows) {
  const int64_t last = columns - n;
  for (;; --rows, src += step, dst = dst + step) {
    const uint8_t* below = rows > 1 ? src + step : src;
    for (int64_t x = 0; x < last; x += n)
      store_planes<n>(load_row<n, Inside>(src + x), load_row<n, Inside>(below + x), dst + x);
    store_planes<n>(load_row<n, AtTheEnd>(src + last), load_row<n, AtTheEnd>(below + last), dst + last);
    if (rows <= 1) return;
  }
}

inline uint8_t mean_up(uint8_t a, uint8_t b) { return uint8_t((a + b + 1) >> 1); }
using pqx::mean_up;

/// Rows too short for a piece, one sample after the other.
inline void interpolate_samples(const uint8_t* src, Planes dst, int64_t step, int columns, int rows) {
  if (columns < 1) return;
  const int last = columns - 1;
  for (;; --rows, src += step, dst = dst + step) {
    const uint8_t* below = rows > 1 ? src + step : src;
    uint8_t* __restrict x = dst.x, * __restrict y = dst.y, * __restrict xy = dst.xy;
    for (int i = 0; i < last; ++i) {
      x[i] = mean_up(src[i], src[i + 1]);
      y[i] = mean_up(src[i], below[i]);
      xy[i] = uint8_t((src[i] + src[i + 1] + below[i] + below[i + 1] + 2) >> 2);
    }
    x[last] = src[last];
    y[last] = xy[last] = mean_up(src[last], below[last]);
    if (rows <= 1) return;
  }
}

}  // namespace pqx::mc
