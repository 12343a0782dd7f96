#include "h263/picture_bytes.h"

#include <algorithm>

#include "core/failure.h"

namespace pqx_codec::h263 {
namespace {

constexpr size_t start_code_bytes = 3;  // 22 bits, at whole bytes
/// More than the largest picture takes as samples, six times over.
constexpr size_t most_bytes = size_t{1} << 24;

}  // namespace

bool is_stream(std::span<const uint8_t> bytes) {
  return bytes.size() >= start_code_bytes && bytes[0] == 0 && bytes[1] == 0 && bytes[2] >> 2 == 0b100000;
}

void PictureBytes::push(std::span<const uint8_t> bytes) {
  bytes_.erase(bytes_.begin(), bytes_.begin() + ptrdiff_t(picture_));
  searched_ = std::max(searched_, picture_) - picture_;
  picture_ = 0;
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

std::span<const uint8_t> PictureBytes::next() {
  const std::span<const uint8_t> all(bytes_);
  if (!started_) {
    if (all.size() < start_code_bytes && !finished_) return {};
    if (!is_stream(all)) throw Failure("not an H.263 stream");
    started_ = true;
  }
  const size_t end = find_start_code(std::max(searched_, picture_ + start_code_bytes));
  if (end == all.size() && !finished_) {
    searched_ = std::max(picture_, all.size() - std::min(all.size(), start_code_bytes - 1));
    if (all.size() - picture_ > most_bytes) throw Failure("damaged H.263 stream: a picture without end");
    return {};
  }
  const auto picture = all.subspan(picture_, end - picture_);
  picture_ = end;
  return picture;
}

/// Where the next start code lies, or the end.
size_t PictureBytes::find_start_code(size_t from) const {
  for (size_t i = from; i + start_code_bytes <= bytes_.size(); ++i)
    if (bytes_[i + 2] >> 2 == 0b100000 && bytes_[i] == 0 && bytes_[i + 1] == 0) return i;
  return bytes_.size();
}

}  // namespace pqx_codec::h263
