#include "jpeg/huffman.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "core/failure.h"

namespace pqx_codec::jpeg {
namespace {

/// The number of n bits as JPEG writes it: the upper half of the range stands for itself, the lower for negatives.
constexpr int signed_number(uint64_t bits, int n) {
  return n == 0 ? 0 : bits >> (n - 1) ? int(bits) : int(bits) - (1 << n) + 1;
}
static_assert(signed_number(0b101, 3) == 5 && signed_number(0b010, 3) == -5);

}  // namespace

HuffmanEncoder::HuffmanEncoder(const HuffmanSpec& table) {
  unsigned code = 0;
  size_t index = 0;
  for (int length = 1; length <= 16; ++length, code <<= 1)
    for (int i = 0; i < table.counts[size_t(length - 1)]; ++i, ++code) {
      const int symbol = table.symbols[index++], size = symbol & 15;
      codes_[size_t(symbol)] = {code << size, length + size};
    }
}

HuffmanSpec optimal_table(const std::array<int64_t, 256>& frequencies) {
  // Trees of symbols, merged by twos from the rarest up. A symbol that never occurs, here number 256, takes the code
  // of nothing but ones, which JPEG leaves out.
  struct Tree {
    int64_t frequency;
    std::vector<int> symbols;
  };
  std::vector<Tree> trees{{1, {256}}};
  for (int symbol = 0; symbol < 256; ++symbol)
    if (frequencies[size_t(symbol)] > 0) trees.push_back({frequencies[size_t(symbol)], {symbol}});
  std::array<int, 257> lengths{};
  while (trees.size() > 1) {
    std::partial_sort(trees.begin(), trees.begin() + 2, trees.end(),
                      [](const Tree& a, const Tree& b) { return a.frequency < b.frequency; });
    Tree& merged = trees[1];
    merged.frequency += trees[0].frequency;
    merged.symbols.insert(merged.symbols.end(), trees[0].symbols.begin(), trees[0].symbols.end());
    for (const int symbol : merged.symbols) ++lengths[size_t(symbol)];
    std::swap(trees[0], trees.back());
    trees.pop_back();
  }

  // No code may exceed 16 bits. Two symbols of a longer code make room: one moves up by a bit in their common place,
  // the other goes with a symbol of a shorter code, which becomes longer by one.
  std::array<int, 258> counts{};
  for (const int length : lengths) ++counts[size_t(length)];
  for (size_t length = 257; length > 16; --length)
    while (counts[length] > 0) {
      size_t shorter = length - 2;
      while (counts[shorter] == 0) --shorter;
      counts[length] -= 2;
      counts[length - 1] += 1;
      counts[shorter + 1] += 2;
      counts[shorter] -= 1;
    }
  size_t longest = 16;
  while (longest > 1 && counts[longest] == 0) --longest;
  --counts[longest];  // the code of ones

  HuffmanSpec table;
  for (size_t length = 1; length <= 16; ++length) table.counts[length - 1] = uint8_t(counts[length]);
  std::vector<int> order;
  for (int symbol = 0; symbol < 256; ++symbol)
    if (lengths[size_t(symbol)] > 0) order.push_back(symbol);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return lengths[size_t(a)] < lengths[size_t(b)]; });
  std::copy(order.begin(), order.end(), table.symbols.begin());
  return table;
}

HuffmanDecoder::HuffmanDecoder(const HuffmanSpec& table, Kind kind) : symbols_(table.symbols), kind_(kind) {
  uint32_t code = 0;
  int index = 0;
  for (int length = 1; length <= 16; ++length, code <<= 1) {
    offsets_[size_t(length)] = index - int(code);
    for (int i = 0; i < table.counts[size_t(length - 1)]; ++i, ++code, ++index) {
      if (code >> length) throw Failure("damaged JPEG: impossible Huffman table");
      if (length > look_ahead) continue;
      // Every continuation of a short code.
      const int symbol = symbols_[size_t(index)], size = size_of(symbol), rest = look_ahead - length;
      for (uint32_t tail = 0; tail < 1u << rest; ++tail) {
        Coefficient& entry = short_codes_[code << rest | tail];
        if (size > rest) {
          entry = {int16_t(length), uint8_t(symbol), 0};
        } else {
          entry = {int16_t(signed_number(tail >> (rest - size), size)), uint8_t(run_of(symbol)),
                   uint8_t(length + size)};
        }
      }
    }
    limits_[size_t(length)] = code << (16 - length);
  }
}

HuffmanDecoder::Coefficient HuffmanDecoder::decode_long(uint64_t ready, Coefficient hint) const {
  size_t length = size_t(hint.value);
  int symbol = hint.run;
  if (length == 0) {
    const uint32_t next = uint32_t(ready >> 48);
    length = look_ahead + 1;
    while (length <= 16 && next >= limits_[length]) ++length;
    if (length > 16) throw Failure("damaged JPEG: bits that are no Huffman code");
    symbol = symbols_[size_t(int(next >> (16 - length)) + offsets_[length])];
  }
  const int size = size_of(symbol);
  if (size > (kind_ == Kind::dc ? max_dc_size : max_ac_size))
    throw Failure("damaged JPEG: a coefficient beyond 8-bit samples");
  const uint64_t number = size == 0 ? 0 : ready << length >> (64 - size);
  return {int16_t(signed_number(number, size)), uint8_t(run_of(symbol)), uint8_t(int(length) + size)};
}

}  // namespace pqx_codec::jpeg
