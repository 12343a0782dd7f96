#include "mpeg/block.h"

#include <algorithm>
#include <cstdlib>

#include "mpeg/codes.h"
#include "pqx_video.h"

namespace pqx_codec::mpeg {
namespace {

constexpr int most = 2047, least = -2048;

/// MPEG-2 has levels of twelve bits behind an escape, MPEG-1 of eight, or of sixteen that begin with 0 or 0x80.
int read_escaped_level(BitReader& bits, bool mpeg2) {
  int level;
  if (mpeg2) {
    level = int(bits.read(12)) << 20 >> 20;
    if (level == least) level = 0;
  } else {
    level = int8_t(bits.read(8));
    if (level == 0 || level == -128) level = 2 * level + int(bits.read(8));
  }
  if (level == 0) damaged("impossible level");
  return level;
}

/// With MPEG-1, all are odd; made so before they are limited.
template <bool mpeg2, bool intra>
int dequantized(int level, int step_x_scale) {
  const int doubled = 2 * std::abs(level) + !intra;
  // At most (2 * 2047 + 1) * 255 * 112.
  int magnitude = doubled * step_x_scale >> 5;
  if (!mpeg2 && magnitude % 2 == 0 && magnitude > 0) --magnitude;
  return level < 0 ? -std::min(magnitude, -least) : std::min(magnitude, most);
}

template <bool mpeg2, bool intra>
void read_block(BitReader& reader, const BlockCoding& coding, int intra_dc, Block& block) {
  BitReader bits = reader;  // in registers
  const CoefficientTable& table = intra && coding.intra_codes ? intra_coefficients : coefficients;
  unsigned positions = 0;
  int sum = intra_dc;  // only its parity counts
  size_t k = 0;
  const auto put = [&](int level) {
    if (k > 63) damaged("a block of more than 64 coefficients");
    const unsigned position = coding.scan[k];
    const int value = dequantized<mpeg2, intra>(level, coding.steps[position] * coding.scale);
    block.coefficients[position] = int16_t(value);
    positions |= position;
    sum += value;
  };
  if (intra) {
    block.coefficients[0] = int16_t(intra_dc);
    k = 1;
  } else if (bits.peek(1)) {
    // A block does not end before its first coefficient: that code's first bit stands for the commonest one.
    put(bits.peek(2) & 1 ? -1 : 1);
    bits.skip(2);
    k = 1;
  }
  for (;; ++k) {
    bits.refill();
    const Coefficient c = table.find(bits.ready());
    bits.skip(c.bits);
    k += c.run;
    if (c.level != 0) {
      put(c.level);
      continue;
    }
    if (c.bits == 0) damaged("impossible coefficient");
    if (c.run == CoefficientTable::end_of_block) break;
    k += bits.read(6);
    put(read_escaped_level(bits, mpeg2));
  }
  if (bits.overrun()) damaged("a slice ends within a block");
  reader = bits;
  block.positions = positions;
  if (mpeg2 && sum % 2 == 0) {
    block.coefficients[63] ^= 1;
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
