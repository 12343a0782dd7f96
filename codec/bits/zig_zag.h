#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace pqx_codec {

/// Natural position (8 * row + column) of the k-th coefficient in zig-zag order. The entries from 64 on catch runs of
/// zeros that lead out of a damaged block.
inline constexpr std::array<uint8_t, 80> natural_position = [] {
  std::array<uint8_t, 80> positions{};
  positions.fill(63);
  int k = 0;
  for (int diagonal = 0; diagonal < 15; ++diagonal)
    for (int i = 0; i <= diagonal; ++i) {
      const int row = diagonal % 2 ? i : diagonal - i, column = diagonal - row;  // odd diagonals run downward
      if (row < 8 && column < 8) positions[k++] = uint8_t(8 * row + column);
    }
  return positions;
}();
static_assert(natural_position[1] == 1 && natural_position[2] == 8 && natural_position[63] == 63);

}  // namespace pqx_codec
