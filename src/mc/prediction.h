/// Prediction blocks at whole and half samples of a reference: where the samples come from (Whole, Pair, Square)
/// and what becomes of them (Put, Average).
#pragma once

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
    return load_piece<n>(p);
  }
  static u8x16 between(u8x16 upper, u8x16 lower) { return mean_up(upper, lower); }
  static uint8_t sample(const uint8_t* p, int64_t other) { return mean_up(p[0], p[other]); }
};

/// Means of 2x2 squares, exact halves upward.
struct Square {
  struct Row {
    u8x16 mean, difference;  // the lowest bit of the difference tells that the mean was rounded
  };
  template <int n>
  static Row row(const uint8_t* p) {
    const u8x16 a = load_piece<n>(p), b = load_piece<n>(p + 1);
    return {mean_up(a, b), a ^ b};
  }
  // The mean of two rounded means is one too large where it was rounded itself after one of them was.
  static u8x16 between(Row upper, Row lower) {
    const u8x16 rounded = (upper.difference | lower.difference) & (upper.mean ^ lower.mean) & all_u8(1);
    return mean_up(upper.mean, lower.mean) - rounded;
  }
  static uint8_t sample(const uint8_t* p, int64_t below) {
    return uint8_t((p[0] + p[1] + p[below] + p[below + 1] + 2) >> 2);
  }
};

struct Put {
  template <int n, class T>
  static void piece(T* dst, u8x16 samples) {
    store_piece<n>(dst, samples);
  }
  static void sample(uint8_t* dst, uint8_t s) { *dst = s; }
  static void sample(int16_t* dst, uint8_t s) { store_one(dst, int16_t(s)); }
};

/// Averages into the prediction that stands in the destination. Two rounded means in turn give what one mean with
/// one rounding gives: ((a + b + 1) / 2 + d + 1) / 2 = (a + b + 2d + 3) / 4, all rounded down, and likewise for
/// squares.
struct Average {
  template <int n>
  static void piece(uint8_t* dst, u8x16 samples) {
    store_piece<n>(dst, mean_up(samples, load_piece<n>(dst)));
  }
  static void sample(uint8_t* dst, uint8_t s) { *dst = mean_up(s, *dst); }
};

template <int n, class From, class To, class T>
void predict_piece(const uint8_t* src, int64_t below, T* dst) {
  To::template piece<n>(dst, From::between(From::template row<n>(src), From::template row<n>(src + below)));
}

/// A block of one piece in width. Where the row below is the next row, it is loaded once for both.
template <int n, class From, class To, class T>
void predict_rows(const uint8_t* src, int64_t below, int64_t step, T* dst, int64_t dst_step, int rows) {
  if (below != step) {
    for (; rows > 0; --rows, src += step, dst += dst_step) predict_piece<n, From, To>(src, below, dst);
    return;
  }
  auto upper = From::template row<n>(src);
  for (; rows > 0; --rows, dst += dst_step) {
    src += step;
    const auto lower = From::template row<n>(src);
    To::template piece<n>(dst, From::between(upper, lower));
    upper = lower;
  }
}

/// A block of a multiple of four columns, without regard to overlap: `below` is the distance from a sample to the
/// one below it, `step` that from row to row.
template <class From, class To, class T>
pqx_Status predict(const uint8_t* src, int64_t below, int64_t step, T* dst, int64_t dst_step, int columns, int rows) {
  if (columns < 1 || rows < 1) return PQX_OK;
  if (columns == 16) {
    predict_rows<16, From, To>(src, below, step, dst, dst_step, rows);
  } else if (columns == 8) {
    predict_rows<8, From, To>(src, below, step, dst, dst_step, rows);
  } else {
    for (; rows > 0; --rows, src += step, dst += dst_step)
      in_pieces(columns, [=](auto n, int64_t x) { predict_piece<n, From, To>(src + x, below, dst + x); });
  }
  return PQX_OK;
}

/// One sample after the other, for destinations that overlap the source.
template <class From, class To, class T>
pqx_Status predict_in_order(const uint8_t* src, int64_t below, int64_t step, T* dst, int64_t dst_step, int columns,
                            int rows) {
  for (; rows > 0; --rows, src += step, dst += dst_step)
    for (int x = 0; x < columns; ++x) To::sample(dst + x, From::sample(src + x, below));
  return PQX_OK;
}

/// Interpolates into a picture of the same row pitch.
template <class From, class To>
pqx_Status interpolate(const uint8_t* src, int64_t below, int64_t step, uint8_t* dst, int columns, int rows) {
  // A vector of a row and, of a block of up to 16 columns, the row below are read before a row is written: nothing
  // of them may lie in that row.
  const auto ahead = intptr_t(dst) - intptr_t(src);
  const auto near = [](int64_t distance) { return uint64_t(distance + 16) <= 32; };
  if (near(ahead) || near(ahead - below))
    return predict_in_order<From, To>(src, below, step, dst, step, columns, rows);
  return predict<From, To>(src, below, step, dst, step, columns, rows);
}

/// Interpolates into a packed block.
template <class From>
pqx_Status interpolate(const uint8_t* src, int64_t below, int64_t step, int16_t* dst, int width, int rows) {
  const int columns = width == 8 ? 8 : 16;
  const Extent here = extent(src, step, columns + 1, rows), there = extent(src + below, step, columns + 1, rows);
  const Extent packed = extent(dst, 2 * columns, 2 * columns, rows);
  if (!disjoint(here, packed) || !disjoint(there, packed))
    return predict_in_order<From, Put>(src, below, step, dst, columns, columns, rows);
  return predict<From, Put>(src, below, step, dst, columns, columns, rows);
}

}  // namespace pqx::mc
