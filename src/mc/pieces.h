/// Pieces of a row: 16, 8, 4 or 2 samples at the low end of a register.
#pragma once

#include <type_traits>

#include "common/lanes.h"

namespace pqx::mc {

template <int n>
u8x16 load_piece(const uint8_t* p);
template <>
inline u8x16 load_piece<16>(const uint8_t* p) {
  return load<u8x16>(p);
}
template <>
inline u8x16 load_piece<8>(const uint8_t* p) {
  return load_half<u8x16>(p);
}
template <>
inline u8x16 load_piece<4>(const uint8_t* p) {
  return {_mm_cvtsi32_si128(load_one<int32_t>(p))};
}
template <>
inline u8x16 load_piece<2>(const uint8_t* p) {
  return {_mm_cvtsi32_si128(load_one<uint16_t>(p))};
}

/// Samples in a register for good: the compiler would rather load them again for each of their uses.
inline u8x16 loaded_once(u8x16 samples) {
  asm("" : "+x"(samples.v));
  return samples;
}

template <int n>
void store_piece(uint8_t* p, u8x16 samples);
template <>
inline void store_piece<16>(uint8_t* p, u8x16 samples) {
  store(p, samples);
}
template <>
inline void store_piece<8>(uint8_t* p, u8x16 samples) {
  store_half(p, samples);
}
template <>
inline void store_piece<4>(uint8_t* p, u8x16 samples) {
  store_one(p, _mm_cvtsi128_si32(samples.v));
}
template <>
inline void store_piece<2>(uint8_t* p, u8x16 samples) {
  store_one(p, uint16_t(_mm_cvtsi128_si32(samples.v)));
}

/// The same widened to 16 bits.
template <int n>
void store_piece(int16_t* p, u8x16 samples) {
  const u8x16 zero = {_mm_setzero_si128()};
  if constexpr (n == 16) {
    store(p, interleave_low(samples, zero));
    store(p + 8, interleave_high(samples, zero));
  } else if constexpr (n == 8) {
    store(p, interleave_low(samples, zero));
  } else {
    store_half(p, interleave_low(samples, zero));
  }
}

/// Calls piece(n, column) for pieces of n samples that make up a row of a multiple of four.
template <class Piece>
[[gnu::always_inline]] inline void in_pieces(int64_t columns, Piece piece) {
  int64_t x = 0;
  for (; x + 16 <= columns; x += 16) piece(std::integral_constant<int, 16>(), x);
  if (columns & 8) {
    piece(std::integral_constant<int, 8>(), x);
    x += 8;
  }
  if (columns & 4) piece(std::integral_constant<int, 4>(), x);
}

/// A positive number of rows that come in fours.
class Fours {
 public:
  explicit Fours(unsigned rows) : count_(rows >> 2) {}

  /// two(k) does the k-th of the rows ahead and the one after, next() moves on by four.
  template <class Two, class Next>
  [[gnu::always_inline]] void each(Two two, Next next) const {
    unsigned left = count_;
    do {
      two(0);
      two(2);
      next();
    } while (--left > 0);
  }

 private:
  unsigned count_;
};

/// Eight rows, without a loop.
struct Eight {
  template <class Two, class Next>
  [[gnu::always_inline]] void each(Two two, Next) const {
#pragma GCC unroll 4
    for (int k = 0; k < 8; k += 2) two(k);
  }
};

inline uint8_t mean_up(uint8_t a, uint8_t b) { return uint8_t((a + b + 1) >> 1); }
using pqx::mean_up;

}  // namespace pqx::mc
