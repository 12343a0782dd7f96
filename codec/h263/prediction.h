#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace pqx_codec::h263 {

/// In half samples.
struct Vector {
  int x = 0, y = 0;

  bool operator==(const Vector&) const = default;
};

/// Whole macroblocks of a component with room around them.
class Plane {
 public:
  static constexpr int border = 32;

  Plane() = default;
  Plane(int columns, int rows)
      : columns_(columns),
        rows_(rows),
        step_(columns + 2 * border),
        samples_(size_t(step_) * size_t(rows + 2 * border)) {}

  int columns() const { return columns_; }
  int rows() const { return rows_; }
  int step() const { return step_; }
  uint8_t* at(int x, int y) { return samples_.data() + (y + border) * step_ + x + border; }
  const uint8_t* at(int x, int y) const { return samples_.data() + (y + border) * step_ + x + border; }
  void fill(uint8_t value) { std::fill(samples_.begin(), samples_.end(), value); }

  /// Repeats the outer samples into the border.
  void extend();

 private:
  int columns_ = 0, rows_ = 0, step_ = 0;
  std::vector<uint8_t> samples_;
};

using Frame = std::array<Plane, 3>;

/// Predicts a block of 8 or 16 columns and rows from an extended plane of the same size.
/// @param rounding  1: exact halves are rounded down
void predict(const Plane& from, Plane& to, int x, int y, int size, Vector vector, int rounding);

/// A luma plane at half-sample positions, for overlapped compensation.
class HalfSampleGrid {
 public:
  void make(const Plane& from, int rounding);

  struct Vectors {
    Vector own, above, below, left, right;
  };
  /// Predicts a block of 8 columns and rows.
  void predict(Plane& to, int x, int y, const Vectors& vectors) const;

 private:
  static constexpr int border = 16;

  int columns_ = 0, rows_ = 0, step_ = 0;
  std::vector<uint8_t> samples_, interpolated_;
};

}  // namespace pqx_codec::h263
