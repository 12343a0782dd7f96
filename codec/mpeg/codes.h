/// The variable-length codes of ISO/IEC 11172-2 and 13818-2. Most are those of H.261 and what was added to them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "bits/code.h"
#include "core/failure.h"
#include "h261/format.h"

namespace pqx_codec::mpeg {

using h261::RunLevel;

[[noreturn]] inline void damaged(const std::string& what) { throw Failure("damaged MPEG stream: " + what); }

template <class Table>
auto read_code(const Table& table, BitReader& bits, const char* what) {
  const auto value = table.read(bits);
  if (!value) damaged(std::string("impossible ") + what);
  return *value;
}

/// Added to the increment that follows; macroblock_stuffing, of MPEG-1 alone, is 0, as in H.261.
inline constexpr int address_escape = 33 + 1;
inline constexpr auto address_codes =
    joined(h261::address_codes, std::to_array<Coded<int>>({{code("0000 0001 000"), address_escape}}));
inline constexpr CodeTable<int, 11> address_table(address_codes);
static_assert(address_table.unused() == 22);

inline constexpr auto motion_codes =
    joined(h261::vector_codes, std::to_array<Coded<int>>({{code("0000 0011 000"), 16}}));
inline constexpr CodeTable<int, 11> motion_table(motion_codes);
static_assert(motion_table.unused() == 24);

/// Difference of the two vectors of dual prime.
inline constexpr auto dual_prime_codes =
    std::to_array<Coded<int>>({{code("0"), 0}, {code("10"), 1}, {code("11"), -1}});
inline constexpr CodeTable<int, 2> dual_prime_table(dual_prime_codes);

/// 0 is for pictures with more than one pair of chroma blocks alone.
inline constexpr auto pattern_codes =
    joined(h261::pattern_codes, std::to_array<Coded<int>>({{code("0000 0000 1"), 0}}));
inline constexpr CodeTable<int, 9> pattern_table(pattern_codes);
static_assert(pattern_table.unused() == 1);

struct MacroblockType {
  bool quant = false, forward = false, backward = false, pattern = false, intra = false;

