#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pqx_codec::h263 {

bool is_stream(std::span<const uint8_t> bytes);

/// Cuts a stream, which comes in parts of any size, into its pictures.
class PictureBytes {
 public:
  void push(std::span<const uint8_t> bytes);
  /// Tells that there are no more.
  void finish() { finished_ = true; }

  /// The next picture, from its start code on, once it is complete; empty if it is not, or if there are no more. It
  /// stays until the next push.
  std::span<const uint8_t> next();

 private:
  size_t find_start_code(size_t from) const;

  std::vector<uint8_t> bytes_;
  size_t picture_ = 0, searched_ = 0;
  bool started_ = false, finished_ = false;
};

}  // namespace pqx_codec::h263
