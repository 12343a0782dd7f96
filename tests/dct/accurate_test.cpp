#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Ints;

namespace {

int64_t block(Ints) { return 64; }

const std::vector<int> distances = {0, 1, 2, 8, 15, 16, 48, 64, 112, -1, -2, -16, -64, -111};

TEST(AccurateInverse, MatchesItsArithmeticOnAnyBlock) {
  const Argument any = buffer<int16_t>(block), usual = buffer<int16_t>(block, test::range<int16_t>(-2048, 2047));
  Argument quarter_and_last = usual;
  quarter_and_last.spans = [](Ints) { return std::vector<test::Span>{{0, 8}, {16, 8}, {32, 8}, {48, 8}, {126, 2}}; };
  test::check({
      OPERATION(DCT8x8Inv_IEEE_16S, {any, any}, {{1, 0, distances}}),
      OPERATION(DCT8x8Inv_IEEE_16S, {usual, any}, {{1, 0, distances}}),
      OPERATION(DCT8x8Inv_1Q_Mismatch_16S, {quarter_and_last, any}, {{1, 0, distances}}),
  });
}

// Rows and columns of zeros, where shortcuts are tempting, with coefficients of any size in the others.
TEST(AccurateInverse, TakesNoWrongShortcut) {
  test::Random random(1);
  for (int i = 0; i < 30000; ++i) {
    const int rows = i & 255, columns = int(random()), shift = int(random() % 16);
    int16_t coefficients[64], expected[64], found[64];
    for (int k = 0; k < 64; ++k)
      coefficients[k] = rows >> (k / 8) & columns >> (k % 8) & 1 ? int16_t(int16_t(random()) >> shift) : int16_t(0);
    plain::DCT8x8Inv_IEEE_16S(coefficients, expected);
    pqx_Video_DCT8x8Inv_IEEE_16S(coefficients, found);
    ASSERT_EQ(std::memcmp(found, expected, sizeof found), 0) << "block " << i;
    plain::DCT8x8Inv_1Q_Mismatch_16S(coefficients, expected);
    pqx_Video_DCT8x8Inv_1Q_Mismatch_16S(coefficients, found);
    ASSERT_EQ(std::memcmp(found, expected, sizeof found), 0) << "block " << i;
  }
}

using Samples = double[64];

/// The transform and its inverse in double precision, by definition.
void reference_transform(const Samples& in, Samples& out, bool inverse) {
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

struct Errors {
  double peak, worst_mean_square, mean_square, worst_mean, mean;
};

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

bool all(int, int) { return true; }
bool quarter(int u, int v) { return u < 4 && v < 4; }
bool quarter_and_last(int u, int v) { return quarter(u, v) || (u == 7 && v == 7); }
bool first(int u, int v) { return u == 0 && v == 0; }

const Form forms[] = {
    {"Inv_IEEE_16S", all, -256, 255, words<pqx_Video_DCT8x8Inv_IEEE_16S>},
    {"Inv_16S", all, -256, 255, words<pqx_Video_DCT8x8Inv_16S>},
    {"Inv_16S_8U", all, 0, 255, pixels<pqx_Video_DCT8x8Inv_16S_8U>},
    {"Inv_1Q_16S", quarter, -256, 255, words<pqx_Video_DCT8x8Inv_1Q_16S>},
    {"Inv_1Q_16S_8U", quarter, 0, 255, pixels<pqx_Video_DCT8x8Inv_1Q_16S_8U>},
    {"Inv_1Q_Mismatch_16S", quarter_and_last, -256, 255, words<pqx_Video_DCT8x8Inv_1Q_Mismatch_16S>},
    {"Inv_DC_16S", first, -256, 255, words<pqx_Video_DCT8x8Inv_DC_16S>},
    {"Inv_DC_16S_8U", first, 0, 255, pixels<pqx_Video_DCT8x8Inv_DC_16S_8U>},
};

// Against the rounded and clipped reference, on 10,000 blocks of samples in a range.
Errors measure(const Form& form, int lowest, int highest, int sign) {
  constexpr int blocks = 10000;
  StandardRandom random;
  int64_t sums[64] = {}, squares[64] = {};
  Errors e = {};
  for (int n = 0; n < blocks; ++n) {
    Samples samples, coefficients, expected;
    for (double& s : samples) s = sign * random.next(lowest, highest);
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

// The accuracy that IEEE 1180-1990 and H.261 annex A ask for, of every inverse on the coefficients that it takes. A
// lone DC is an exact half once in eight times, and the form for it rounds those upward, the reference away from zero.
TEST(AccurateInverse, MeetsIeee1180) {
  std::printf("%-20s %-10s %-5s %-5s %-9s %-9s %-9s %s\n", "", "range", "sign", "peak", "worst ms", "ms",
              "worst mean", "mean");
  for (const Form& form : forms)
    for (const auto& [lowest, highest] : {std::pair{-256, 255}, {-5, 5}, {-300, 300}})
      for (int sign : {1, -1}) {
        const Errors e = measure(form, lowest, highest, sign);
        std::printf("%-20s %4d..%-4d %4d %5.0f %9.6f %9.6f %9.6f %9.6f\n", form.name, lowest, highest, sign, e.peak,
                    e.worst_mean_square, e.mean_square, e.worst_mean, e.mean);
        if (form.takes == first) continue;
        EXPECT_LE(e.peak, 1) << form.name;
        EXPECT_LE(e.worst_mean_square, 0.06) << form.name;
        EXPECT_LE(e.mean_square, 0.02) << form.name;
        EXPECT_LE(e.worst_mean, 0.015) << form.name;
        EXPECT_LE(std::abs(e.mean), 0.0015) << form.name;
      }
  const int16_t zero[64] = {};
  for (const Form& form : forms) {
    int16_t out[64];
    form.run(zero, out);
    EXPECT_EQ(std::memcmp(out, zero, sizeof out), 0) << form.name;
  }
}

}  // namespace
