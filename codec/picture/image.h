#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "core/failure.h"
#include "core/memory.h"

namespace pqx_codec {

/// The most pixels that any picture may have, and those that readers allow one unless told otherwise.
inline constexpr int64_t most_pixels = int64_t{1} << 28, default_max_pixels = 100'000'000;

/// Throws Failure for a picture without pixels or with more than max_pixels of them.
inline void check_dimensions(int64_t width, int64_t height, int64_t max_pixels = most_pixels) {
  if (width < 1 || height < 1) throw Failure("picture without pixels");
  if (width > most_pixels || height > most_pixels || width * height > max_pixels)
    throw Failure("picture too large: " + std::to_string(width) + " x " + std::to_string(height) +
                  " pixels, more than " + std::to_string(max_pixels));
}

/// A picture of 8-bit samples: grey, R, G, B, or A, B, G, R. Every row has room for an even number of pixels, so that
/// operations that work on pairs of pixels can run to the end of it.
class Image {
 public:
  Image(int width, int height, int channels)
      : width_(width),
        height_(height),
        channels_(channels),
        step_((size_t(width) + 1) / 2 * 2 * size_t(channels)),
        storage_((check_dimensions(width, height), uninitialized_memory(step_ * size_t(height)))),
        samples_(storage_.get()) {}
  /// Of an even width, with samples that stand somewhere in the storage, row by row.
  Image(int width, int height, int channels, Memory storage, uint8_t* samples)
      : width_(width),
        height_(height),
        channels_(channels),
        step_(size_t(width) * size_t(channels)),
        storage_(std::move(storage)),
        samples_(samples) {}

  int width() const { return width_; }
  int height() const { return height_; }
  int channels() const { return channels_; }
  size_t row_bytes() const { return size_t(width_) * size_t(channels_); }
  size_t step() const { return step_; }
  uint8_t* row(int y) { return samples_ + step_ * size_t(y); }
  const uint8_t* row(int y) const { return samples_ + step_ * size_t(y); }

 private:
  int width_, height_, channels_;
  size_t step_;
  Memory storage_;
  uint8_t* samples_;
};

}  // namespace pqx_codec
