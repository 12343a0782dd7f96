/// All three half-sample planes of a block that ends where it ends: its last column and row repeat outward.
#pragma once

#include "mc/prediction.h"

namespace pqx::mc {

struct Planes {
  uint8_t *x, *y, *xy;

  Planes operator+(int64_t distance) const { return {x + distance, y + distance, xy + distance}; }
};

/// The right neighbours of n samples inside a row.
struct Inside {
  template <int n>
  static u8x16 right(const uint8_t* p, u8x16) {
    return load_piece<n>(p + 1);
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

/// A strip of n columns.
template <int n, class Neighbours>
[[gnu::always_inline]] inline void interpolate_strip(const uint8_t* src, Planes dst, int64_t step, int rows) {
  struct Row {
    u8x16 samples;
    Square::Row pairs;
  };
  const auto next_row = [&]() __attribute__((always_inline)) {
    const u8x16 a = load_piece<n>(src), b = Neighbours::template right<n>(src, a);
    const Square::Row pairs = Square::row(a, b);
    store_piece<n>(dst.x, pairs.up);
    src += step;
    return Row{a, pairs};
  };
  Row upper = next_row();
#pragma GCC unroll 4
  for (; rows > 1; --rows) {
    dst.x += step;
    const Row lower = next_row();
    store_piece<n>(dst.y, mean_up(upper.samples, lower.samples));
    store_piece<n>(dst.xy, Square::between(upper.pairs, lower.pairs));
    dst.y += step;
    dst.xy += step;
    upper = lower;
  }
  store_piece<n>(dst.y, upper.samples);
  store_piece<n>(dst.xy, upper.pairs.up);
}

/// Strips of n columns, of which the last may cover columns of the one before again; n <= columns.
template <int n>
void interpolate_strips(const uint8_t* src, Planes dst, int64_t step, int columns, int rows) {
  int64_t x = 0;
  for (; x + n < columns; x += n) interpolate_strip<n, Inside>(src + x, dst + x, step, rows);
  x = columns - n;
  interpolate_strip<n, AtTheEnd>(src + x, dst + x, step, rows);
}

/// A row too short for a piece, one sample after the other.
inline void interpolate_samples(const uint8_t* a, const uint8_t* c, uint8_t* __restrict x, uint8_t* __restrict y,
                                uint8_t* __restrict xy, int last) {
  for (int i = 0; i < last; ++i) {
    x[i] = mean_up(a[i], a[i + 1]);
    y[i] = mean_up(a[i], c[i]);
    xy[i] = uint8_t((a[i] + a[i + 1] + c[i] + c[i + 1] + 2) >> 2);
  }
  x[last] = a[last];
  y[last] = xy[last] = mean_up(a[last], c[last]);
}

}  // namespace pqx::mc
