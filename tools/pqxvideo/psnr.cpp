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

void check_sizes(const auto& a, const auto& b) {
  if (a.width() != b.width() || a.height() != b.height())
    throw Failure("the pictures differ in size: " + std::to_string(a.width()) + " x " + std::to_string(a.height()) +
                  " and " + std::to_string(b.width()) + " x " + std::to_string(b.height()));
}

}  // namespace

double Difference::psnr(int channel) const { return decibels(squares[size_t(channel)], samples[size_t(channel)]); }

double Difference::psnr() const {
  return decibels(std::accumulate(squares.begin(), squares.end(), int64_t{0}),
                  std::accumulate(samples.begin(), samples.end(), int64_t{0}));
}

int Difference::largest_of_all() const { return *std::max_element(largest.begin(), largest.end()); }

Difference compare(const Image& a, const Image& b) {
  check_sizes(a, b);
  if (a.channels() != b.channels()) throw Failure("one picture is grey, the other is not");

  Difference result{.channels = a.channels()};
  result.names = result.channels == 1 ? std::array{"grey", "", ""} : std::array{"red", "green", "blue"};
  for (int c = 0; c < result.channels; ++c) result.samples[size_t(c)] = int64_t{a.width()} * a.height();
  for (int y = 0; y < a.height(); ++y)
    for (size_t i = 0; i < a.row_bytes(); ++i) result.add(i % size_t(a.channels()), a.row(y)[i], b.row(y)[i]);
  return result;
}

Difference compare(Y4mReader& a, Y4mReader& b) {
  check_sizes(a, b);
  Difference result{.channels = 3, .names = {"Y", "U", "V"}};
  for (YuvPicture x, y;;) {
    const bool more = a.next(x);
    if (more != b.next(y)) throw Failure("one clip is longer than the other");
    if (!more && result.samples[0] == 0) throw Failure("no picture in them");
    if (!more) return result;
    for (size_t k = 0; k < 3; ++k) {
      const auto &p = x.planes[k].samples, &q = y.planes[k].samples;
      result.samples[k] += int64_t(p.size());
      for (size_t i = 0; i < p.size(); ++i) result.add(k, p[i], q[i]);
    }
  }
}

void print(std::ostream& out, const Difference& difference) {
  const auto line = [&](const char* name, double psnr, int largest) {
    out << std::left << std::setw(8) << name << std::right << std::fixed << std::setprecision(2) << std::setw(7)
        << psnr << " dB   largest difference " << largest << '\n';
  };
  for (int c = 0; c < difference.channels; ++c)
    line(difference.names[size_t(c)], difference.psnr(c), difference.largest[size_t(c)]);
  line("overall", difference.psnr(), difference.largest_of_all());
}

}  // namespace pqxvideo
