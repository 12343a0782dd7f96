#pragma once

#include <array>
#include <ostream>

#include "image.h"

namespace pqxvideo {

/// How much two pictures of one size differ, per channel.
struct Difference {
  int channels;
  int64_t samples;  // in a channel
  std::array<int64_t, 3> squares{};
  std::array<int, 3> largest{};

  /// Peak signal-to-noise ratios in dB, infinite for equal samples.
  double psnr(int channel) const;
  double psnr() const;
  int largest_of_all() const;
};

Difference compare(const Image& a, const Image& b);

/// A line for each channel and one for all of them.
void print(std::ostream& out, const Difference& difference);

}  // namespace pqxvideo
