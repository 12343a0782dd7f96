/// 8x8 blocks in registers.
#pragma once

#include "common/lanes.h"

namespace pqx {

/// As many lines, rows or columns of eight values, as there are lanes: value k of each in register k.
template <class Lanes>
struct Lines {
  Lanes at[8];
};

/// Rows of words.
struct Block {
  i16x8 row[8];
};

inline Block load_block(const int16_t* src) {
  Block b;
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) b.row[y] = load<i16x8>(src + 8 * y);
  return b;
}
inline void store_block(int16_t* dst, const Block& b) {
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) store(dst + 8 * y, b.row[y]);
}

// Three perfect shuffles of its 64 elements transpose a block.
inline Block shuffled(const Block& b) {
  Block s;
#pragma GCC unroll 4
  for (int k = 0; k < 4; ++k) {
    s.row[2 * k] = interleave_low(b.row[k], b.row[k + 4]);
    s.row[2 * k + 1] = interleave_high(b.row[k], b.row[k + 4]);
  }
  return s;
}

inline Block transposed(const Block& b) { return shuffled(shuffled(shuffled(b))); }

/// The columns of a block of words, and of a block of bytes.
inline Block load_columns(const int16_t* src) { return transposed(load_block(src)); }
inline Block load_columns(const uint8_t* src, int64_t step) {
  const auto rows = [=](int y) {
    return interleave_low(load_half<u8x16>(src + y * step), load_half<u8x16>(src + (y + 4) * step));
  };
  const u8x16 even[2] = {interleave_low(rows(0), rows(2)), interleave_high(rows(0), rows(2))};
  const u8x16 odd[2] = {interleave_low(rows(1), rows(3)), interleave_high(rows(1), rows(3))};
  Block b;
#pragma GCC unroll 2
  for (int k = 0; k < 2; ++k) {
    const u8x16 left = interleave_low(even[k], odd[k]), right = interleave_high(even[k], odd[k]);
    b.row[4 * k] = as_signed(low_bytes(left));
    b.row[4 * k + 1] = as_signed(high_bytes(left));
    b.row[4 * k + 2] = as_signed(low_bytes(right));
    b.row[4 * k + 3] = as_signed(high_bytes(right));
  }
  return b;
}

/// Columns 0, distance, 2 * distance and 3 * distance of four rows, whose values are rows[column].
template <int distance>
[[gnu::always_inline]] inline void four_columns(const f32x4* rows, f32x4* to) {
  const auto column = [&](int k) { return i32x4{_mm_castps_si128(rows[k * distance].v)}; };
  const i32x4 low01 = interleave_low(column(0), column(1)), low23 = interleave_low(column(2), column(3));
  const i32x4 high01 = interleave_high(column(0), column(1)), high23 = interleave_high(column(2), column(3));
  to[0] = {_mm_castsi128_ps(_mm_unpacklo_epi64(low01.v, low23.v))};
  to[1] = {_mm_castsi128_ps(_mm_unpackhi_epi64(low01.v, low23.v))};
  to[2] = {_mm_castsi128_ps(_mm_unpacklo_epi64(high01.v, high23.v))};
  to[3] = {_mm_castsi128_ps(_mm_unpackhi_epi64(high01.v, high23.v))};
}
template <int first, int distance>
[[gnu::always_inline]] inline Lines<f32x4> four_columns(const Lines<f32x4>& upper, const Lines<f32x4>& lower) {
  Lines<f32x4> columns;
  four_columns<distance>(upper.at + first, columns.at);
  four_columns<distance>(lower.at + first, columns.at + 4);
  return columns;
}

}  // namespace pqx
