/// Prediction blocks at whole and half samples of a reference: where the samples come from (Whole, Pair, Square)
/// and what becomes of them (Put, Average).
#pragma once

#include "common/walk.h"
#include "mc/overlap.h"
#include "mc/pieces.h"
#include "pqx_video.h"

namespace pqx::mc {

/// The samples themselves.
struct Whole {
  template <int n>
  static u8x16 row(const uint8_t* p) {
    return load_piece<n>(p);
  }
  static u8x16 between(u8x16 upper, u8x16) { return upper; }
};

/// Means of two samples, exact halves upward.
struct Pair {
  template <int n>
  static u8x16 row(const uint8_t* p) {
    return loaded_once(load_piece<n>(p));
  }
  static u8x16 between(u8x16 upper, u8x16 lower) { return mean_up(upper, lower); }
  static uint8_t sample(const uint8_t* p, int64_t other) { return mean_up(p[0], p[other]); }
};

/// Means of 2x2 squares, exact halves upward. Of two pairs whose means end in a half the upper is rounded down and the
/// lower up, a lone one down; the quarter that is lost then changes no mean of a square.
struct Square {
  struct Row {
    u8x16 up, down, rounded;  // means of pairs, and 1 where they differ
  };
  static Row row(u8x16 a, u8x16 b) {
    const u8x16 up = mean_up(a, b), rounded = (a ^ b) & all_u8(1);
    return {up, up - rounded, rounded};
  }
  template <int n>
  static Row row(const uint8_t* p) {
    return row(loaded_once(load_piece<n>(p)), loaded_once(load_piece<n>(p + 1)));
  }
  static u8x16 between(Row upper, Row lower) {
    return mean_up(upper.down, lower.up - u8x16{_mm_andnot_si128(upper.rounded.v, lower.rounded.v)});
  }
  static uint8_t sample(const uint8_t* p, int64_t below) {
    return uint8_t((p[0] + p[1] + p[below] + p[below + 1] + 2) >> 2);
  }
};

struct Put {
  using Rows = Put;
  static bool suits(const uint8_t*, int64_t) { return true; }

  template <int n, class T>
  static void piece(T* dst, u8x16 samples) {
    store_piece<n>(dst, samples);
  }
  template <int n, class T>
  static void pieces(T* first, u8x16 upper, T* second, u8x16 lower) {
    piece<n>(first, upper);
    piece<n>(second, lower);
  }
  static void sample(uint8_t* dst, uint8_t s) { *dst = s; }
  static void sample(int16_t* dst, uint8_t s) { store_one(dst, int16_t(s)); }
};

/// Averages into the prediction that stands in the destination. Two rounded means in turn give what one mean with
/// one rounding gives: ((a + b + 1) / 2 + d + 1) / 2 = (a + b + 2d + 3) / 4, all rounded down, and likewise for
/// squares.
struct Average {
  /// Into aligned rows of 16 samples, which need no loads of their own.
  struct Rows {
    template <int n>
    static void pieces(uint8_t* first, u8x16 upper, uint8_t* second, u8x16 lower) {
      static_assert(n == 16);
      auto& a = *reinterpret_cast<__m128i*>(first);
      auto& b = *reinterpret_cast<__m128i*>(second);
      const __m128i x = _mm_avg_epu8(upper.v, a), y = _mm_avg_epu8(lower.v, b);
      a = x;
      b = y;
    }
  };
  static bool suits(const uint8_t* dst, int64_t step) { return (uintptr_t(dst) | uintptr_t(step)) % 16 == 0; }

