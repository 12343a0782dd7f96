/// The entropy coding of blocks, into bits or into counts of symbols.
#pragma once

#include <emmintrin.h>

#include <array>
#include <bit>
#include <cstdint>

#include "bits/bit_writer.h"
#include "bits/zig_zag.h"
#include "jpeg/format.h"
#include "jpeg/huffman.h"

namespace pqx_codec::jpeg {

/// The levels of a block as a bit mask: bit k is set if the k-th level in zig-zag order is not zero.
class ZigZagMask {
 public:
  uint64_t operator()(const int16_t* levels) const {
    uint64_t mask = 0;
    for (size_t row = 0; row < 8; row += 2) {
      const auto load = [&](size_t r) { return _mm_load_si128(reinterpret_cast<const __m128i*>(levels + 8 * r)); };
      const __m128i bytes = _mm_packs_epi16(load(row), load(row + 1));
      const unsigned zeros = unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())));
      mask |= bits_[row][~zeros & 255] | bits_[row + 1][~zeros >> 8 & 255];
    }
    return mask;
  }

 private:
  // By row and by the mask of its eight levels in natural order.
  static constexpr auto bits_ = [] {
    std::array<std::array<uint64_t, 256>, 8> bits{};
    for (size_t k = 0; k < 64; ++k)
      for (size_t mask = 0; mask < 256; ++mask)
        if (mask >> (natural_position[k] % 8) & 1) bits[natural_position[k] / 8][mask] |= uint64_t{1} << k;
    return bits;
  }();
};

/// A number as JPEG writes it behind the symbol that states its size: a negative one by its lowest bits less one.
struct SizedNumber {
  int size;
  uint32_t bits;

  explicit SizedNumber(int value) {
    const int sign = value >> 31;
    const uint32_t magnitude = uint32_t((value ^ sign) - sign);
    size = __builtin_clz(magnitude << 1 | 1) ^ 31;
    bits = uint32_t(value + sign) & ((1u << size) - 1);
  }
};

/// Puts the levels of a block into Huffman symbols and the numbers behind them.
template <class Sink>
void code_block(const int16_t* levels, int& previous_dc, Sink& sink) {
  auto&& out = sink.open();
  const SizedNumber difference(levels[0] - previous_dc);
  out.dc(difference.size, difference.bits);
  previous_dc = levels[0];

  int last = 0;
  for (uint64_t mask = ZigZagMask()(levels) & ~uint64_t{1}; mask; mask &= mask - 1) {
    const int k = std::countr_zero(mask);
    int run = k - last - 1;
    for (; run > 15; run -= 16) out.ac(0xF0, 0);
    const SizedNumber level(levels[natural_position[size_t(k)]]);
    out.ac(run << 4 | level.size, level.bits);
    last = k;
  }
  if (last < 63) out.ac(0, 0);
  sink.close(out);
}

/// Counts symbols.
struct SymbolCounter {
  std::array<int64_t, 256> dc_counts{}, ac_counts{};

  SymbolCounter& open() { return *this; }
  void close(SymbolCounter&) {}
  void dc(int symbol, uint32_t) { ++dc_counts[size_t(symbol)]; }
  void ac(int symbol, uint32_t) { ++ac_counts[size_t(symbol)]; }
};

/// Writes symbols by their codes.
struct CodeWriter {
  HuffmanEncoder dc_codes, ac_codes;
  BitBuffer* buffer;

  struct Block {
    const CodeWriter& codes;
    BitCursor cursor;
    void dc(int symbol, uint32_t number) { put(codes.dc_codes[symbol], number); }
    void ac(int symbol, uint32_t number) { put(codes.ac_codes[symbol], number); }
    void put(Code code, uint32_t number) { cursor.put(code.bits | number, code.length); }
  };
  Block open() { return {*this, buffer->cursor()}; }
  void close(const Block& block) { buffer->cursor() = block.cursor; }
};

}  // namespace pqx_codec::jpeg
