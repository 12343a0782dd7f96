/// How far the fast inverse transform may stray from the typed one, proved and tried.
#include <cmath>
#include <random>

#include "close_to_half.h"
#include "dct/inverse_fast_8x8.h"
#include "linear_form.h"
#include "plain.h"

namespace {

using test::Values;

constexpr size_t constant = 64;

/// One number for each coefficient and one for the constant on the DC.
using Terms = std::array<double, 65>;

/// A value made of the terms.
struct Form : test::LinearForm<Form, 65> {
  static inline std::vector<Terms> errors;  // the largest size of each, as a sum over the terms' sizes

  Terms largest() const {
    Terms sum;
    for (size_t j = 0; j < sum.size(); ++j) sum[j] = std::abs(of_term[j]);
    for (size_t i = 0; i < of_error.size(); ++i)
      if (of_error[i] != 0)
        for (size_t j = 0; j < sum.size(); ++j) sum[j] += std::abs(of_error[i]) * errors[i][j];
    return sum;
  }
  /// A new error of at most that part of the value.
  Form rounded(int bits) const {
    Terms error = largest();
    for (double& x : error) x = std::ldexp(x, -bits);
    return with_error(error);
  }
};
using Single = test::Rounded<Form, 24>;
using Double = test::Rounded<Form, 53>;

}  // namespace

// The passes take numbers and forms, too.
namespace pqx::dct {
inline float operator*(float a, const Factor& c) { return a * c.four_times[0]; }
inline double operator*(double a, const Factor& c) { return a * c.twice[0]; }
inline Single operator*(const Single& a, const Factor& c) { return a * double(c.four_times[0]); }
inline Double operator*(const Double& a, const Factor& c) { return a * c.twice[0]; }
}  // namespace pqx::dct

