#include "h263/block.h"

#include <algorithm>

namespace pqx_codec::h263 {
namespace {

/// A coefficient with its sign, or an escape (level 0), or no code (no bits).
struct Coefficient {
  int8_t level = 0;
  uint8_t run = 0, bits = 0, last = 0;
};

constexpr int longest_code = 13;  // with its sign

/// Codes that begin with four zeros are looked up by the nine bits behind them, the others by the first ten.
class CoefficientTable {
 public:
  consteval explicit CoefficientTable(CoefficientCodes codes) {
    add_all(codes.inner, 0);
    add_all(codes.last, 1);
    add(escape_code, "", {0, 0, uint8_t(escape_code.size()), 0});
  }

  const Coefficient& operator[](uint32_t ahead) const {
    return ahead >> rare_bits ? common_[ahead >> common_shift] : rare_[ahead];
  }

 private:
  static constexpr int rare_bits = longest_code - 4, common_shift = 3;

  consteval void add_all(std::string_view list, uint8_t last) {
    uint8_t run = 0;
    int8_t level = 1;
    while (!list.empty()) {
      const size_t length = std::min(list.find_first_of(" /"), list.size());
      const auto bits = uint8_t(length + 1);
      add(list.substr(0, length), "0", {level, run, bits, last});
      add(list.substr(0, length), "1", {int8_t(-level), run, bits, last});
      const bool next_run = length < list.size() && list[length] == '/';
      run = uint8_t(run + next_run);
      level = next_run ? int8_t(1) : int8_t(level + 1);
      list.remove_prefix(std::min(length + 1, list.size()));
    }
  }

  consteval void add(std::string_view code, std::string_view sign, Coefficient coefficient) {
    uint32_t first = 0;
    for (const std::string_view digits : {code, sign})
      for (const char c : digits) first = first << 1 | uint32_t(c - '0');
    const int free = longest_code - int(coefficient.bits);
    first <<= free;
    const bool rare = first >> rare_bits == 0;
    for (uint32_t ahead = first; ahead < first + (1u << free); ahead += rare ? 1 : 1u << common_shift) {
      Coefficient& entry = rare ? rare_[ahead] : common_[ahead >> common_shift];
      if (entry.bits || (!rare && free < common_shift)) throw "codes that cannot be told apart";
      entry = coefficient;
    }
  }

  std::array<Coefficient, 1 << (longest_code - common_shift)> common_{};
  std::array<Coefficient, 1 << rare_bits> rare_{};
};
constexpr CoefficientTable coefficient_table(coefficient_codes), advanced_intra_table(advanced_intra_codes);

/// The level behind an escape code's run, not zero.
int read_escaped_level(BitReader& bits, bool long_levels) {
  const auto level = int8_t(bits.read(8));
  if (level == 0 || (level == -128 && !long_levels)) damaged("impossible level");
  if (level != -128) return level;
  // The lower five of eleven bits come first, so that no start code arises.
  const auto low = int(bits.read(5));
  const auto high = int(bits.read(6));
  const int extended = (high >= 32 ? high - 64 : high) * 32 + low;
  if (extended == 0) damaged("impossible level");
  return extended;
}

int16_t clipped(int coefficient) { return int16_t(std::clamp(coefficient, -2048, 2047)); }

}  // namespace

void read_coefficients(BitReader& reader, const BlockSyntax& syntax, unsigned first, LevelBlock& block) {
  BitReader bits = reader;  // in registers
  const CoefficientTable& table = syntax.advanced_intra ? advanced_intra_table : coefficient_table;
  const auto& scan = scans[size_t(syntax.scan)];
  // Levels stand for intervals, and for their middles outside of Annex I; to an even one falls an odd coefficient.
  const int offset = syntax.advanced_intra ? 0 : syntax.quant - (syntax.quant % 2 == 0);
  unsigned positions = 0, k = first;
  for (bool last = false; !last; ++k) {
    bits.refill();
    const Coefficient c = table[bits.ready(longest_code)];
    if (c.bits == 0) damaged("impossible coefficient");
    bits.skip(c.bits);
    int level = c.level;
    unsigned run = c.run;
    last = c.last;
    if (level == 0) {
      last = bits.ready(1);
      run = bits.ready(7) & 63;
      bits.skip(7);
      level = read_escaped_level(bits, syntax.long_levels);
    }
    k += run;
    if (k > 63) damaged("a block of more than 64 coefficients");
    const unsigned position = scan[k];
    block.levels[position] = clipped(2 * syntax.quant * level + (level < 0 ? -offset : offset));
    positions |= position;
  }
  block.positions |= positions;
  reader = bits;
}

void IntraPrediction::apply(Scan scan, bool has_above, bool has_left, int column, int row, LevelBlock& block) {
  Edges& edges = edges_[size_t(row * columns_ + column)];
  auto& c = block.levels;
  const Edges* const above = has_above ? &edges - columns_ : nullptr;
  const Edges* const left = has_left ? &edges - 1 : nullptr;
  constexpr int middle = 1024;
  int dc = middle;
  if (scan == Scan::zigzag) {
    if (above && left)
      dc = (above->row[0] + left->column[0]) / 2;
    else if (above || left)
      dc = above ? above->row[0] : left->column[0];
  } else if (scan == Scan::horizontal && above) {
    dc = above->row[0];
    for (unsigned i = 1; i < 8; ++i) {
      c[i] = clipped(c[i] + above->row[i]);
      if (c[i]) block.positions |= i;
    }
  } else if (scan == Scan::vertical && left) {
    dc = left->column[0];
    for (unsigned i = 1; i < 8; ++i) {
      c[8 * i] = clipped(c[8 * i] + left->column[i]);
      if (c[8 * i]) block.positions |= 8 * i;
    }
  }
  // An odd DC never gives a sample halfway between two integers.
  c[0] = int16_t(std::clamp((c[0] + dc) | 1, 0, 2047));
  for (size_t i = 0; i < 8; ++i) edges.row[i] = c[i], edges.column[i] = c[8 * i];
}

}  // namespace pqx_codec::h263
