#include "jpeg/block_decoder.h"

#include <algorithm>
#include <limits>

#include "core/failure.h"
#include "pqx_video.h"

namespace pqx_codec::jpeg {
namespace {

// JPEG transforms samples less 128, the library pixels as they are: 8 * 128 in the DC is the difference.
constexpr int level_shift = 8 * 128;
constexpr int max_coefficient = std::numeric_limits<int16_t>::max();

}  // namespace

void decode_block(BitReader& reader, const HuffmanDecoder& dc_codes, const HuffmanDecoder& ac_codes, int& dc,
                  LevelBlock& block) {
  BitReader bits = reader;  // in registers
  bits.refill();
  // The limit is out of reach of any picture; it keeps damaged differences from adding up without end.
  dc = std::clamp(dc + dc_codes.decode(bits).value, -max_coefficient, max_coefficient);
  unsigned positions = 0, offset_levels = 0;
  size_t k = 1;
  for (; k < 64; ++k) {
    bits.refill();
    const HuffmanDecoder::Coefficient c = ac_codes.decode(bits);
    k += c.run;
    if (c.value == 0) {
      if (c.run == 15) continue;
      k = 64;
      break;
    }
    const unsigned position = natural_position[k];
    block.levels[position] = c.value;
    positions |= position;
    offset_levels |= unsigned(c.value + 128);
  }
  if (k > 64) throw Failure("damaged JPEG: a block of more than 64 coefficients");
  if (bits.overrun()) throw Failure("damaged JPEG: the data of the picture end early");
  reader = bits;
  block.dc = dc;
  block.positions = positions;
  block.offset_levels = offset_levels;
}

BlockReconstruction::BlockReconstruction(const QuantTable& steps) {
  // No coefficient of 8-bit samples reaches half of the highest 16-bit steps: with such a step all levels are zero.
  std::transform(steps.begin(), steps.end(), steps_.begin(),
                 [](uint16_t step) { return int16_t(std::min<int>(step, max_coefficient)); });
  largest_step_ = *std::max_element(steps_.begin(), steps_.end());
  pqx_Video_DeQuantizeInit_16S(steps_.data(), dequantizer_.data());
}

void BlockReconstruction::operator()(LevelBlock& block, uint8_t* pixels, int step) const {
  auto& levels = block.levels;
  if (block.is_dc_only()) {
    levels[0] = int16_t(std::clamp(block.dc * steps_[0] + level_shift, -max_coefficient, max_coefficient));
    pqx_Video_DCT8x8Inv_DC_16S_8U(levels.data(), pixels, step);
    levels[0] = 0;
    return;
  }
  if (block.magnitude_limit() * largest_step_ > max_coefficient) limit_levels(block);
  levels[0] = 0;
  pqx_Video_DeQuantize_16S_I(dequantizer_.data(), levels.data());
  levels[0] = int16_t(std::clamp(block.dc * steps_[0] + level_shift, -max_coefficient, max_coefficient));
  if (block.is_quarter()) {
    pqx_Video_DCT8x8Inv_1Q_16S_8U(levels.data(), pixels, step);
  } else {
    pqx_Video_DCT8x8Inv_16S_8U(levels.data(), pixels, step);
  }
  levels.fill(0);
}

/// Keeps the products of the dequantizer, which wrap, within 16 bits. Only damaged files need it.
void BlockReconstruction::limit_levels(LevelBlock& block) const {
  for (size_t i = 0; i < 64; ++i) {
    const int limit = max_coefficient / std::max<int>(1, steps_[i]);
    block.levels[i] = int16_t(std::clamp<int>(block.levels[i], -limit, limit));
  }
}

}  // namespace pqx_codec::jpeg