namespace {

using namespace pqx::dct;
using pqx::Block, pqx::Lines, pqx::f32x4, pqx::i16x8;

/// The transform of such coefficients, over any kind of numbers.
template <int rows, int columns, class T>
std::array<T, 64> transform(const std::array<T, 64>& X) {
  Lines<T> column[8], x;
  for (int v = 0; v < columns; ++v) {
    for (int u = 0; u < rows; ++u) x.at[u] = X[size_t(8 * u + v)];
    column[v] = inverse_pass<rows>(inverse_cosines, x);
  }
  std::array<T, 64> z;
  for (int y = 0; y < 8; ++y) {
    for (int v = 0; v < columns; ++v) x.at[v] = column[v].at[y];
    x = inverse_pass<columns>(inverse_cosines, x);
    std::copy(x.at, x.at + 8, &z[size_t(8 * y)]);
  }
  return z;
}

template <class T>
std::array<T, 64> terms(double dc_constant) {
  std::array<T, 64> X;
  for (size_t i = 0; i < 64; ++i) X[i] = T(Form::term(i));
  X[0].form = X[0].form + Form::term(constant, dc_constant);
  return X;
}

// The bias comes off the typed results with the fraction. Pixels are scaled by 2^24, which is exact, and lose the digits
// behind, downward or upward. Corners make the same errors, less those of the terms that they leave out.
TEST(FastInverse, StraysLessThanTheBound) {
  for (int bias : {Residuals::dc_bias, Pixels::dc_bias}) {
    Form::errors.clear();
    const auto fast = transform<8, 8>(terms<Single>(4));
    const auto typed = transform<8, 8>(terms<Double>(bias));
    double ac = 0, dc = 0, rest = 0, ac_gain = 0, dc_gain = 0;
    for (size_t i = 0; i < 64; ++i) {
      const Form removed = Form::term(constant, (bias - 4) / 8.0);
      const Terms error = (fast[i].form + typed[i].form * -1 + removed).largest(), gain = fast[i].form.largest();
      ac = std::max(ac, *std::max_element(&error[1], &error[constant]));
      dc = std::max(dc, error[0]);
      rest = std::max(rest, error[constant]);
      ac_gain = std::max(ac_gain, *std::max_element(&gain[1], &gain[constant]));
      dc_gain = std::max(dc_gain, gain[0]);
    }
    rest += std::ldexp(1, -24) + std::ldexp(1, -17);  // half a unit of the conversion to fixed point
    printf("bias %d: |fast - typed| <= %.4g |AC| + %.4g |DC| + %.4g\n", bias, ac, dc, rest);
    EXPECT_LT(std::ldexp(ac, 32), error_per_ac);
    EXPECT_LT(std::ldexp(dc, 32), error_per_dc);
    EXPECT_LT(std::ldexp(rest, 16), 1);
    // Lower samples are rounded upward: the bias does not make them positive. Before they saturate, pixels are words.
    const bool pixels = bias == Pixels::dc_bias;
    const double largest_error = ((pixels ? error_limit<Pixels> : error_limit<Residuals>)-2) << 16;
    EXPECT_LT(std::max(ac_gain / error_per_ac, dc_gain / error_per_dc) * largest_error + 1, pixels ? 32768 : 2048);
  }
}

TEST(FastInverse, AddsUpTheBound) {
  std::mt19937 random(1);
  for (int turn = 0; turn < 20000; ++turn) {
    Values X{};
    const int amplitude = 1 << random() % 16, count = 1 << random() % 7;
    for (int i = 0; i < count; ++i) X[random() % 64] = int16_t(int(random() % (2 * amplitude + 1)) - amplitude);
    if (turn % 4 == 0) X[random() % 64] = -32768;  // without a positive counterpart
    int64_t sum[3] = {};                           // of all, the upper rows and the quarter
    for (int i = 0; i < 64; ++i) {
      const int64_t error = std::abs(int(X[size_t(i)])) * int64_t(i ? error_per_ac : error_per_dc);
      sum[0] += error;
      if (i < 32) sum[1] += error;
      if (i < 32 && i % 8 < 4) sum[2] += error;
    }
    const int bounds[] = {error_bound<8, 8>(X.data()), error_bound<4, 8>(X.data()), error_bound<4, 4>(X.data())};
    for (int k = 0; k < 3; ++k) {
      const int64_t expected = (sum[k] >> 16) + 2;
      ASSERT_EQ(std::min(bounds[k], error_limit<Pixels>), std::min<int64_t>(expected, error_limit<Pixels>)) << k;
    }
  }
}

// Results around every whole number that single precision holds with all its 16 bits behind the point.
TEST(FastInverse, SeesEveryFractionTooClose) {
  for (int error : {2, 3, 20, error_limit<Pixels> - 1})
    for (int sample = -255; sample < 255; ++sample)
      for (int units : {-error - 1, -error, -error + 1, -1, 0, 1, error - 1, error, error + 1}) {
        const int place = sample & 31;
        Lines<f32x4> columns;
        for (auto& column : columns.at) column = {_mm_set1_ps(32768)};
        columns.at[place % 8].v[place / 8] = float(65536 * sample + units);
        Splitter split{error};
        i16x8 rows[4];
        split(columns, rows);
        ASSERT_EQ(split.too_close(), units >= -error && units < error) << sample << ' ' << units;
        int16_t row[8];
        pqx::store(row, rows[place / 8]);
        ASSERT_EQ(row[place % 8], units < 0 ? sample - 1 : sample) << units;
      }
}

/// Blocks of all kinds that the bound lets through: noise, less of it in some, and few large coefficients.
Values any_coefficients(std::mt19937& random) {
  for (;;) {
    Values X{};
    const int amplitude = 1 << random() % 8, few = int(random() % 3);
    for (int16_t& x : X) x = int16_t(random() % 4 < unsigned(few) ? 0 : int(random() % (2 * amplitude)) - amplitude);
    if (few)
      for (int i = 0; i < 4; ++i) X[random() % 64] = int16_t(int(random() % 2000) - 1000);
    X[0] = int16_t(random() % 4096 - 1024);
    if (error_bound<8, 8>(X.data()) < error_limit<Pixels>) return X;
  }
}

/// Keeps results instead of splitting them.
struct Record {
  std::vector<Lines<f32x4>> z;
  void operator()(const Lines<f32x4>& columns, i16x8*) { z.push_back(columns); }
};

template <int rows, int columns>
void check_vectors(std::mt19937& random) {
  double farthest = 0;
  for (int turn = 0; turn < 10000; ++turn) {
    Values X = any_coefficients(random);
    for (size_t i = 0; i < 64; ++i)
      if (i / 8 >= rows || i % 8 >= columns) X[i] = 0;
    std::array<float, 64> singles;
    std::array<double, 64> doubles;
    for (size_t i = 0; i < 64; ++i) singles[i] = float(X[i]) * 65536, doubles[i] = X[i];
    singles[0] += 4 * 65536;
    doubles[0] += Residuals::dc_bias;
    const auto quickly = transform<rows, columns>(singles);
    const auto exactly = transform<rows, columns>(doubles);
    Record record;
    inverse_fast<rows, columns>(X.data(), record);
    const int error = error_bound<rows, columns>(X.data());
    for (size_t i = 0; i < 64; ++i) {
      ASSERT_EQ(record.z[i / 32].at[i % 8].v[i / 8 % 4], quickly[i]) << i;
      farthest = std::max(farthest, std::abs(double(quickly[i]) - (exactly[i] - 2048) * 65536) / error);
    }
  }
  EXPECT_LE(farthest, 1);
  EXPECT_GT(farthest, 1 / 8.0);
}

// What the bound is proved for is what the vectors compute, bit for bit.
TEST(FastInverse, ComputesWhatTheBoundIsProvedFor) {
  std::mt19937 random(2);
  check_vectors<8, 8>(random);
  check_vectors<8, 4>(random);
  check_vectors<4, 8>(random);
  check_vectors<4, 4>(random);
}

TEST(FastInverse, RoundsAsTypedCloseToHalves) {
  std::mt19937 random(3);
  int decided_otherwise = 0;
  for (int turn = 0; turn < 3000; ++turn) {
    Values X = any_coefficients(random), samples, expected;
    std::array<double, 64> weights;
    const size_t sample = random() % 64;
    for (size_t i = 0; i < 64; ++i) weights[i] = test::basis[i][sample];
    test::bring_close(X, weights, -4096, 4095);
    inverse_8x8(X.data(), Residuals{samples.data()});
    plain::DCT8x8Inv_16S(X.data(), expected.data());
    ASSERT_EQ(samples, expected);
    std::array<uint8_t, 64> pixels, expected_pixels;
    inverse_8x8(X.data(), Pixels{pixels.data(), 8});
    plain::DCT8x8Inv_16S_8U(X.data(), expected_pixels.data(), 8);
    ASSERT_EQ(pixels, expected_pixels);
    Splitter split{0};
    Values undoubted;
    store_block(undoubted.data(), inverse_fast<8, 8>(X.data(), split));
    decided_otherwise += undoubted != expected;
  }
  EXPECT_GT(decided_otherwise, 100);
}

}  // namespace
