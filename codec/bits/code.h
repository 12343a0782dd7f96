/// Codes of varying length.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "bits/bit_reader.h"

namespace pqx_codec {

/// A code word, of which the lowest `length` bits count.
struct Code {
  uint32_t bits = 0;
  int length = 0;
};

/// A code as a standard prints it: "0000 101".
consteval Code code(std::string_view text) {
  Code c;
  for (const char digit : text)
    if (digit != ' ') c = {c.bits << 1 | uint32_t(digit - '0'), c.length + 1};
  return c;
}

/// A code and what it stands for.
template <class Value>
struct Coded {
  Code code;
  Value value;
};

template <class Value, size_t n, size_t m>
constexpr std::array<Coded<Value>, n + m> joined(const std::array<Coded<Value>, n>& a,
                                                 const std::array<Coded<Value>, m>& b) {
  std::array<Coded<Value>, n + m> both{};
  for (size_t i = 0; i < n + m; ++i) both[i] = i < n ? a[i] : b[i - n];
  return both;
}

/// Codes that stand for their places in a list with spaces between them. None may begin with another one.
template <size_t count>
consteval std::array<Coded<uint8_t>, count> codes_in_order(std::string_view list) {
  std::array<Coded<uint8_t>, count> codes{};
  for (uint8_t place = 0; place < count; ++place) {
    const size_t length = std::min(list.find(' '), list.size());
    Code code{0, int(length)};
    for (const char digit : list.substr(0, length)) code.bits = code.bits << 1 | uint32_t(digit - '0');
    codes[place] = {code, place};
    list.remove_prefix(std::min(length + 1, list.size()));
    for (uint8_t k = 0; k < place; ++k) {
      const Code before = codes[k].code;
      const int shorter = std::min(code.length, before.length);
      if (code.bits >> (code.length - shorter) == before.bits >> (before.length - shorter))
        throw "one code begins with another";
    }
  }
  if (!list.empty()) throw "more codes than told";
  return codes;
}

/// Looks values up by the next bits. No code may be longer than `longest`, nor begin with another one: made at compile
/// time, such a table does not compile.
template <class Value, int longest>
class CodeTable {
 public:
  template <size_t n>
  constexpr explicit CodeTable(const std::array<Coded<Value>, n>& codes) {
    for (const Coded<Value>& c : codes) {
      const int free = longest - c.code.length;
      for (uint32_t i = 0; i < 1u << free; ++i) {
        Entry& entry = entries_[c.code.bits << free | i];
        if (entry.length != 0) throw "a code begins with another";
        entry = {c.value, uint8_t(c.code.length)};
      }
    }
  }

  /// Takes a code; nothing if the next bits are none.
  std::optional<Value> read(BitReader& bits) const {
    const Entry& entry = entries_[bits.peek(longest)];
    if (entry.length == 0) return {};
    bits.skip(entry.length);
    return entry.value;
  }

  /// How many values of the next `longest` bits begin with no code.
  constexpr int unused() const {
    int n = 0;
    for (const Entry& entry : entries_) n += entry.length == 0;
    return n;
  }

 private:
  struct Entry {
    Value value{};
    uint8_t length = 0;
  };
  std::array<Entry, size_t{1} << longest> entries_{};
};

/// Codes by value, that of `lowest` first.
template <size_t size, size_t n>
constexpr std::array<Code, size> codes_by_value(const std::array<Coded<int>, n>& codes, int lowest) {
  std::array<Code, size> table{};
  for (const Coded<int>& c : codes) table[size_t(c.value - lowest)] = c.code;
  return table;
}

}  // namespace pqx_codec
