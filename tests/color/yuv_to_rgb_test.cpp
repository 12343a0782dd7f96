#include <gtest/gtest.h>

#include <algorithm>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(YuvToRgb, MatchesTheFormulaOnEveryPicture) {
  test::check({
      OPERATION(ColorYUV2RGB411_8U),
      OPERATION(ColorYUV2ARGB411_8U),
      OPERATION(ColorYUV2ABGR411_8U),
      OPERATION(ColorYUV2RGB420_8U),
      OPERATION(ColorYUV2ARGB420_8U),
      OPERATION(ColorYUV2ABGR420_8U),
      OPERATION(ColorYUV2RGBA420_8U),
      OPERATION(ColorYUV2RGB422_8U),
      OPERATION(ColorYUV2ARGB422_8U),
      OPERATION(ColorYUV2ABGR422_8U),
      OPERATION(ColorYUV2RGB444_8U),
      OPERATION(ColorYUV2ARGB444_8U),
      OPERATION(ColorYUV2ABGR444_8U),
  });
}

TEST_OPERATIONS(YuvToRgb, ZoomsAndWindowsMatchTheFormula) {
  const auto corners = test::size({0, 1});
  test::check({
      OPERATION(ColorYUV2ABGR420_X2_8U),
      OPERATION(ColorYUV2ABGR420_X3_8U),
      OPERATION(ColorYUV2ABGR420_W_8U, .sizes = corners),
      OPERATION(ColorYUV2ABGR420_WX2_8U, .sizes = corners),
      OPERATION(ColorYUV2ABGR420_WX3_8U, .sizes = corners),
  });
}

// Black and white lie at 16 and 235; the two families of coefficients round some colours differently; alpha is 0.
TEST(YuvToRgb, KnownColours) {
  const struct {
    uint8_t y, u, v;
    std::vector<uint8_t> shared, own;  // A, R, G, B where a square shares its chroma, and where none is shared
  } colours[] = {
      {16, 128, 128, {0, 0, 0, 0}, {0, 0, 0, 0}},          {235, 128, 128, {0, 255, 255, 255}, {0, 255, 255, 255}},
      {0, 0, 0, {0, 0, 135, 0}, {0, 0, 136, 0}},           {41, 240, 110, {0, 0, 0, 255}, {0, 1, 1, 255}},
      {100, 110, 150, {0, 133, 87, 61}, {0, 132, 87, 61}},
  };
  for (const auto& c : colours) {
    const std::vector<uint8_t> y(4, c.y);
    std::vector<uint8_t> out(16, 7), own(4, 7);
    pqx_Video_ColorYUV2ARGB420_8U(y.data(), 2, &c.u, &c.v, 1, out.data(), 8, 2, 2);
    for (int pixel = 0; pixel < 4; ++pixel)
      EXPECT_EQ(std::vector(&out[4 * pixel], &out[4 * pixel] + 4), c.shared) << int(c.y) << ", pixel " << pixel;
    pqx_Video_ColorYUV2ARGB444_8U(&c.y, &c.u, &c.v, 1, own.data(), 4, 1, 1);
    EXPECT_EQ(own, c.own) << int(c.y);
  }
}

// 2^16 pairs of chroma with every luma.
TEST(YuvToRgb, EveryColour) {
  constexpr int pairs = 1 << 16, pixels = 2 * pairs;
  std::vector<uint8_t> y(pixels), u(pixels), v(pixels), out(3 * pixels), expected(3 * pixels);
  for (int i = 0; i < pixels; ++i) u[i] = uint8_t(i), v[i] = uint8_t(i >> 8);
  for (int luma = 0; luma < 256; luma += 2) {
    for (int x = 0; x < pixels; ++x) y[x] = uint8_t(luma + x % 2);
    pqx_Video_ColorYUV2RGB422_8U(y.data(), 0, u.data(), v.data(), 0, out.data(), 0, pixels, 1);
    plain::ColorYUV2RGB422_8U(y.data(), 0, u.data(), v.data(), 0, expected.data(), 0, pixels, 1);
    ASSERT_EQ(out, expected) << "luma " << luma;
    for (int x = 0; x < pixels; ++x) y[x] = uint8_t(luma + x / pairs);
    pqx_Video_ColorYUV2RGB444_8U(y.data(), u.data(), v.data(), 0, out.data(), 0, pixels, 1);
    plain::ColorYUV2RGB444_8U(y.data(), u.data(), v.data(), 0, expected.data(), 0, pixels, 1);
    ASSERT_EQ(out, expected) << "4:4:4, luma " << luma;
  }
}

}  // namespace
