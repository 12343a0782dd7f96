/// A conversion table without the table: by one product of 16-bit words.
#pragma once

#include "color/table_rules.h"
#include "common/lanes.h"

namespace pqx {

/// The high word of the product of a factor and an operand, which is the sample times 1 << shift plus a bias. The bias
/// brings the fraction with which the floor of the product rounds as the table does; it leaves every entry too high by
/// the same excess. tools/constants finds such forms.
struct TableForm {
  int shift, bias, factor, excess;

  static constexpr int half = 32768;  // a factor that is a shift

  constexpr int product(int x) const { return int(uint32_t((x << shift) + bias) * uint32_t(factor) >> 16); }
  constexpr bool agrees_with(auto table) const {
    return (255 << shift) + bias < 65536 && rule::agree([this](int x) { return product(x) - excess; }, table);
  }

  /// From samples in words, to which part of the bias may have been added before.
  u16x8 operand(u16x8 x, int added = 0) const {
    const u16x8 shifted = shift == 0 ? x : shift == 1 ? x + x : x << shift;
    const int rest = bias - (added << shift);
    return rest == 0 ? shifted : shifted + all_u16(rest);
  }
  // Of sixteen samples: those at even and odd places, or the first and the last eight. Where bytes become words by a
  // byte of our choice, most of the bias comes with it.
  u16x8 even(u8x16 x) const { return operand(even_bytes(x)); }
  u16x8 odd(u8x16 x) const { return operand(odd_bytes(x)); }
  u16x8 low(u8x16 x) const { return operand(as<u16x8>(interleave_low(x, all_u8(upper_byte()))), upper_byte() << 8); }
  u16x8 high(u8x16 x) const {
    return operand(as<u16x8>(interleave_high(x, all_u8(upper_byte()))), upper_byte() << 8);
  }

  u16x8 product(u16x8 operand) const {
    return factor == half ? operand >> 1 : high_product(operand, all_u16(factor));
  }

 private:
  constexpr int upper_byte() const { return bias >> (8 + shift); }
};

/// A table with every entry negated, for a product that is subtracted.
constexpr auto minus(auto table) {
  return [=](int x) { return -table(x); };
}

}  // namespace pqx
