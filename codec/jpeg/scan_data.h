#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "bits/bit_reader.h"

namespace pqx_codec::jpeg {

/// The entropy-coded bytes of a scan, one interval between markers after the other.
class ScanData {
 public:
  /// @param bytes  what follows the header of the scan, to the end of the file
  explicit ScanData(std::span<const uint8_t> bytes);

  /// Prepares the bits up to the next marker. Throws Failure if the file ends without one.
  BitReader next_interval();

  /// The marker behind the last interval, and where its two bytes stand.
  uint8_t marker() const { return bytes_[position_ + 1]; }
  size_t marker_position() const { return position_; }
  void skip_marker() { position_ += 2; }

 private:
  std::span<const uint8_t> bytes_;
  size_t position_ = 0;
  std::unique_ptr<uint8_t[]> unstuffed_;
};

}  // namespace pqx_codec::jpeg
