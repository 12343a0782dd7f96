#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace pqx_codec {

/// Repeats the first and last sample of each row and then the first and last row, `border` times each.
inline void repeat_edges(uint8_t* origin, int step, int columns, int rows, int border) {
  for (int y = 0; y < rows; ++y) {
    uint8_t* const row = origin + y * step;
    std::memset(row - border, row[0], size_t(border));
    std::memset(row + columns, row[columns - 1], size_t(border));
  }
  uint8_t *const first = origin - border, *const last = first + (rows - 1) * step;
  for (int y = 1; y <= border; ++y) {
    std::memcpy(first - y * step, first, size_t(columns + 2 * border));
    std::memcpy(last + y * step, last, size_t(columns + 2 * border));
  }
}

/// A component with room around it for predictions from outside of the picture. It is grey to begin with.
class BorderedPlane {
 public:
  static constexpr int border = 32;

  BorderedPlane(int columns, int rows)
      : columns_(columns),
        rows_(rows),
        step_(columns + 2 * border),
        samples_(size_t(step_) * size_t(rows + 2 * border), uint8_t{128}) {}

  int columns() const { return columns_; }
  int rows() const { return rows_; }
  int step() const { return step_; }
  uint8_t* at(int x, int y) { return samples_.data() + (y + border) * step_ + x + border; }
  const uint8_t* at(int x, int y) const { return samples_.data() + (y + border) * step_ + x + border; }

  /// Makes the room around the component continue its outer samples.
  void extend() { repeat_edges(at(0, 0), step_, columns_, rows_, border); }

 private:
  int columns_, rows_, step_;
  std::vector<uint8_t> samples_;
};

}  // namespace pqx_codec
