#include "psnr.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <numeric>

namespace pqxvideo {
namespace {

double decibels(int64_t squares, int64_t samples) {
  return 10 * std::log10(255.0 * 255.0 * double(samples) / double(squares));
}

}  // namespace

double Difference::psnr(int channel) const { return decibels(squares[size_t(channel)], samples); }

double Difference::psnr() const {
  return decibels(std::accumulate(squares.begin(), squares.end(), int64_t{0}), samples * channels);
}

int Difference::largest_of_all() const { return *std::max_element(largest.begin(), largest.end()); }

Difference compare(const Image& a, const Image& b) {
  if (a.width() != b.width() || a.height() != b.height())
    throw Failure("the pictures differ in size: " + std::to_string(a.width()) + " x " + std::to_string(a.height()) +
                  " and " + std::to_string(b.width()) + " x " + std::to_string(b.height()));
  if (a.channels() != b.channels()) throw Failure("one picture is grey, the other is not");

  Difference result{.channels = a.channels(), .samples = int64_t{a.width()} * a.height()};
  for (int y = 0; y < a.height(); ++y)
    for (size_t i = 0; i < a.row_bytes(); ++i) {
      const size_t channel = i % size_t(a.channels());
      const int d = std::abs(a.row(y)[i] - b.row(y)[i]);
      result.squares[channel] += d * d;
      result.largest[channel] = std::max(result.largest[channel], d);
    }
  return result;
}

void print(std::ostream& out, const Difference& difference) {
  const auto line = [&](const char* name, double psnr, int largest) {
    out << std::left << std::setw(8) << name << std::right << std::fixed << std::setprecision(2) << std::setw(7)
        << psnr << " dB   largest difference " << largest << '\n';
  };
  const char* const names[] = {"red", "green", "blue"};
  for (int c = 0; c < difference.channels; ++c)
    line(difference.channels == 1 ? "grey" : names[c], difference.psnr(c), difference.largest[size_t(c)]);
  line("overall", difference.psnr(), difference.largest_of_all());
}

}  // namespace pqxvideo
