#pragma once

#include <array>
#include <cstdint>

#include "bits/bit_reader.h"
#include "bits/level_block.h"
#include "jpeg/format.h"
#include "jpeg/huffman.h"

namespace pqx_codec::jpeg {

/// Decodes the levels of a block, which must be all zero.
/// @param dc  level of the previous block of the component, replaced by that of this block
/// Throws Failure for bits that make no block.
void decode_block(BitReader& reader, const HuffmanDecoder& dc_codes, const HuffmanDecoder& ac_codes, int& dc,
                  LevelBlock& block);

/// Turns levels into pixels.
class BlockReconstruction {
 public:
  explicit BlockReconstruction(const QuantTable& steps);

  /// Writes 8 rows of 8 pixels and leaves the levels all zero.
  void operator()(LevelBlock& block, uint8_t* pixels, int step) const;

 private:
  void limit_levels(LevelBlock& block) const;

  std::array<double, 64> dequantizer_;
  std::array<int16_t, 64> steps_;
  int largest_step_;
};

}  // namespace pqx_codec::jpeg
