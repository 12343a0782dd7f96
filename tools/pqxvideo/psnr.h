#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ostream>

#include "codec.h"
#include "picture/image.h"
#include "picture/y4m.h"

namespace pqxvideo {

/// How much two pictures or clips of one size differ, per channel.
struct Difference {
  int channels;
  std::array<const char*, 3> names{};
  std::array<int64_t, 3> samples{}, squares{};
  std::array<int, 3> largest{};

  void add(size_t channel, int a, int b) {
    squares[channel] += (a - b) * (a - b);
    largest[channel] = std::max(largest[channel], std::abs(a - b));
  }

  /// Peak signal-to-noise ratios in dB, infinite for equal samples.
  double psnr(int channel) const;
  double psnr() const;
  int largest_of_all() const;
};

Difference compare(const Image& a, const Image& b);
/// Of clips of equal length, from where the readers stand.
Difference compare(Y4mReader& a, Y4mReader& b);

/// A line for each channel and one for all of them.
void print(std::ostream& out, const Difference& difference);

}  // namespace pqxvideo