  bool operator==(const MacroblockType&) const = default;
};

inline constexpr MacroblockType intra{.intra = true}, intra_quant{.quant = true, .intra = true};
inline constexpr auto i_type_codes =
    std::to_array<Coded<MacroblockType>>({{code("1"), intra}, {code("01"), intra_quant}});
inline constexpr auto p_type_codes = std::to_array<Coded<MacroblockType>>({
    {code("1"), {.forward = true, .pattern = true}},
    {code("01"), {.pattern = true}},
    {code("001"), {.forward = true}},
    {code("0001 1"), intra},
    {code("0001 0"), {.quant = true, .forward = true, .pattern = true}},
    {code("0000 1"), {.quant = true, .pattern = true}},
    {code("0000 01"), intra_quant},
});
inline constexpr auto b_type_codes = std::to_array<Coded<MacroblockType>>({
    {code("10"), {.forward = true, .backward = true}},
    {code("11"), {.forward = true, .backward = true, .pattern = true}},
    {code("010"), {.backward = true}},
    {code("011"), {.backward = true, .pattern = true}},
    {code("0010"), {.forward = true}},
    {code("0011"), {.forward = true, .pattern = true}},
    {code("0001 1"), intra},
    {code("0001 0"), {.quant = true, .forward = true, .backward = true, .pattern = true}},
    {code("0000 11"), {.quant = true, .forward = true, .pattern = true}},
    {code("0000 10"), {.quant = true, .backward = true, .pattern = true}},
    {code("0000 01"), intra_quant},
});
inline constexpr CodeTable<MacroblockType, 2> i_type_table(i_type_codes);
inline constexpr CodeTable<MacroblockType, 6> p_type_table(p_type_codes), b_type_table(b_type_codes);
static_assert(i_type_table.unused() == 1 && p_type_table.unused() == 1 && b_type_table.unused() == 1);

/// Bits of the difference of an intra block's DC.
inline constexpr auto luma_dc_codes = std::to_array<Coded<int>>({
    {code("100"), 0},
    {code("00"), 1},
    {code("01"), 2},
    {code("101"), 3},
    {code("110"), 4},
    {code("1110"), 5},
    {code("1111 0"), 6},
    {code("1111 10"), 7},
    {code("1111 110"), 8},
    {code("1111 1110"), 9},
    {code("1111 1111 0"), 10},
    {code("1111 1111 1"), 11},
});
inline constexpr auto chroma_dc_codes = std::to_array<Coded<int>>({
    {code("00"), 0},
    {code("01"), 1},
    {code("10"), 2},
    {code("110"), 3},
    {code("1110"), 4},
    {code("1111 0"), 5},
    {code("1111 10"), 6},
    {code("1111 110"), 7},
    {code("1111 1110"), 8},
    {code("1111 1111 0"), 9},
    {code("1111 1111 10"), 10},
    {code("1111 1111 11"), 11},
});
inline constexpr CodeTable<int, 9> luma_dc_table(luma_dc_codes);
inline constexpr CodeTable<int, 10> chroma_dc_table(chroma_dc_codes);
static_assert(luma_dc_table.unused() == 0 && chroma_dc_table.unused() == 0);

/// Ladders of sixteen codes each, beyond those of H.261: these bits, then 15, 14, ... 0 in four bits.
struct Ladder {
  Code prefix;
  std::array<int8_t, 32> rungs;  // run and level of each
};
inline constexpr std::array<Ladder, 3> coefficient_ladders{{
    {code("0000 0000 01"), {0, 16, 0, 17, 0, 18, 0, 19, 0, 20, 0, 21, 0, 22, 0, 23,
                            0, 24, 0, 25, 0, 26, 0, 27, 0, 28, 0, 29, 0, 30, 0, 31}},
    {code("0000 0000 001"),
     {1, 8, 1, 9, 1, 10, 1, 11, 1, 12, 1, 13, 1, 14, 0, 32, 0, 33, 0, 34, 0, 35, 0, 36, 0, 37, 0, 38, 0, 39, 0, 40}},
    {code("0000 0000 0001"),
     {27, 1, 28, 1, 29, 1, 30, 1, 31, 1, 11, 2, 12, 2, 13, 2, 14, 2, 15, 2, 16, 2, 6, 3, 1, 15, 1, 16, 1, 17, 1, 18}},
}};

/// The other table, for intra blocks: these, and those of at least twelve bits of the first table that stand for
/// something else than these.
inline constexpr std::array<Coded<RunLevel>, 41> intra_coefficient_codes{{
    {code("10"), {0, 1}},
    {code("010"), {1, 1}},
    {code("110"), {0, 2}},
    {code("0010 1"), {2, 1}},
    {code("0111"), {0, 3}},
    {code("0011 1"), {3, 1}},
    {code("0001 10"), {4, 1}},
    {code("0011 0"), {1, 2}},
    {code("0001 11"), {5, 1}},
    {code("0000 110"), {6, 1}},
    {code("0000 100"), {7, 1}},
    {code("1110 0"), {0, 4}},
    {code("0000 111"), {2, 2}},
    {code("0000 101"), {8, 1}},
    {code("1111 000"), {9, 1}},
    {code("1110 1"), {0, 5}},
    {code("0001 01"), {0, 6}},
    {code("1111 001"), {1, 3}},
    {code("0010 0110"), {3, 2}},
    {code("1111 010"), {10, 1}},
    {code("0010 0001"), {11, 1}},
    {code("0010 0101"), {12, 1}},
    {code("0010 0100"), {13, 1}},
    {code("0001 00"), {0, 7}},
    {code("0010 0111"), {1, 4}},
    {code("1111 1100"), {2, 3}},
    {code("1111 1101"), {4, 2}},
    {code("0000 0010 0"), {5, 2}},
    {code("0000 0010 1"), {14, 1}},
    {code("0000 0011 1"), {15, 1}},
    {code("0000 0011 01"), {16, 1}},
    {code("1111 011"), {0, 8}},
    {code("1111 100"), {0, 9}},
    {code("0010 0011"), {0, 10}},
    {code("0010 0010"), {0, 11}},
    {code("0010 0000"), {1, 5}},
    {code("0000 0011 00"), {2, 4}},
    {code("1111 1010"), {0, 12}},
    {code("1111 1011"), {0, 13}},
    {code("1111 1110"), {0, 14}},
    {code("1111 1111"), {0, 15}},
}};

/// A coefficient with its sign, or a code that is none, of level 0: the end of the block, an escape, or no code at all,
/// of no bits.
struct Coefficient {
  uint8_t run = 0;
  int8_t level = 0;
  uint8_t bits = 0;
};

class CoefficientTable {
 public:
  static constexpr uint8_t end_of_block = 64;  // as a run

