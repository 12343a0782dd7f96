#pragma once

#include <array>
#include <cstdint>

#include "bit_reader.h"
#include "jpeg_format.h"
#include "jpeg_huffman.h"

namespace pqxvideo::jpeg {

/// The levels of an 8x8 block in natural order.
struct LevelBlock {
  alignas(16) std::array<int16_t, 64> levels{};
  int dc = 0;
  // OR of the positions and of the magnitudes of the AC levels that are not zero.
  unsigned positions = 0, magnitudes = 0;

  bool is_dc_only() const { return positions == 0; }
  /// Whether all levels lie in the rows and columns 0..3.
  bool is_quarter() const { return (positions & (4 | 4 * 8)) == 0; }
};

/// Decodes the levels of a block, which must be all zero. `dc` is that of the previous block of the component.
/// Throws Failure for bits that make no block.
void decode_block(BitReader& bits, const HuffmanDecoder& dc_codes, const HuffmanDecoder& ac_codes, int& dc,
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
  unsigned safe_magnitude_;
};

}  // namespace pqxvideo::jpeg
