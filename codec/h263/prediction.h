#pragma once

#include <cstdint>
#include <vector>

#include "picture/bordered_plane.h"

namespace pqx_codec::h263 {

/// In half samples.
struct Vector {
  int x = 0, y = 0;

  bool operator==(const Vector&) const = default;
};

/// Whole macroblocks of the components.
using Frame = std::vector<BorderedPlane>;

/// Predicts a block of 8 or 16 columns and rows from an extended plane of the same size.
/// @param rounding  1: exact halves are rounded down
void predict(const BorderedPlane& from, BorderedPlane& to, int x, int y, int size, Vector vector, int rounding);

/// A luma plane at half-sample positions, for overlapped compensation.
class HalfSampleGrid {
 public:
  void make(const BorderedPlane& from, int rounding);

  struct Vectors {
    Vector own, above, below, left, right;
  };
  /// Predicts a block of 8 columns and rows.
  void predict(BorderedPlane& to, int x, int y, const Vectors& vectors) const;

 private:
  static constexpr int border = 16;

  int columns_ = 0, rows_ = 0, step_ = 0;
  std::vector<uint8_t> samples_, interpolated_;
};

/// Annex J: smooths the edges between the blocks of a plane.
/// @param quants  of the macroblocks in reading order, 0 for those that are not coded
/// @param size_of_macroblock  in samples of the plane
void deblock(BorderedPlane& plane, const std::vector<uint8_t>& quants, int size_of_macroblock);

}  // namespace pqx_codec::h263
