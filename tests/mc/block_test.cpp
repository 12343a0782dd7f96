#include <gtest/gtest.h>

#include <cstring>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Ints, test::plane, test::size, test::step;

namespace {

int64_t eight(Ints) { return 8; }
int64_t block(Ints) { return 64; }

TEST_OPERATIONS(AddBlock, SaturatesAndKeepsSampleOrderUnderOverlap) {
  const Argument picture = plane(2, eight, eight), any = buffer<int16_t>(block);
  const Argument small = buffer<int16_t>(block, test::range<int16_t>(-300, 300));
  Argument near_steps = size({}, -9, 9);
  test::check({
      OPERATION(AddBlock_16S_8U_I, {any, picture, step(eight)}, {{1, 0}}),
      OPERATION(AddBlock_16S_8U_I, {small, picture, step(eight)}, {{1, 0}}),
      OPERATION(AddBlock_16S_8U_I, {small, picture, near_steps}, {{1, 0}}),
  });
}

TEST_OPERATIONS(SumAbsDiff, SumsWholeGroupsOfEight) {
  const auto columns = [](Ints n) { return n[3] < 1 ? 0 : (n[3] + 7) / 8 * 8; };
  const auto rows = [](Ints n) { return n[3] < 1 ? 0 : n[4]; };
  test::check({OPERATION(SumAbsDiff_8U, {plane(2, columns, rows), plane(2, columns, rows), step(columns),
                                         size({8, 16}), size({8, 16})})});
}

// The sum passes 2^32 where every sample differs by 255.
TEST(SumAbsDiff, WrapsAtThirtyTwoBits) {
  const std::vector<uint8_t> black(4096, 0), white(4096, 255);
  const int height = 5000;
  EXPECT_EQ(pqx_Video_SumAbsDiff_8U(black.data(), white.data(), 0, 4096, height), uint32_t(255ull * 4096 * height));
}

TEST_OPERATIONS(OverlappedMC, WeighsThePredictionsOfTheNeighbours) {
  // The predictions in the order of the arguments, from the first of ten coordinates on.
  const auto reference = [](int first) {
    return test::touching<uint8_t>([=](Ints n) {
      std::vector<test::Span> spans;
      for (int k = 0; k < 5; ++k) {
        const auto first_row = int32_t(uint32_t(n[size_t(first + 2 * k + 1)]) * uint32_t(n[1]));
        for (int64_t row = 0; row < 8; ++row)
          spans.push_back({first_row + 2 * row * n[1] + n[size_t(first + 2 * k)], 15});
      }
      return spans;
    });
  };
  const auto fifteen = [](Ints) { return 15; };
  std::vector<Argument> to_8 = {reference(4), step(fifteen), plane(3, eight, eight), step(eight)};
  std::vector<Argument> to_16 = {reference(3), step(fifteen), buffer<int16_t>(block)};
  for (std::vector<Argument>* arguments : {&to_8, &to_16}) arguments->insert(arguments->end(), 10, size({}, -40, 40));
  test::check({OPERATION(H263OverlappedMC_8U, to_8), OPERATION(H263OverlappedMC_8U_16S, to_16)});
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
