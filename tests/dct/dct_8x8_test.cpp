#include <gtest/gtest.h>

#include <array>

#include "internal/close_to_half.h"
#include "operation.h"
#include "plain.h"

namespace {

using Block = std::array<int16_t, 64>;
using Pixels = std::array<uint8_t, 64>;

Block block_of(decltype(pqx_Video_DCT8x8Inv_16S)* transform, const Block& in) {
  Block out;
  transform(in.data(), out.data());
  return out;
}
Pixels pixels_of(decltype(pqx_Video_DCT8x8Inv_16S_8U)* transform, const Block& in) {
  Pixels out;
  transform(in.data(), out.data(), 8);
  return out;
}

TEST_OPERATIONS(Dct8x8, MatchesTheTypedArithmeticWhereverTheBlockLies) {
  test::check({
      OPERATION(DCT8x8Fwd_16S),
      OPERATION(DCT8x8Fwd_12S_16S),
      OPERATION(DCT8x8Fwd_8U_16S),
      OPERATION(DCT8x8Inv_16S),
      OPERATION(DCT8x8Inv_16S_8U),
      OPERATION(DCT8x8Inv_1Q_16S),
      OPERATION(DCT8x8Inv_1Q_16S_8U),
      OPERATION(DCT8x8Inv_DC_16S),
      OPERATION(DCT8x8Inv_DC_16S_8U),
  });
}

// One sample, and how the first coefficients begin: an exact half may stay one (0.5 of 4 / 8) or fall below (1.5).
TEST(Dct8x8, RoundsForwardAsTheTypesDecide) {
  const struct {
    int16_t sample;
    std::vector<int16_t> first;
  } cases[] = {{1, {0}}, {4, {1}}, {12, {1, 2, 2, 2, 1, 1, 1, 0}}, {-4, {0, -1, -1}}, {-20, {-2}}};
  for (const auto& c : cases) {
    const Block out = block_of(pqx_Video_DCT8x8Fwd_16S, {c.sample});
    EXPECT_TRUE(std::equal(c.first.begin(), c.first.end(), out.begin())) << c.sample;
  }
  for (int pixel : {1, 128, 255}) {
    Pixels in;
    in.fill(uint8_t(pixel));
    Block out;
    pqx_Video_DCT8x8Fwd_8U_16S(in.data(), 8, out.data());
    EXPECT_EQ(out, Block{int16_t(8 * pixel)}) << pixel;
  }
}

// Samples of few bits go another way than wide ones; a single one may be wider than the others. Which way was taken shows
// where a coefficient comes close to a half, above all if it is large.
TEST(Dct8x8, TransformsSamplesOfAnyWidth) {
  std::mt19937 random(2);
  for (int turn = 0; turn < 20000; ++turn) {
    const int limit = 1 << turn % 16, amplitude = 1 << random() % 16, mean = int(random() % (2 * limit)) - limit;
    const auto& driven = test::basis[random() % 64];
    const int low = -limit >> random() % 2;
    const bool drive = random() % 4 == 0;
    constexpr int outliers[] = {256, 255, -256, -257, 511, 512, 767, 32767, -32768};
    Block in;
    for (size_t i = 0; i < 64; ++i) {
      const int noise = int(random() % (2 * amplitude)) - amplitude;
      const int x = drive ? (driven[i] > 0 ? limit : low) + noise % 3 : mean + noise;
      in[i] = int16_t(std::clamp(x, low, limit - 1));
    }
    if (drive) test::bring_close(in, driven, low, limit - 1);
    if (!drive && turn % 3 == 0) in[random() % 64] = int16_t(outliers[random() % 9]);
    ASSERT_EQ(block_of(pqx_Video_DCT8x8Fwd_16S, in), block_of(plain::DCT8x8Fwd_16S, in)) << limit;
  }
}

// Every DC alone. The full forms fall short of an exact half by their DC gain, the DC forms do not.
TEST(Dct8x8, InvertsEveryLoneDc) {
  struct {
    int dc, full, pixel, dc_form, dc_pixel;
  } const cases[] = {
      {4, 0, 1, 1, 1},           {12, 1, 2, 2, 2},           {-4, -1, 0, 0, 0},          {-12, -2, 0, -1, 0},
      {-1, 0, 0, 0, 0},          {1020, 127, 128, 128, 128}, {1028, 128, 128, 129, 129}, {2043, 255, 255, 255, 255},
      {2044, 255, 255, 256, 255}};
  for (int value = -32768; value < 32768; ++value) {
    const Block in = {int16_t(value)};
    const Block full = block_of(pqx_Video_DCT8x8Inv_16S, in), dc_form = block_of(pqx_Video_DCT8x8Inv_DC_16S, in);
    const Pixels pixels = pixels_of(pqx_Video_DCT8x8Inv_16S_8U, in);
    const Pixels dc_pixels = pixels_of(pqx_Video_DCT8x8Inv_DC_16S_8U, in);
    ASSERT_EQ(full, block_of(plain::DCT8x8Inv_16S, in)) << value;
    ASSERT_EQ(full, block_of(pqx_Video_DCT8x8Inv_1Q_16S, in)) << value;
    ASSERT_EQ(pixels, pixels_of(plain::DCT8x8Inv_16S_8U, in)) << value;
    ASSERT_EQ(pixels, pixels_of(pqx_Video_DCT8x8Inv_1Q_16S_8U, in)) << value;
    ASSERT_EQ(dc_pixels[0] - pixels[0], value >= 1028 && value <= 2036 && value % 8 == 4) << value;
    for (const auto& c : cases)
      if (c.dc == value) {
        EXPECT_EQ(full[63], c.full) << value;
        EXPECT_EQ(pixels[63], c.pixel) << value;
        EXPECT_EQ(dc_form[63], c.dc_form) << value;
        EXPECT_EQ(dc_pixels[63], c.dc_pixel) << value;
      }
  }
}

// Any set of rows and any set of columns may hold coefficients.
TEST(Dct8x8, InvertsEverySparseShape) {
  std::mt19937 random(1);
  for (int shape = 0; shape < 65536; ++shape) {
    const int magnitude = 1 << random() % 16;
    Block in = {};
    for (int i = 0; i < 64; ++i)
      if ((shape >> (i / 8) & 1) && (shape >> (8 + i % 8) & 1))
        in[i] = int16_t(int(random() % (2 * magnitude)) - magnitude);
    ASSERT_EQ(block_of(pqx_Video_DCT8x8Inv_16S, in), block_of(plain::DCT8x8Inv_16S, in)) << shape;
    ASSERT_EQ(pixels_of(pqx_Video_DCT8x8Inv_16S_8U, in), pixels_of(plain::DCT8x8Inv_16S_8U, in)) << shape;
  }
}

}  // namespace
