#include "mpeg/block.h"

#include <algorithm>

#include "mpeg/codes.h"
#include "pqx_video.h"

namespace pqx_codec::mpeg {
namespace {

constexpr int most = 2047, least = -2048;

/// MPEG-2 has levels of twelve bits behind an escape, MPEG-1 of eight, or of sixteen that begin with 0 or 0x80.
template <bool mpeg2>
[[gnu::always_inline]] inline int escaped_level(BitReader& bits) {
  const auto take = [&](int n) {
    const auto value = int(bits.ready(n));
    bits.skip(n);
    return value;
  };
  int level = mpeg2 ? take(12) << 20 >> 20 : int8_t(take(8));
  if (mpeg2 && level == least) level = 0;
  if (!mpeg2 && (level == 0 || level == -128)) level = 2 * level + take(8);
  if (level == 0) damaged("impossible level");
  return level;
}

/// With MPEG-1, all are odd; made so before they are limited.
template <bool mpeg2, bool intra>
[[gnu::always_inline]] inline int dequantized(int level, int step_x_scale) {
  const int sign = level < 0 ? -1 : 1;
  // At most (2 * 2047 + 1) * 255 * 112, and rounded toward zero.
  int value = (2 * level + (intra ? 0 : sign)) * step_x_scale / 32;
  if (!mpeg2 && value % 2 == 0 && value != 0) value -= sign;
  return std::clamp(value, least, most);
}

template <bool mpeg2, bool intra>
void read_block(BitReader& reader, const BlockCoding& coding, int intra_dc, Block& block) {
  BitReader bits = reader;  // in registers
  const CoefficientTable& table = intra && coding.intra_codes ? intra_coefficients : coefficients;
  const uint8_t *const scan = coding.scan, *const steps = coding.steps;
  const int scale = coding.scale;
  int16_t* const values = block.coefficients.data();
  unsigned positions = 0;
  int sum = intra_dc;  // only its parity counts
  unsigned k = intra;
  bits.refill();
  if (intra) {
    values[0] = int16_t(intra_dc);
  } else if (bits.ready(1)) {
    // A block does not end before its first coefficient: that code's first bit stands for the commonest one.
    const int value = dequantized<mpeg2, intra>(bits.ready(2) & 1 ? -1 : 1, steps[0] * scale);
    bits.skip(2);
    values[0] = int16_t(value);
    sum = value;
    k = 1;
  }
  for (;; ++k) {
    bits.refill();
    const Coefficient c = table.find(bits.ready());
    bits.skip(c.bits);
    k += c.run;
    int level = c.level;
    if (level == 0) {
      if (c.bits == 0) damaged("impossible coefficient");
      if (c.run == CoefficientTable::end_of_block) break;
      // At most 28 bits in all, of the 32 that are ready.
      k += bits.ready(6);
      bits.skip(6);
      level = escaped_level<mpeg2>(bits);
    }
    if (k > 63) damaged("a block of more than 64 coefficients");
    const unsigned position = scan[k];
    const int value = dequantized<mpeg2, intra>(level, steps[position] * scale);
    values[position] = int16_t(value);
    positions |= position;
    sum ^= value;
  }
  if (bits.overrun()) damaged("a slice ends within a block");
  reader = bits;
  block.positions = positions;
  if (mpeg2 && sum % 2 == 0) {
    values[63] ^= 1;
    block.last_was_changed = true;
  }
}

enum class Kind { dc, quarter, quarter_and_last, full };

Kind kind(const Block& block) {
  constexpr unsigned outside_quarter = 0b100100;
  if (block.positions & outside_quarter) return Kind::full;
  if (!block.last_was_changed) return block.positions == 0 ? Kind::dc : Kind::quarter;
  // The last coefficient moves a sample by less than a quarter: beside the DC alone it matters at exact halves only.
  if (block.positions == 0 && (block.coefficients[0] & 7) != 4) return Kind::dc;
  return Kind::quarter_and_last;
}

}  // namespace

void read_coefficients(BitReader& bits, const BlockCoding& coding, int intra_dc, Block& block) {
  if (coding.mpeg2)
    (coding.intra ? read_block<true, true> : read_block<true, false>)(bits, coding, intra_dc, block);
  else
    (coding.intra ? read_block<false, true> : read_block<false, false>)(bits, coding, intra_dc, block);
}

void write_intra(Block& block, uint8_t* samples, int step) {
  const int16_t* const coefficients = block.coefficients.data();
  switch (kind(block)) {
    case Kind::dc:
      pqx_Video_DCT8x8Inv_DC_16S_8U(coefficients, samples, step);
      break;
    case Kind::quarter:
      pqx_Video_DCT8x8Inv_1Q_16S_8U(coefficients, samples, step);
      break;
    default:
      pqx_Video_DCT8x8Inv_16S_8U(coefficients, samples, step);
  }
  block = {};
}

void add_residual(Block& block, uint8_t* samples, int step) {
  alignas(16) int16_t residual[64];
  const int16_t* const coefficients = block.coefficients.data();
  switch (kind(block)) {
    case Kind::dc:
      pqx_Video_DCT8x8Inv_DC_16S(coefficients, residual);
      break;
    case Kind::quarter:
      pqx_Video_DCT8x8Inv_1Q_16S(coefficients, residual);
      break;
    case Kind::quarter_and_last:
      pqx_Video_DCT8x8Inv_1Q_Mismatch_16S(coefficients, residual);
      break;
    case Kind::full:
      pqx_Video_DCT8x8Inv_16S(coefficients, residual);
  }
  pqx_Video_AddBlock_16S_8U_I(residual, samples, step);
  block = {};
}

}  // namespace pqx_codec::mpeg
