/// Samples of a row in a register, 16, 8, 4, 2 or 1 at its low end, and their means.
#pragma once

#include <type_traits>

#include "common/lanes.h"

namespace pqx::mc {

template <int n>
u8x16 load_samples(const uint8_t* p) {
  if constexpr (n > 2) return load_bytes<n, u8x16>(p);
  return {_mm_cvtsi32_si128(n == 2 ? load_one<uint16_t>(p) : *p)};
}
template <int n>
void store_samples(uint8_t* p, u8x16 samples) {
  if constexpr (n > 2) return store_bytes<n>(p, samples);
  store_one(p, std::conditional_t<n == 2, uint16_t, uint8_t>(_mm_cvtsi128_si32(samples.v)));
}
/// The same widened to 16 bits.
template <int n>
void store_samples(int16_t* p, u8x16 samples) {
  if constexpr (n == 1)
    store_one(p, int16_t(_mm_cvtsi128_si32(samples.v)));
  else
    store_bytes<(n < 8 ? 2 * n : 16)>(p, low_bytes(samples));
  if constexpr (n == 16) store(p + 8, high_bytes(samples));
}

/// Samples in a register for good: the compiler would rather load them again for each of their uses.
inline u8x16 loaded_once(u8x16 samples) {
  asm("" : "+x"(samples.v));
  return samples;
}

/// The samples themselves.
struct Whole {
  template <int n>
  static u8x16 row(const uint8_t* p) {
    return load_samples<n>(p);
  }
  static u8x16 between(u8x16 upper, u8x16) { return upper; }
};

/// Means of two samples, exact halves upward.
struct Pair {
  template <int n>
  static u8x16 row(const uint8_t* p) {
    return loaded_once(load_samples<n>(p));
  }
  static u8x16 between(u8x16 upper, u8x16 lower) { return mean_up(upper, lower); }
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
    return row(loaded_once(load_samples<n>(p)), loaded_once(load_samples<n>(p + 1)));
  }
  static u8x16 between(Row upper, Row lower) {
    return mean_up(upper.down, lower.up - u8x16{_mm_andnot_si128(upper.rounded.v, lower.rounded.v)});
  }
};

/// Calls piece(n, column) for pieces of 16, 8 or fewer samples that make up a row of a multiple of the least.
template <int least, int n = 16, class Piece>
[[gnu::always_inline]] inline void in_pieces(int64_t columns, Piece piece, int64_t x = 0) {
  for (; columns - x >= n; x += n) piece(std::integral_constant<int, n>(), x);
  if constexpr (n > least) in_pieces<least, n / 2>(columns, piece, x);
}

}  // namespace pqx::mc
