#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(OtherSizes, MatchThePlainArithmetic) {
  test::check({
      OPERATION(DCT2x2Fwd_16S),
      OPERATION(DCT4x4Fwd_16S),
      OPERATION(DCT16x16Fwd_16S),
      OPERATION(DCT16x16Fwd_10S_16S),
  });
}

TEST(OtherSizes, RoundInTheirOwnWays) {
  const auto dc_of = [](auto operation, int n, int first, int others) {
    std::vector<int16_t> block(size_t(n * n), int16_t(others));
    block[0] = int16_t(first);
    operation(block.data(), block.data());
    return int(block[0]);
  };
  EXPECT_EQ(dc_of(pqx_Video_DCT2x2Fwd_16S, 2, 1, 0), 0);
  EXPECT_EQ(dc_of(pqx_Video_DCT2x2Fwd_16S, 2, -1, 0), -1);
  EXPECT_EQ(dc_of(pqx_Video_DCT4x4Fwd_16S, 4, 1, 1), 4);
  EXPECT_EQ(dc_of(pqx_Video_DCT4x4Fwd_16S, 4, 2, 0), 0);
  EXPECT_EQ(dc_of(pqx_Video_DCT4x4Fwd_16S, 4, -2, 0), -1);
  EXPECT_EQ(dc_of(pqx_Video_DCT16x16Fwd_16S, 16, 31, 0), 1);
  EXPECT_EQ(dc_of(pqx_Video_DCT16x16Fwd_16S, 16, -31, 0), -1);
}

// The 16x16 transform is the exact one, cut off toward zero, wherever that is farther from an integer than single
// precision can tell.
TEST(OtherSizes, SixteenIsTheExactTransformCutOff) {
  constexpr int n = 16;
  double basis[n][n];
  for (int k = 0; k < n; ++k)
    for (int x = 0; x < n; ++x)
      basis[k][x] = (k ? 1 : std::numbers::sqrt2 / 2) * std::cos((2 * x + 1) * k * std::numbers::pi / 32);
  test::Random random(7);
  int64_t near = 0;
  for (int round = 0; round < 3000; ++round) {
    const int limit = 1 << (1 + round % 15);
    int16_t in[n * n], out[n * n];
    double sum = 0, rows[n][n];
    for (int16_t& s : in) {
      s = int16_t(round % 3 ? int(random() % uint32_t(2 * limit)) - limit : random() & 1 ? limit - 1 : -limit);
      sum += std::abs(s);
    }
    pqx_Video_DCT16x16Fwd_16S(in, out);
    for (int y = 0; y < n; ++y)
      for (int v = 0; v < n; ++v) {
        rows[y][v] = 0;
        for (int x = 0; x < n; ++x) rows[y][v] += in[n * y + x] * basis[v][x];
      }
    for (int u = 0; u < n; ++u)
      for (int v = 0; v < n; ++v) {
        double exact = 0;
        for (int y = 0; y < n; ++y) exact += basis[u][y] * rows[y][v] / 8;
        const double distance = std::abs(exact - std::nearbyint(exact)), open = std::ldexp(sum, -24);
        if (distance <= open && ++near)
          ASSERT_LE(std::abs(out[n * u + v] - int16_t(int(std::nearbyint(exact)))), 1);
        else
          ASSERT_EQ(out[n * u + v], int16_t(int(exact))) << exact << ", sum " << sum << ", u " << u << ", v " << v;
      }
  }
  EXPECT_LT(near, 3000 * 256 / 4);
}

}  // namespace