  template <int n>
  static void piece(uint8_t* dst, u8x16 samples) {
    store_piece<n>(dst, mean_up(samples, load_piece<n>(dst)));
  }
  template <int n>
  static void pieces(uint8_t* first, u8x16 upper, uint8_t* second, u8x16 lower) {
    const u8x16 x = mean_up(upper, load_piece<n>(first)), y = mean_up(lower, load_piece<n>(second));
    store_piece<n>(first, x);
    store_piece<n>(second, y);
  }
  static void sample(uint8_t* dst, uint8_t s) { *dst = mean_up(s, *dst); }
};

template <int n, class From, class To, class T>
[[gnu::always_inline]] inline void predict_piece(const uint8_t* src, int64_t below, T* dst) {
  To::template piece<n>(dst, From::between(From::template row<n>(src), From::template row<n>(src + below)));
}

/// n columns of rows that come in fours; `below` is the distance from a sample to the one below it. Two rows are read
/// before the first of them is written, which keeps loads clear of stores.
template <int n, class From, class To, class T, class Rows>
[[gnu::always_inline]] inline pqx_Status predict(const uint8_t* src, int64_t below, int64_t step, T* dst,
                                                 int64_t dst_step, Rows rows) {
  const auto row = [&](int k) __attribute__((always_inline)) {
    const uint8_t* p = src + k * step;
    return From::between(From::template row<n>(p), From::template row<n>(p + below));
  };
  rows.each(
      [&](int k) __attribute__((always_inline)) {
        const u8x16 upper = row(k), lower = row(k + 1);
        To::template pieces<n>(dst + k * dst_step, upper, dst + (k + 1) * dst_step, lower);
      },
      [&] { src += 4 * step, dst += 4 * dst_step; });
  return PQX_OK;
}

/// The same where the row below is the next row: each is loaded once for both of its uses.
template <int n, class From, class To, class T, class Rows>
[[gnu::always_inline]] inline pqx_Status predict_in_turn(const uint8_t* src, int64_t step, T* dst, int64_t dst_step,
                                                         Rows rows) {
  auto above = From::template row<n>(src);
  src += step;
  rows.each(
      [&](int k) __attribute__((always_inline)) {
        const auto middle = From::template row<n>(src + k * step),
                   below = From::template row<n>(src + (k + 1) * step);
        const u8x16 upper = From::between(above, middle), lower = From::between(middle, below);
        To::template pieces<n>(dst + k * dst_step, upper, dst + (k + 1) * dst_step, lower);
        above = below;
      },
      [&] { src += 4 * step, dst += 4 * dst_step; });
  return PQX_OK;
}

/// n columns of any number of rows.
template <int n, class From, class To, class T>
[[gnu::always_inline]] inline pqx_Status predict_strip(const uint8_t* src, int64_t below, int64_t step, T* dst,
                                                       int64_t dst_step, int rows) {
  if (rows < 1) return PQX_OK;
  for (; rows % 4u != 0; --rows, src += step, dst += dst_step) predict_piece<n, From, To>(src, below, dst);
  return rows > 0 ? predict<n, From, To>(src, below, step, dst, dst_step, Fours(unsigned(rows))) : PQX_OK;
}
template <int n, class From, class To, class T>
[[gnu::always_inline]] inline pqx_Status predict_strip_in_turn(const uint8_t* src, int64_t step, T* dst,
                                                               int64_t dst_step, int rows) {
  if (rows < 1) return PQX_OK;
  for (; rows % 4u != 0; --rows, src += step, dst += dst_step) predict_piece<n, From, To>(src, step, dst);
  return rows > 0 ? predict_in_turn<n, From, To>(src, step, dst, dst_step, Fours(unsigned(rows))) : PQX_OK;
}

/// A multiple of four columns row by row, as a picture lies in memory.
template <class From, class To, class T>
[[gnu::always_inline]] inline pqx_Status predict_rows(const uint8_t* src, int64_t below, int64_t step, T* dst,
                                                      int64_t dst_step, int64_t columns, int rows) {
  for (; rows > 0; --rows, src += step, dst += dst_step) {
    const auto piece = [&](auto n, int64_t x) __attribute__((always_inline)) {
      predict_piece<n, From, To>(src + x, below, dst + x);
    };
    const std::integral_constant<int, 16> sixteen;
    int64_t x = 0;
    for (; x + 32 <= columns; x += 32) {
      prefetch_ahead(src + below + x, dst + x);
      piece(sixteen, x);
      piece(sixteen, x + 16);
    }
    if (columns > x) in_pieces(columns - x, [&](auto n, int64_t more) { piece(n, x + more); });
  }
  return PQX_OK;
}

/// A multiple of four columns of a block, strip by strip.
template <class From, class To, class T>
[[gnu::always_inline]] inline pqx_Status predict_strips(const uint8_t* src, int64_t below, int64_t step, T* dst,
                                                        int64_t dst_step, int columns, int rows) {
  if (columns > 0)
    in_pieces(
        columns, [=](auto n, int64_t x) __attribute__((always_inline)) {
          predict_strip<n, From, To>(src + x, below, step, dst + x, dst_step, rows);
        });
  return PQX_OK;
}
/// More columns than these are a picture.
inline constexpr int widest_block = 64;
template <class From, class To, class T>
[[gnu::always_inline]] inline pqx_Status predict_any(const uint8_t* src, int64_t below, int64_t step, T* dst,
                                                     int64_t dst_step, int columns, int rows) {
  if (columns > widest_block) return predict_rows<From, To>(src, below, step, dst, dst_step, columns, rows);
  return predict_strips<From, To>(src, below, step, dst, dst_step, columns, rows);
}

/// One sample after the other, for destinations that overlap the source.
template <class From, class To, class T>
pqx_Status predict_in_order(const uint8_t* src, int64_t below, int64_t step, T* dst, int64_t dst_step, int columns,
                            int rows) {
  for (; rows > 0; --rows, src += step, dst += dst_step)
    for (int x = 0; x < columns; ++x) To::sample(dst + x, From::sample(src + x, below));
  return PQX_OK;
}

/// Copies, without regard to overlap.
template <class To>
[[gnu::noinline]] pqx_Status copy_other_widths(const uint8_t* src, uint8_t* dst, int step, int columns, int rows) {
  return predict_any<Whole, To>(src, 0, step, dst, step, columns, rows);
}
template <class To>
[[gnu::noinline]] pqx_Status copy_any(const uint8_t* src, uint8_t* dst, int step, int columns, int rows) {
  if (columns == 16) return predict_strip<16, Whole, To>(src, 0, step, dst, step, rows);
  if (columns == 8) return predict_strip<8, Whole, To>(src, 0, step, dst, step, rows);
  return columns > 0 ? copy_other_widths<To>(src, dst, step, columns, rows) : PQX_OK;
}

inline int64_t magnitude(int64_t x) { return x < 0 ? -x : x; }

/// A row is read by registers, which must not reach samples that those before them in the row are to change.
inline bool behind_by_a_register(int64_t distance) { return uint64_t(distance - 1) < 16; }

/// Two rows may be read before the first of them is written, which must not reach into the second.
inline bool on_the_next_row(int64_t distance) { return uint64_t(distance + 15) < 32; }

/// Interpolates a block of any multiple of four columns into a picture of the same row pitch.
template <class From, class To>
[[gnu::noinline]] pqx_Status interpolate_any(const uint8_t* src, uint8_t* dst, int64_t below, int64_t step, int width,
                                             int rows) {
  const int columns = width & ~3;
  if (columns <= 0) return PQX_OK;
  const int64_t ahead = intptr_t(dst) - intptr_t(src);
  const int64_t span = rows * magnitude(step) + magnitude(below) + columns;
  const bool far = uint64_t(ahead + span) > 2 * uint64_t(span);
  const auto early = [=](int64_t ahead) { return behind_by_a_register(ahead) || on_the_next_row(ahead - step); };
  if (!far && (early(ahead) || early(ahead - below)))
    return predict_in_order<From, To>(src, below, step, dst, step, columns, rows);
  // What a strip writes below a row may belong to the row's next strip.
  const bool strips = columns <= widest_block && (far || columns == 16 || columns == 8 || columns == 4);
  return strips ? predict_strips<From, To>(src, below, step, dst, step, columns, rows)
                : predict_rows<From, To>(src, below, step, dst, step, columns, rows);
}

/// Whether a block lies clear of the rows that are read before those above them are written: rows go downward, and it
/// begins nowhere in the four that begin with its source's first.
inline bool clear_of_rows_ahead(const uint8_t* src, const uint8_t* dst, int64_t step) {
  return step >= 0 && uint64_t(intptr_t(dst) - intptr_t(src) - 1) >= uint64_t(4 * step);
}

/// Interpolates between samples side by side, of columns that come in eights or fours.
template <int multiple, class To>
[[gnu::noinline]] pqx_Status interpolate_any_across(const uint8_t* src, uint8_t* dst, int step, int width, int rows) {
  if (width <= 16 && clear_of_rows_ahead(src, dst, step)) {
    if (width == 16) return predict_strip<16, Pair, To>(src, 1, step, dst, step, rows);
    if (width == 8) return predict_strip<8, Pair, To>(src, 1, step, dst, step, rows);
  }
  if (width < multiple) return PQX_OK;
  return interpolate_any<Pair, To>(src, dst, 1, step, width & -multiple, rows);
}
/// Squares of 16 and 8 as fast as can be.
template <int multiple, class To>
[[gnu::always_inline]] inline pqx_Status interpolate_across(const uint8_t* src, uint8_t* dst, int step, int width,
                                                            int rows) {
  if (width == rows && clear_of_rows_ahead(src, dst, step)) {
    if (rows == 16)
      return To::suits(dst, step) ? predict<16, Pair, typename To::Rows>(src, 1, step, dst, step, Fours(16))
                                  : interpolate_any_across<multiple, To>(src, dst, step, 16, 16);
    if (rows == 8) return predict<8, Pair, To>(src, 1, step, dst, step, Eight());
  }
  return interpolate_any_across<multiple, To>(src, dst, step, width, rows);
}

/// The same between a row and the one below.
template <class From, class To>
[[gnu::noinline]] pqx_Status interpolate_any_down(const uint8_t* src, uint8_t* dst, int below, int step, int width,
                                                  int rows) {
  if (width <= 16 && below == step && clear_of_rows_ahead(src, dst, step)) {
    if (width == 16) return predict_strip_in_turn<16, From, To>(src, step, dst, step, rows);
    if (width == 8) return predict_strip_in_turn<8, From, To>(src, step, dst, step, rows);
  }
  return interpolate_any<From, To>(src, dst, below, step, width, rows);
}
template <class From, class To>
[[gnu::always_inline]] inline pqx_Status interpolate_down(const uint8_t* src, uint8_t* dst, int below, int step,
                                                          int width, int rows) {
  if (width == rows && below == step && clear_of_rows_ahead(src, dst, step)) {
    if (rows == 16)
      return To::suits(dst, step) ? predict_in_turn<16, From, typename To::Rows>(src, step, dst, step, Fours(16))
                                  : interpolate_any_down<From, To>(src, dst, step, step, 16, 16);
    if (rows == 8) return predict_in_turn<8, From, To>(src, step, dst, step, Eight());
  }
  return interpolate_any_down<From, To>(src, dst, below, step, width, rows);
}

/// The same into packed blocks.
template <class From>
[[gnu::noinline]] pqx_Status interpolate_any(const uint8_t* src, int below, int step, int16_t* dst, int width,
                                             int rows) {
  const int columns = width == 8 ? 8 : 16;
  const Extent here = extent(src, step, columns + 1, rows), there = extent(src + below, step, columns + 1, rows);
  const Extent packed = extent(dst, 2 * columns, 2 * columns, rows);
  if (!disjoint(here, packed) || !disjoint(there, packed))
    return predict_in_order<From, Put>(src, below, step, dst, columns, columns, rows);
  return predict_any<From, Put>(src, below, step, dst, columns, columns, rows);
}
/// Whether packed rows of so many columns lie clear of the source's, with the row below and right neighbours; of rows
/// that go upward it counts as never doing so, which spares most calls a longer test.
template <int columns>
bool clear_of(const uint8_t* src, int64_t step, const int16_t* packed, int64_t rows) {
  const int64_t bytes = 2 * columns * rows, span = rows * step + columns + 1;
  return step >= 0 && uint64_t(intptr_t(packed) - intptr_t(src) + bytes) >= uint64_t(span + bytes);
}

[[gnu::noinline]] inline pqx_Status interpolate_any_across(const uint8_t* src, int step, int16_t* dst, int width,
                                                           int rows) {
  if (width == 8 && clear_of<8>(src, step, dst, rows)) return predict_strip<8, Pair, Put>(src, 1, step, dst, 8, rows);
  if (width != 8 && clear_of<16>(src, step, dst, rows))
    return predict_strip<16, Pair, Put>(src, 1, step, dst, 16, rows);
  return interpolate_any<Pair>(src, 1, step, dst, width, rows);
}
[[gnu::always_inline]] inline pqx_Status interpolate_across(const uint8_t* src, int step, int16_t* dst, int width,
                                                            int rows) {
  if (width == rows) {
    if (rows == 16 && clear_of<16>(src, step, dst, 16)) [[likely]]
      return predict<16, Pair, Put>(src, 1, step, dst, 16, Fours(16));
    if (rows == 8 && clear_of<8>(src, step, dst, 8)) return predict<8, Pair, Put>(src, 1, step, dst, 8, Eight());
  }
  return interpolate_any_across(src, step, dst, width, rows);
}

template <class From>
[[gnu::noinline]] pqx_Status interpolate_any_down(const uint8_t* src, int below, int step, int16_t* dst, int width,
                                                  int rows) {
  if (below == step) {
    if (width == 8 && clear_of<8>(src, step, dst, rows))
      return predict_strip_in_turn<8, From, Put>(src, step, dst, 8, rows);
    if (width != 8 && clear_of<16>(src, step, dst, rows))
      return predict_strip_in_turn<16, From, Put>(src, step, dst, 16, rows);
  }
  return interpolate_any<From>(src, below, step, dst, width, rows);
}
template <class From>
[[gnu::always_inline]] inline pqx_Status interpolate_down(const uint8_t* src, int below, int step, int16_t* dst,
                                                          int width, int rows) {
  if (width == rows && below == step) {
    if (rows == 16 && clear_of<16>(src, step, dst, 16)) [[likely]]
      return predict_in_turn<16, From, Put>(src, step, dst, 16, Fours(16));
    if (rows == 8 && clear_of<8>(src, step, dst, 8)) return predict_in_turn<8, From, Put>(src, step, dst, 8, Eight());
  }
  return interpolate_any_down<From>(src, below, step, dst, width, rows);
}

}  // namespace pqx::mc
