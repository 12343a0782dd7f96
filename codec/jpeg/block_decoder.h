#pragma once

#include <array>
#include <cstdint>

#include "bits/bit_reader.h"
#include "jpeg/format.h"
#include "jpeg/huffman.h"

namespace pqx_codec::jpeg {

/// The levels of an 8x8 block in natural order.
struct LevelBlock {
  alignas(16) std::array<int16_t, 64> levels{};
  int dc = 0;
  // About the AC levels that are not zero: OR of their positions, OR of the levels + 128.
  unsigned positions = 0, offset_levels = 0;

  bool is_dc_only() const { return positions == 0; }
  /// Whether all levels lie in the rows and columns 0..3.
  bool is_quarter() const { return (positions & (4 | 4 * 8)) == 0; }
  /// The largest magnitude that an AC level may have.
  int magnitude_limit() const { return offset_levels < 256 ? 128 : (1 << max_ac_size) - 1; }
};

/// Decodes the levels of a block, which must be all zero. `dc` is that of the previous block of the component.
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