  constexpr CoefficientTable(bool for_intra) {
    add(for_intra ? code("0110") : h261::end_of_block, {end_of_block, 0});
    add(h261::escape, {});
    if (for_intra)
      for (const auto& c : intra_coefficient_codes) add_both_signs(c.code, c.value);
    const auto add_common = [&](Code code, RunLevel value) {
      if (!for_intra || (code.length >= 12 && !is_intra_short(value))) add_both_signs(code, value);
    };
    for (const auto& c : h261::coefficient_codes) add_common(c.code, c.value);
    for (const Ladder& ladder : coefficient_ladders)
      for (uint32_t k = 0; k < 16; ++k)
        add_common({ladder.prefix.bits << 4 | (15 - k), ladder.prefix.length + 4},
                   {ladder.rungs[2 * k], ladder.rungs[2 * k + 1]});
  }

  /// @param ready  bits from the highest down
  const Coefficient& find(uint64_t ready) const {
    const auto ahead = uint32_t(ready >> (64 - longest));
    return ahead >> rare_bits ? common_[ahead >> (longest - common_bits)] : rare_[ahead];
  }

  constexpr int unused() const {
    int n = 0;
    for (size_t i = 1u << (rare_bits + common_bits - longest); i < common_.size(); ++i)
      n += common_[i].bits == 0 ? 1 << (longest - common_bits) : 0;
    for (const Coefficient& c : rare_) n += c.bits == 0;
    return n;
  }

 private:
  // Codes that begin with six zeros are looked up by the eleven bits behind them, the others by the first nine.
  static constexpr int longest = 17, common_bits = 9, rare_bits = longest - 6;

  static constexpr bool is_intra_short(RunLevel value) {
    for (const auto& c : intra_coefficient_codes)
      if (c.value.run == value.run && c.value.level == value.level) return true;
    return false;
  }

  constexpr void add_both_signs(Code code, RunLevel c) {
    for (uint32_t minus : {0u, 1u})
      add({code.bits << 1 | minus, code.length + 1}, {uint8_t(c.run), int8_t(minus ? -c.level : c.level)});
  }

  constexpr void add(Code code, Coefficient c) {
    c.bits = uint8_t(code.length);
    const bool is_rare = code.bits << (longest - code.length) >> rare_bits == 0;
    const int free = (is_rare ? longest : common_bits) - code.length;
    for (uint32_t i = 0; i < 1u << free; ++i) {
      Coefficient& entry = is_rare ? rare_[code.bits << free | i] : common_[code.bits << free | i];
      if (entry.bits != 0) throw "one code begins with another";
      entry = c;
    }
  }

  std::array<Coefficient, 1 << common_bits> common_{};
  std::array<Coefficient, 1 << rare_bits> rare_{};
};

inline constexpr CoefficientTable coefficients(false), intra_coefficients(true);
// No code begins with twelve zeros. Of the second table's, six of twelve bits and four of thirteen are free.
static_assert(coefficients.unused() == 32 && intra_coefficients.unused() == 32 + 6 * 32 + 4 * 16);

}  // namespace pqx_codec::mpeg
