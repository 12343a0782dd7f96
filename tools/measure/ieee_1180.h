/// The accuracy of the inverse 8x8 transforms, measured as IEEE 1180-1990 does.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numbers>

#include "pqx_video.h"

namespace ieee_1180 {

using Samples = double[64];

/// The transform and its inverse in double precision, by definition.
inline void reference_transform(const Samples& in, Samples& out, bool inverse) {
  static const auto basis = [] {
    std::array<std::array<double, 8>, 8> c;
    for (int k = 0; k < 8; ++k)
      for (int i = 0; i < 8; ++i)
        c[k][i] = (k ? 0.5 : std::sqrt(0.125)) * std::cos((2 * i + 1) * k * std::numbers::pi / 16);
    return c;
  }();
  const auto factor = [&](int from, int to) { return inverse ? basis[from][to] : basis[to][from]; };
  Samples half = {};
  std::fill(out, out + 64, 0);
  for (int y = 0; y < 8; ++y)
    for (int to = 0; to < 8; ++to)
      for (int x = 0; x < 8; ++x) half[8 * y + to] += in[8 * y + x] * factor(x, to);
  for (int to = 0; to < 8; ++to)
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 8; ++x) out[8 * to + x] += half[8 * y + x] * factor(y, to);
}

/// The generator of IEEE 1180-1990, annex A.
class StandardRandom {
 public:
  int next(int lowest, int highest) {
    state_ = state_ * 1103515245u + 12345u;
    return int(double(state_ & 0x7ffffffe) / 0x7fffffff * (highest - lowest + 1)) + lowest;
  }

 private:
  uint32_t state_ = 1;
};

/// The largest, and per pixel of the block or over all of them the mean square and the mean.
struct Errors {
  double peak, worst_mean_square, mean_square, worst_mean, mean;
};
inline constexpr Errors allowed = {1, 0.06, 0.02, 0.015, 0.0015};

struct Range {
  int lowest, highest;
};
inline constexpr Range ranges[] = {{-256, 255}, {-5, 5}, {-300, 300}};

/// An inverse of this library.
struct Form {
  const char* name;
  bool (*takes)(int u, int v);  // coefficients; the others are zero
  int lowest, highest;          // results, to which those of the reference are clipped as well
  void (*run)(const int16_t* coefficients, int16_t* samples);
};

template <auto f>
void pixels(const int16_t* coefficients, int16_t* samples) {
  uint8_t out[64];
  f(coefficients, out, 8);
  std::copy(out, out + 64, samples);
}
template <auto f>
void words(const int16_t* coefficients, int16_t* samples) {
  f(coefficients, samples);
}

inline bool all(int, int) { return true; }
inline bool quarter(int u, int v) { return u < 4 && v < 4; }
inline bool quarter_and_last(int u, int v) { return quarter(u, v) || (u == 7 && v == 7); }
inline bool first(int u, int v) { return u == 0 && v == 0; }

inline constexpr Form forms[] = {
    {"pqx_Video_DCT8x8Inv_IEEE_16S", all, -256, 255, words<pqx_Video_DCT8x8Inv_IEEE_16S>},
    {"pqx_Video_DCT8x8Inv_16S", all, -256, 255, words<pqx_Video_DCT8x8Inv_16S>},
    {"pqx_Video_DCT8x8Inv_16S_8U", all, 0, 255, pixels<pqx_Video_DCT8x8Inv_16S_8U>},
    {"pqx_Video_DCT8x8Inv_1Q_16S", quarter, -256, 255, words<pqx_Video_DCT8x8Inv_1Q_16S>},
    {"pqx_Video_DCT8x8Inv_1Q_16S_8U", quarter, 0, 255, pixels<pqx_Video_DCT8x8Inv_1Q_16S_8U>},
    {"pqx_Video_DCT8x8Inv_1Q_Mismatch_16S", quarter_and_last, -256, 255, words<pqx_Video_DCT8x8Inv_1Q_Mismatch_16S>},
    {"pqx_Video_DCT8x8Inv_DC_16S", first, -256, 255, words<pqx_Video_DCT8x8Inv_DC_16S>},
    {"pqx_Video_DCT8x8Inv_DC_16S_8U", first, 0, 255, pixels<pqx_Video_DCT8x8Inv_DC_16S_8U>},
};

/// Against the rounded and clipped reference, on 10,000 blocks of samples in a range.
inline Errors measure(const Form& form, Range range, int sign) {
  constexpr int blocks = 10000;
  StandardRandom random;
  int64_t sums[64] = {}, squares[64] = {};
  Errors e = {};
  for (int n = 0; n < blocks; ++n) {
    Samples samples, coefficients, expected;
    for (double& s : samples) s = sign * random.next(range.lowest, range.highest);
    reference_transform(samples, coefficients, false);
    int16_t in[64], out[64];
    for (int k = 0; k < 64; ++k) {
      in[k] =
          form.takes(k / 8, k % 8) ? int16_t(std::clamp(std::lround(coefficients[k]), -2048l, 2047l)) : int16_t(0);
      coefficients[k] = in[k];
    }
    reference_transform(coefficients, expected, true);
    form.run(in, out);
    for (int k = 0; k < 64; ++k) {
      const int64_t error = std::clamp<int64_t>(out[k], form.lowest, form.highest) -
                            std::clamp<int64_t>(std::lround(expected[k]), form.lowest, form.highest);
      e.peak = std::max(e.peak, double(std::abs(error)));
      sums[k] += error;
      squares[k] += error * error;
    }
  }
  for (int k = 0; k < 64; ++k) {
    e.worst_mean_square = std::max(e.worst_mean_square, double(squares[k]) / blocks);
    e.worst_mean = std::max(e.worst_mean, std::abs(double(sums[k])) / blocks);
    e.mean_square += double(squares[k]) / blocks / 64;
    e.mean += double(sums[k]) / blocks / 64;
  }
  return e;
}

}  // namespace ieee_1180
