#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pqx_codec {

/// One component of a picture, made of whole 8x8 blocks. It may keep only its latest rows.
class Plane {
 public:
  /// @param kept_rows  a multiple of 8: row y lies where the rows y +- kept_rows do
  Plane(int columns, int rows, int step, int kept_rows)
      : columns_(columns),
        rows_(rows),
        step_(step),
        kept_rows_(kept_rows),
        samples_(std::make_unique<uint8_t[]>(size_t(step) * size_t(kept_rows))) {}

  int columns() const { return columns_; }
  int rows() const { return rows_; }
  int step() const { return step_; }
  uint8_t* row(int y) const { return samples_.get() + size_t(y % kept_rows_) * size_t(step_); }

 private:
  int columns_, rows_;  // that belong to the picture
  int step_;
  int kept_rows_;
  std::unique_ptr<uint8_t[]> samples_;
};

}  // namespace pqx_codec
