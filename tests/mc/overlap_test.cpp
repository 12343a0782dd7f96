#include <gtest/gtest.h>

#include <random>

#include "plain.h"

namespace {

/// Where a call of the random kind finds its blocks, and their sizes.
struct Call {
  uint8_t *src, *dst;
  int below, step, width, height;
};

class Overlapping : public testing::Test {
 protected:
  int from_to(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }

  /// The same memory for the operation and for its model.
  template <class F>
  void expect_same(const char* name, Call c, F* run, F* model, void (*call)(F*, Call)) {
    std::copy_n(noise_.begin() + from_to(0, 1000), memory_.size(), memory_.begin());
    expected_ = memory_;
    call(run, c);
    const auto moved = [&](uint8_t* p) { return p - memory_.data() + expected_.data(); };
    const Call of_model{moved(c.src), moved(c.dst), c.below, c.step, c.width, c.height};
    call(model, of_model);
    ASSERT_EQ(memory_ == expected_, true) << name << ": destination " << c.dst - c.src << " bytes from the source, "
                                          << c.below << ", " << c.step << ", " << c.width << ", " << c.height;
  }

  /// Blocks whose rows do not overlap each other, the destination's first byte within `reach` rows of the source's.
  Call random_call(int widest, int reach) {
    const int width = from_to(0, 3) ? 4 << from_to(0, 2) : from_to(1, widest), height = from_to(1, 23);
    const int columns = std::max(width, 16);
    const int step = (from_to(0, 3) ? 1 : -1) * (columns + from_to(0, 2) * from_to(0, 30));
    const int below = from_to(0, 2) ? step : from_to(-3, 3) * step + from_to(-2, 2);
    const int64_t away = from_to(-reach, reach) * int64_t(step) + (from_to(0, 2) ? from_to(-columns, columns) : 0);
    uint8_t* const src = memory_.data() + memory_.size() / 2 + from_to(0, 15);
    return {src, src + away, below, step, width, height};
  }

 private:
  std::mt19937 random_{20};
  std::vector<uint8_t> memory_ = std::vector<uint8_t>(30000), expected_, noise_ = [this] {
    std::vector<uint8_t> noise(memory_.size() + 1000);
    for (uint8_t& byte : noise) byte = uint8_t(random_());
    return noise;
  }();
};

#define EXPECT_SAME(NAME, CALL) expect_same<decltype(plain::NAME)>(#NAME, c, pqx_Video_##NAME, plain::NAME, CALL)

// Interpolation takes the samples one after the other, row after row, wherever the destination lies.
TEST_F(Overlapping, InterpolationKeepsTheOrderOfSamples) {
  constexpr auto one_step = [](auto f, Call c) { f(c.src, c.dst, c.step, c.width, c.height); };
  constexpr auto two_steps = [](auto f, Call c) { f(c.src, c.dst, c.below, c.step, c.width, c.height); };
  constexpr auto words = [](auto f, Call c) {
    f(c.src, c.step, reinterpret_cast<int16_t*>(c.dst), c.width, c.height);
  };
  constexpr auto words_two = [](auto f, Call c) {
    f(c.src, c.below, c.step, reinterpret_cast<int16_t*>(c.dst), c.width, c.height);
  };
  for (int turn = 0; turn < 20000 && !HasFatalFailure(); ++turn) {
    const Call c = random_call(100, 30);
    EXPECT_SAME(InterpX_8U, one_step);
    EXPECT_SAME(InterpAveX_8U, one_step);
    EXPECT_SAME(InterpY_8U, two_steps);
    EXPECT_SAME(InterpAveY_8U, two_steps);
    EXPECT_SAME(InterpXY_8U, two_steps);
    EXPECT_SAME(InterpAveXY_8U, two_steps);
    EXPECT_SAME(CopyRef_8U_16S, words);
    EXPECT_SAME(InterpX_8U_16S, words);
    EXPECT_SAME(InterpY_8U_16S, words_two);
    EXPECT_SAME(InterpXY_8U_16S, words_two);
  }
}

// Pictures are scrolled by copies onto rows that the walk has left behind.
TEST_F(Overlapping, CopiesGoRowAfterRow) {
  constexpr auto call = [](auto f, Call c) { f(c.src, c.dst, c.step, c.width, c.height); };
  int scrolled = 0;
  for (int turn = 0; turn < 20000 && !HasFatalFailure(); ++turn) {
    const Call c = random_call(100, 5);
    const int columns = std::max(c.width, 16);
    const auto ahead = [&](int i, int j) {
      return i >= j && std::abs(c.dst - c.src + (j - i) * int64_t(c.step)) < columns;
    };
    bool undefined = false;
    for (int i = 0; i < c.height; ++i)
      for (int j = 0; j < c.height; ++j) undefined = undefined || ahead(i, j);
    if (undefined && c.dst != c.src) continue;
    ++scrolled;
    EXPECT_SAME(CopyRef_8U, call);
    EXPECT_SAME(CopyRefAve_8U, call);
  }
  EXPECT_GT(scrolled, 1000);
}

}  // namespace
