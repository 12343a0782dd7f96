#include "jpeg/scan_data.h"

#include <algorithm>
#include <cstring>

#include "core/failure.h"

namespace pqx_codec::jpeg {

ScanData::ScanData(std::span<const uint8_t> bytes)
    : bytes_(bytes), unstuffed_(std::make_unique_for_overwrite<uint8_t[]>(bytes.size())) {}

BitReader ScanData::next_interval() {
  uint8_t* out = unstuffed_.get();
  for (;;) {
    const uint8_t* const from = bytes_.data() + position_;
    const auto* const found = static_cast<const uint8_t*>(std::memchr(from, 0xFF, bytes_.size() - position_));
    if (!found) throw Failure("truncated JPEG: the file ends within the data of the picture");
    out = std::copy(from, found, out);
    position_ = size_t(found - bytes_.data());
    // Any number of 0xFF may precede a marker; a zero instead of one makes the last 0xFF data.
    while (position_ + 1 < bytes_.size() && bytes_[position_ + 1] == 0xFF) ++position_;
    if (position_ + 1 >= bytes_.size()) throw Failure("truncated JPEG: the file ends within the data of the picture");
    if (bytes_[position_ + 1] != 0) break;
    *out++ = 0xFF;
    position_ += 2;
  }
  return BitReader({unstuffed_.get(), out});
}

}  // namespace pqx_codec::jpeg
