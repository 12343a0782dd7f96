#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "ieee_1180.h"
#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(AccurateInverse, MatchesItsArithmeticOnAnyBlock) {
  const std::map<std::string, test::Fill> twelve_bits = {{"pSrc", test::range<int16_t>(-2048, 2047)}};
  test::check({
      OPERATION(DCT8x8Inv_IEEE_16S),
      OPERATION(DCT8x8Inv_IEEE_16S, .fills = twelve_bits),
      OPERATION(DCT8x8Inv_1Q_Mismatch_16S, .fills = twelve_bits),
  });
}

bool both_match(const int16_t* coefficients) {
  int16_t expected[2][64], found[2][64];
  plain::DCT8x8Inv_IEEE_16S(coefficients, expected[0]);
  pqx_Video_DCT8x8Inv_IEEE_16S(coefficients, found[0]);
  plain::DCT8x8Inv_1Q_Mismatch_16S(coefficients, expected[1]);
  pqx_Video_DCT8x8Inv_1Q_Mismatch_16S(coefficients, found[1]);
  return std::memcmp(found, expected, sizeof found) == 0;
}

// Rows and columns of zeros, where shortcuts are tempting, with coefficients of any size in the others.
TEST(AccurateInverse, TakesNoWrongShortcut) {
  test::Random random(1);
  for (int i = 0; i < 30000; ++i) {
    const int rows = i & 255, columns = int(random()), shift = int(random() % 16);
    int16_t coefficients[64];
    for (int k = 0; k < 64; ++k)
      coefficients[k] = rows >> (k / 8) & columns >> (k % 8) & 1 ? int16_t(int16_t(random()) >> shift) : int16_t(0);
    ASSERT_TRUE(both_match(coefficients)) << "block " << i;
  }
}

TEST(AccurateInverse, InvertsEveryLoneDc) {
  for (int dc = -32768; dc < 32768; ++dc) {
    const int16_t coefficients[64] = {int16_t(dc)};
    ASSERT_TRUE(both_match(coefficients)) << dc;
  }
}

// The accuracy that IEEE 1180-1990 and H.261 annex A ask for, of every inverse on the coefficients that it takes. A
// lone DC is an exact half once in eight times, and the form for it rounds those upward, the reference away from zero.
TEST(AccurateInverse, MeetsIeee1180) {
  using namespace ieee_1180;
  for (const Form& form : forms) {
    if (form.takes == ieee_1180::first) continue;
    for (const Range range : ranges)
      for (int sign : {1, -1}) {
        const Errors e = measure(form, range, sign);
        EXPECT_LE(e.peak, allowed.peak) << form.name;
        EXPECT_LE(e.worst_mean_square, allowed.worst_mean_square) << form.name;
        EXPECT_LE(e.mean_square, allowed.mean_square) << form.name;
        EXPECT_LE(e.worst_mean, allowed.worst_mean) << form.name;
        EXPECT_LE(std::abs(e.mean), allowed.mean) << form.name;
      }
  }
  const int16_t zero[64] = {};
  for (const Form& form : forms) {
    int16_t out[64];
    form.run(zero, out);
    EXPECT_EQ(std::memcmp(out, zero, sizeof out), 0) << form.name;
  }
}

}  // namespace
