#include "jpeg/block_decoder.h"

#include <algorithm>
#include <limits>

#include "bits/zig_zag.h"
#include "core/failure.h"
#include "pqx_video.h"

namespace pqx_codec::jpeg {
namespace {

constexpr int max_coefficient = std::numeric_limits<int16_t>::max();

}  // namespace

void decode_block(BitReader& reader, const HuffmanDecoder& dc_codes, const HuffmanDecoder& ac_codes, int& dc,
                  LevelBlock& block) {
  BitReader bits = reader;  // in registers
  bits.refill();
  // The limit is out of reach of any picture; it keeps damaged differences from adding up without end.
  dc = std::clamp(dc + dc_codes.decode(bits).value, -max_coefficient, max_coefficient);
  unsigned positions = 0, offset_levels = 0;  // or'ed: of levels in -128..127 the latter stays below 256
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
  block.levels[0] = int16_t(dc);
  block.positions = positions;
  block.bound = offset_levels < 256 ? 128 : (1 << max_ac_size) - 1;
}

BlockReconstruction::BlockReconstruction(const QuantTable& steps) {
  // No coefficient of 8-bit samples reaches half of the highest 16-bit steps: with such a step all levels are zero.
  std::transform(steps.begin(), steps.end(), steps_.begin(),
                 [](uint16_t step) { return int16_t(std::min<int>(step, max_coefficient)); });
  largest_step_ = *std::max_element(steps_.begin(), steps_.end());
  pqx_Video_DeQuantizeInit_16S(steps_.data(), dequantizer_.data());
}

void BlockReconstruction::operator()(LevelBlock& block, uint8_t* pixels, int step) const {
  const int dc = block.levels[0] * steps_[0] + level_shift;
  if (!block.is_dc_only()) {
    if (block.bound * largest_step_ > max_coefficient) limit_levels(block);
    pqx_Video_DeQuantize_16S_I(dequantizer_.data(), block.levels.data());
  }
  block.levels[0] = int16_t(std::clamp(dc, -max_coefficient, max_coefficient));
  inverse_transform(block, pixels, step);
  block.clear();
}

/// Keeps the products of the dequantizer, which wrap, within 16 bits. Only damaged files need it.
void BlockReconstruction::limit_levels(LevelBlock& block) const {
  for (size_t i = 0; i < 64; ++i) {
    const int limit = max_coefficient / std::max<int>(1, steps_[i]);
    block.levels[i] = int16_t(std::clamp<int>(block.levels[i], -limit, limit));
  }
}

}  // namespace pqx_codec::jpeg
