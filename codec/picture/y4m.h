#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/byte_sink.h"
#include "picture/yuv_picture.h"

namespace pqx_codec {

/// Pictures a second.
struct FrameRate {
  int numerator = 30000, denominator = 1001;

  bool operator==(const FrameRate& other) const {
    return int64_t{numerator} * other.denominator == int64_t{other.numerator} * denominator;
  }
};

/// Whether a file that begins with these bytes is a Y4M file.
bool is_y4m(std::span<const uint8_t> bytes);

/// The pictures of a YUV4MPEG2 file of 8-bit 4:2:0 samples, one after the other.
class Y4mReader {
 public:
  /// The bytes must outlive the reader and its copies, which go on from where they were made.
  /// Throws Failure for a damaged header, another kind of samples and pictures of more than max_pixels.
  explicit Y4mReader(std::span<const uint8_t> bytes, int64_t max_pixels = default_max_pixels);

  int width() const { return width_; }
  int height() const { return height_; }
  /// That of television if the file leaves it open, as 0:0.
  FrameRate rate() const { return rate_; }
  /// Whether the header says that samples use all of 0..255.
  bool is_full_range() const { return full_range_; }

  /// Reads the next picture; false at the end. Throws Failure for a damaged file.
  bool next(YuvPicture& picture);

 private:
  std::string line();

  std::span<const uint8_t> rest_;
  int width_ = 0, height_ = 0;
  FrameRate rate_;
  bool full_range_ = false;
};

/// What the header of a file says.
struct Y4mFormat {
  int width, height;
  FrameRate rate;
  FrameRate aspect{12, 11};        // of a sample, width to height
  std::string interlacing = "p";   // t, b: which field is first
  std::string chroma = "420jpeg";  // the format and where the samples lie
  std::string more = {};           // further fields, such as the range of the samples
};

/// A component where it lies.
struct PlaneView {
  const uint8_t* samples;
  int columns, rows, step;
};

/// The header field of clips whose luma is in 16..235 and chroma in 16..240.
inline constexpr const char* studio_range = "XCOLORRANGE=LIMITED";

/// Writes a YUV4MPEG2 file of 8-bit 4:2:0 samples.
class Y4mWriter {
 public:
  Y4mWriter(ByteSink& out, const Y4mFormat& format);
  /// @param more  further header fields, such as the range of the samples
  Y4mWriter(ByteSink& out, int width, int height, FrameRate rate, const std::string& more = "");

  void write(const YuvPicture& picture);
  void write(std::span<const PlaneView, 3> planes);

 private:
  ByteSink& out_;
};

}  // namespace pqx_codec
