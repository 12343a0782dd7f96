#include <gtest/gtest.h>

#include <cstring>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(AddBlock, SaturatesAndKeepsSampleOrderUnderOverlap) {
  const std::map<std::string, test::Fill> small = {{"pSrc", test::range<int16_t>(-300, 300)}};
  test::check({
      OPERATION(AddBlock_16S_8U_I),
      OPERATION(AddBlock_16S_8U_I, .fills = small),
      OPERATION(AddBlock_16S_8U_I, .arguments = {{"step", test::size({}, -9, 9)}}, .fills = small),
  });
}

TEST_OPERATIONS(SumAbsDiff, SumsWholeGroupsOfEight) {
  test::check(OPERATION(SumAbsDiff_8U, .sizes = test::size({8, 16})));
}

// The sum passes 2^32 where every sample differs by 255.
TEST(SumAbsDiff, WrapsAtThirtyTwoBits) {
  const std::vector<uint8_t> black(4096, 0), white(4096, 255);
  const int height = 5000;
  EXPECT_EQ(pqx_Video_SumAbsDiff_8U(black.data(), white.data(), 0, 4096, height), uint32_t(255ull * 4096 * height));
}

TEST_OPERATIONS(OverlappedMC, WeighsThePredictionsOfTheNeighbours) {
  const auto positions = test::size({}, -40, 40);
  test::check({
      OPERATION(H263OverlappedMC_8U, .sizes = positions),
      OPERATION(H263OverlappedMC_8U_16S, .sizes = positions),
  });
}

// One prediction at a time is 255, the others 0: the weights themselves, as printed in the annex.
TEST(OverlappedMC, HasTheWeightsOfAnnexF) {
  constexpr int own[] = {4, 5, 5, 5, 5, 5, 5, 5, 5, 5, 6, 6, 5, 5, 6, 6},
                horizontal[] = {2, 1, 1, 1, 2, 2, 1, 1, 2, 2, 1, 1, 2, 2, 1, 1};
  std::vector<uint8_t> ref(16 * 64, 0);
  for (int y = 0; y < 16; ++y) std::fill_n(&ref[size_t(64 * y)], 16, uint8_t(255));
  for (int r = 0; r < 8; ++r)
    for (int c = 0; c < 8; ++c) {
      int16_t of_own[64], of_horizontal[64], of_vertical[64];
      pqx_Video_H263OverlappedMC_8U_16S(ref.data(), 64, of_own, 0, 0, 16, 0, 16, 0, 16, 0, 16, 0);
      pqx_Video_H263OverlappedMC_8U_16S(ref.data(), 64, of_horizontal, 16, 0, 16, 0, 16, 0, 0, 0, 0, 0);
      pqx_Video_H263OverlappedMC_8U_16S(ref.data(), 64, of_vertical, 16, 0, 0, 0, 0, 0, 16, 0, 16, 0);
      const int quarter = (r < 4 ? r : 7 - r) * 4 + (c < 4 ? c : 7 - c);
      EXPECT_EQ(of_own[8 * r + c], (255 * own[quarter] + 4) >> 3);
      EXPECT_EQ(of_horizontal[8 * r + c], (255 * horizontal[quarter] + 4) >> 3);
      EXPECT_EQ(of_vertical[8 * r + c], (255 * (8 - own[quarter] - horizontal[quarter]) + 4) >> 3);
    }
}

}  // namespace
