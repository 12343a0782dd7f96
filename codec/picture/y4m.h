#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/byte_sink.h"
#include "picture/yuv_picture.h"

namespace pqx_codec {

struct FrameRate {
  int numerator = 30000, denominator = 1001;
};

bool is_y4m(std::span<const uint8_t> bytes);

/// The pictures of a YUV4MPEG2 file of 8-bit 4:2:0 samples, one after the other.
class Y4mReader {
 public:
  explicit Y4mReader(std::span<const uint8_t> bytes);

  int width() const { return width_; }
  int height() const { return height_; }
  /// That of television if the file leaves it open, as 0:0.
  FrameRate rate() const { return rate_; }

  /// Whether there was another picture.
  bool next(YuvPicture& picture);

 private:
  std::string line();

  std::span<const uint8_t> rest_;
  int width_ = 0, height_ = 0;
  FrameRate rate_;
};

class Y4mWriter {
 public:
  /// @param more  further header fields, such as the range of the samples
  Y4mWriter(ByteSink& out, int width, int height, FrameRate rate, const std::string& more = "");

  void write(const YuvPicture& picture);

 private:
  ByteSink& out_;
};

}  // namespace pqx_codec
