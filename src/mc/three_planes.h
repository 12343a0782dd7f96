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
void interpolate_strip(const uint8_t* src, Planes dst, int64_t step, int rows) {
  struct Row {
    u8x16 samples;
    Square::Row pairs;
  };
  const auto load_row = [](const uint8_t* p) -> Row {
    const u8x16 a = load_piece<n>(p), b = Neighbours::template right<n>(p, a);
    return {a, {mean_up(a, b), a ^ b}};
  };
  Row upper = load_row(src);
  for (; rows > 1; --rows, dst = dst + step) {
    src += step;
    const Row lower = load_row(src);
    store_piece<n>(dst.x, upper.pairs.mean);
    store_piece<n>(dst.y, mean_up(upper.samples, lower.samples));
    store_piece<n>(dst.xy, Square::between(upper.pairs, lower.pairs));
    upper = lower;
  }
  store_piece<n>(dst.x, upper.pairs.mean);
  store_piece<n>(dst.y, upper.samples);
  store_piece<n>(dst.xy, upper.pairs.mean);
}

/// Strips of n columns, of which the last may cover columns of the one before again; n <= columns.
template <int n>
void interpolate_strips(const uint8_t* src, Planes dst, int64_t step, int columns, int rows) {
  int64_t x = 0;
  for (; x + n < columns; x += n) interpolate_strip<n, Inside>(src + x, dst + x, step, rows);
  x = columns - n;
  interpolate_strip<n, AtTheEnd>(src + x, dst + x, step, rows);
}

inline void interpolate_samples(const uint8_t* src, Planes dst, int64_t step, int columns, int rows) {
  for (; rows > 0; --rows, src += step, dst = dst + step)
    for (int x = 0; x < columns; ++x) {
      const int64_t right = x + 1 < columns, below = rows > 1 ? step : 0;
      const uint8_t *p = src + x, *q = p + below;
      dst.x[x] = mean_up(p[0], p[right]);
      dst.y[x] = mean_up(p[0], q[0]);
      dst.xy[x] = uint8_t((p[0] + p[right] + q[0] + q[right] + 2) >> 2);
    }
}

inline pqx_Status interpolate_planes(const uint8_t* src, Planes dst, int64_t step, int columns, int height) {
  const int rows = height < 1 ? 1 : height;
  if (columns >= 16)
    interpolate_strips<16>(src, dst, step, columns, rows);
  else if (columns >= 8)
    interpolate_strips<8>(src, dst, step, columns, rows);
  else if (columns >= 4)
    interpolate_strips<4>(src, dst, step, columns, rows);
  else
    interpolate_samples(src, dst, step, columns, rows);
  return PQX_OK;
}

}  // namespace pqx::mc
