#pragma once

#include <array>
#include <cstdint>

#include "bits/bit_reader.h"
#include "bits/code.h"
#include "jpeg/format.h"

namespace pqx_codec::jpeg {

/// Codes by symbol.
class HuffmanEncoder {
 public:
  explicit HuffmanEncoder(const HuffmanSpec& table);
  /// The code, with zeros in the place of the number whose size the symbol states in its lower four bits.
  Code operator[](int symbol) const { return codes_[size_t(symbol)]; }

 private:
  std::array<Code, 256> codes_;
};

/// The best table for symbols that occur as often as given; at least one must occur.
HuffmanSpec optimal_table(const std::array<int64_t, 256>& frequencies);

/// Decodes a symbol together with the number whose size it states, mostly by one look at the next bits.
class HuffmanDecoder {
 public:
  enum class Kind { dc, ac };

  /// A run of zeros and the number behind it. A value of 0 stands for "end of block" or, with a run of 15, for 16
  /// zeros; among DC differences it is a number like others.
  struct Coefficient {
    int16_t value;
    uint8_t run;
    uint8_t bits;  // taken by the code and the number
  };

  /// Throws Failure for a table that cannot be.
  HuffmanDecoder(const HuffmanSpec& table, Kind kind);

  /// Takes up to 27 bits, which must be ready. Throws Failure for bits that are no code.
  Coefficient decode(BitReader& bits) const {
    Coefficient c = short_codes_[bits.ready(look_ahead)];
    if (c.bits == 0) [[unlikely]]
      c = decode_long(bits.ready(), c);
    bits.skip(c.bits);
    return c;
  }

 private:
  static constexpr int look_ahead = 10;

  int run_of(int symbol) const { return kind_ == Kind::dc ? 0 : symbol >> 4; }
  int size_of(int symbol) const { return kind_ == Kind::dc ? symbol : symbol & 15; }
  Coefficient decode_long(uint64_t ready, Coefficient hint) const;

  // By the next bits. If they hold a code but not all of its number, its symbol stands for the run and its length
  // for the value; if not even a code, all is 0.
  std::array<Coefficient, 1 << look_ahead> short_codes_{};
  // By code length: the first 16 bits that are above all codes of that length, and what leads from code to symbol.
  std::array<uint32_t, 17> limits_{};
  std::array<int, 17> offsets_{};
  std::array<uint8_t, 256> symbols_{};
  Kind kind_;
};

}  // namespace pqx_codec::jpeg
