#pragma once

#include <array>
#include <cstdint>

namespace pqx_codec {

/// The levels of an 8x8 block in natural order, or the coefficients made of them. Those that are not zero are known by
/// their places, which decides on the form of the inverse transform.
struct LevelBlock {
  alignas(16) std::array<int16_t, 64> levels{};
  unsigned positions = 0;  // of the AC levels that are not zero, or'ed
  int bound = 0;           // at least the magnitude of every level that is dequantized

  bool is_dc_only() const { return positions == 0; }
  /// Whether all levels lie in the rows and columns 0..3.
  bool is_quarter() const { return (positions & (4 | 4 * 8)) == 0; }

  /// Makes all levels zero again.
  void clear() {
    if (is_dc_only())
      levels[0] = 0;
    else
      levels.fill(0);
    positions = 0;
    bound = 0;
  }
};

/// Inverse transform of coefficients to 8 rows of 8 pixels.
void inverse_transform(const LevelBlock& block, uint8_t* pixels, int step);
/// The same to a residual in natural order.
void inverse_transform(const LevelBlock& block, int16_t* residual);

}  // namespace pqx_codec
