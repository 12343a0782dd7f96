/// Eight rows of eight 16-bit values in registers.
#pragma once

#include "common/lanes.h"

namespace pqx {

inline i16x8 interleave_low(i16x8 a, i16x8 b) { return {_mm_unpacklo_epi16(a.v, b.v)}; }
inline i16x8 interleave_high(i16x8 a, i16x8 b) { return {_mm_unpackhi_epi16(a.v, b.v)}; }

struct Block {
  i16x8 row[8];
};

inline Block load_block(const int16_t* src) {
  Block b;
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) b.row[y] = load<i16x8>(src + 8 * y);
  return b;
}

inline Block load_block(const uint8_t* src, int64_t step) {
  Block b;
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) b.row[y] = {_mm_unpacklo_epi8(load_half<u8x16>(src + y * step).v, _mm_setzero_si128())};
  return b;
}

// Three times the perfect shuffle of 64 elements brings element 8*y + x to 8*x + y.
inline Block shuffled(const Block& b) {
  Block s;
#pragma GCC unroll 8
  for (int k = 0; k < 4; ++k) {
    s.row[2 * k] = interleave_low(b.row[k], b.row[k + 4]);
    s.row[2 * k + 1] = interleave_high(b.row[k], b.row[k + 4]);
  }
  return s;
}
inline Block transposed(const Block& b) { return shuffled(shuffled(shuffled(b))); }

}  // namespace pqx
