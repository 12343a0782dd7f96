#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfenv>

#include "operation.h"
#include "plain.h"

using test::Data, test::Random;

namespace {

/// Numbers that a caller may put into a state: matrix entries or their reciprocals, fractions, and, as the extremes,
/// what leaves the range of the conversions.
template <class Float>
void fill_state(Random& random, Data data, uint8_t* bytes, int64_t count) {
  using Limits = std::numeric_limits<Float>;
  constexpr Float extremes[] = {Limits::infinity(),   -Limits::infinity(), Limits::quiet_NaN(), Limits::max(),
                                Limits::denorm_min(), Float(65536),        Float(-65537.5),     Float(-0.0)};
  for (int64_t i = 0; i < count; i += sizeof(Float)) {
    const Float step = Float(int(random() % 65536) - 32768);
    const Float value = data == Data::extreme  ? extremes[random() % std::size(extremes)]
                        : data == Data::random ? step
                        : data == Data::small  ? 1 / step
                                               : step / 1024;
    std::copy_n(reinterpret_cast<const uint8_t*>(&value), sizeof(Float), bytes + i);
  }
}

TEST_OPERATIONS(Quantize, MatchesTheTypedArithmetic) {
  test::check({
      OPERATION(QuantizeInit_16S, .may_raise = true),
      OPERATION(Quantize_16S_I, .fills = {{"pState", fill_state<float>}}, .may_raise = true),
      OPERATION(DeQuantizeInit_16S),
      OPERATION(DeQuantize_16S_I, .fills = {{"pState", fill_state<double>}}, .may_raise = true),
  });
}

/// What an operation makes of c, wherever in a block it stands.
template <class Float>
int one(pqx_Status (*operation)(const Float*, int16_t*), Float state, int c) {
  Float states[64];
  int16_t values[64];
  std::fill_n(states, 64, state);
  std::fill_n(values, 64, int16_t(c));
  operation(states, values);
  EXPECT_EQ(std::count(values, values + 64, values[0]), 64);
  return values[0];
}

TEST(Quantize, RoundsHalvesUpwardAndWraps) {
  constexpr struct {
    float step;
    int coefficient, level;
  } examples[] = {{2, 5, 3},    {2, -5, -2},    {2, 3, 2},   {2, -3, -1},          {2, 7, 4},      {2, -7, -3},
                  {3, 100, 33}, {3, -100, -33}, {-1, 1, -1}, {-1, -32768, -32768}, {0, 0, -32768}, {0, 17, -32768}};
  for (const auto& [step, coefficient, level] : examples)
    EXPECT_EQ(one(pqx_Video_Quantize_16S_I, 1 / step, coefficient), level) << coefficient << " / " << step;
  EXPECT_EQ(one(pqx_Video_Quantize_16S_I, 2.4999998f, 1), 3);  // the sum has 8 bits for the fraction
  EXPECT_EQ(one(pqx_Video_Quantize_16S_I, 2.4980f, 1), 2);
}

TEST(Dequantize, TruncatesAndWraps) {
  constexpr struct {
    double step;
    int level, coefficient;
  } examples[] = {{200, 300, -5536}, {32767, -1, -32767}, {-1, -32768, -32768},
                  {0, 1234, 0},      {2.5, 3, 7},         {2.5, -3, -7}};
  for (const auto& [step, level, coefficient] : examples)
    EXPECT_EQ(one(pqx_Video_DeQuantize_16S_I, step, level), coefficient) << level << " * " << step;
}

struct States {
  float reciprocals[64];
  double steps[64];
};
using Block = std::array<int16_t, 64>;

::testing::AssertionResult both_match(const States& states, const Block& block) {
  Block levels = block, products = block, expected_levels = block, expected_products = block;
  pqx_Video_Quantize_16S_I(states.reciprocals, levels.data());
  plain::Quantize_16S_I(states.reciprocals, expected_levels.data());
  pqx_Video_DeQuantize_16S_I(states.steps, products.data());
  plain::DeQuantize_16S_I(states.steps, expected_products.data());
  if (levels != expected_levels) return ::testing::AssertionFailure() << "quantized otherwise";
  if (products != expected_products) return ::testing::AssertionFailure() << "dequantized otherwise";
  return ::testing::AssertionSuccess();
}

TEST(Quantize, EveryCoefficientByManySteps) {
  for (int step : {1, 2, 3, 5, 7, 16, 99, 255, 32767, -1, -32768, 0}) {
    Block matrix, block;
    States states;
    matrix.fill(int16_t(step));
    std::feclearexcept(FE_ALL_EXCEPT);
    pqx_Video_QuantizeInit_16S(matrix.data(), states.reciprocals);
    pqx_Video_DeQuantizeInit_16S(matrix.data(), states.steps);
    for (int first = -32768; first < 32768; first += 64) {
      for (int i = 0; i < 64; ++i) block[size_t(i)] = int16_t(first + i);
      ASSERT_TRUE(both_match(states, block)) << "from " << first << " by " << step;
    }
    EXPECT_TRUE(step == 0 || !std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW)) << "by " << step;
  }
}

TEST(Quantize, BlocksWithZerosAroundAnyPart) {
  Random random(7);
  for (int first = 0; first < 64; ++first)
    for (int last = first - 1; last < 64; ++last)
      for (Data data : {Data::random, Data::extreme, Data::small, Data::flat}) {
        States states;
        Block block;
        fill_state<float>(random, data, reinterpret_cast<uint8_t*>(states.reciprocals), sizeof states.reciprocals);
        fill_state<double>(random, data, reinterpret_cast<uint8_t*>(states.steps), sizeof states.steps);
        for (int i = 0; i < 64; ++i) block[size_t(i)] = i < first || i > last ? int16_t(0) : int16_t(random() >> 8);
        ASSERT_TRUE(both_match(states, block)) << "elements " << first << " to " << last;
      }
}

}  // namespace
