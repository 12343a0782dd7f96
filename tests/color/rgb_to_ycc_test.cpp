#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(RgbToYcc, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(ColorRGB2YCC444_8U),
      OPERATION(ColorABGR2YCC444_8U),
      OPERATION(ColorARGB2YCC444_8U),
      OPERATION(ColorBGRA2YCC444_8U),
      OPERATION(ColorRGB2YCC422_BL_8U),
      OPERATION(ColorABGR2YCC422_BL_8U),
      OPERATION(ColorARGB2YCC422_BL_8U),
      OPERATION(ColorBGRA2YCC422_BL_8U),
      OPERATION(ColorRGB2YCC420_BL_8U),
      OPERATION(ColorABGR2YCC420_BL_8U),
      OPERATION(ColorARGB2YCC420_BL_8U),
      OPERATION(ColorBGRA2YCC420_BL_8U),
      OPERATION(ColorCMYK2YCCK444_8U),
  });
}

TEST(RgbToYcc, MatchesTheFormulaForEveryColour) {
  constexpr int n = 1 << 16;  // colours of one red
  std::vector<uint8_t> rgb(3 * n), converted(3 * n), expected(3 * n);
  for (int red = 0; red < 256; ++red) {
    for (int i = 0; i < n; ++i) {
      rgb[size_t(3 * i)] = uint8_t(red);
      rgb[size_t(3 * i + 1)] = uint8_t(i >> 8);
      rgb[size_t(3 * i + 2)] = uint8_t(i);
    }
    uint8_t *a = converted.data(), *b = expected.data();
    pqx_Video_ColorRGB2YCC444_8U(rgb.data(), a, a + n, a + 2 * n, n);
    plain::ColorRGB2YCC444_8U(rgb.data(), b, b + n, b + 2 * n, n);
    ASSERT_EQ(converted, expected) << "red " << red;
  }
}

// Fixed values, so that the plain loops are not only compared with what was written after them.
TEST(RgbToYcc, KnownColours) {
  const struct {
    uint8_t r, g, b, y, cb, cr;
  } colours[] = {{0, 0, 0, 0, 128, 128},     {4, 4, 4, 3, 128, 128},        {7, 7, 7, 7, 128, 127},
                 {255, 0, 0, 76, 85, 255},   {0, 0, 255, 29, 255, 107},     {255, 255, 0, 226, 1, 148},
                 {0, 255, 255, 179, 171, 0}, {255, 255, 255, 255, 128, 127}};
  for (const auto& c : colours) {
    const uint8_t rgb[] = {c.r, c.g, c.b};
    uint8_t y, cb, cr;
    pqx_Video_ColorRGB2YCC444_8U(rgb, &y, &cb, &cr, 1);
    EXPECT_TRUE(y == c.y && cb == c.cb && cr == c.cr)
        << int(c.r) << " " << int(c.g) << " " << int(c.b) << ": " << int(y) << " " << int(cb) << " " << int(cr);
  }
}

// Pixels whose Cb is 10 and 11 in turn have means of 10.5 everywhere; so have two such rows.
TEST(RgbToYcc, HalvesGoDownAtEvenOutputsAndUpAtOddOnes) {
  constexpr int n = 38;
  std::vector<uint8_t> rgb;
  for (int i = 0; i < n; ++i) rgb.insert(rgb.end(), {uint8_t(235 - i % 2), uint8_t(235 - i % 2), 0});
  uint8_t y[2 * n], cb[n], cr[n];
  for (int len : {4, 6, 14, 16, 18, n}) {
    pqx_Video_ColorRGB2YCC444_8U(rgb.data(), y, cb, cr, len);
    ASSERT_TRUE(cb[0] == 10 && cb[1] == 11);
    pqx_Video_ColorRGB2YCC422_BL_8U(rgb.data(), y, cb, cr, len);
    for (int j = 0; j < len / 2; ++j) EXPECT_EQ(cb[j], 10 + j % 2) << "4:2:2, " << j << " of " << len / 2;
    pqx_Video_ColorRGB2YCC420_BL_8U(rgb.data(), rgb.data(), y, y + n, cb, cr, len);
    for (int j = 0; j < len / 2; ++j) EXPECT_EQ(cb[j], 10 + j % 2) << "4:2:0, " << j << " of " << len / 2;
  }
}

// At least one pixel is converted whatever the length, and samples beyond 12 bits are rounded as all others.
TEST_OPERATIONS(RgbToYcc, SixteenBitRowsMatchTheFormula) {
  for (const auto& fill : {test::range<int16_t>(0, 4095), test::any<int16_t>()})
    test::check(OPERATION(ColorRGB2YCC444_16S, .fills = {{"pSrc", fill}}));
}

TEST(RgbToYcc, KnownSixteenBitColours) {
  const struct {
    int16_t rgb[3], y, cb, cr;
  } colours[] = {{{0, 0, 0}, 0, 2048, 2048},
                 {{-4, 0, 0}, -1, 2048, 2046},                       // truncated toward zero
                 {{32767, -32768, -32768}, -13173, -9010, -30721}};  // Cr is 34815, of which the low 16 bits stay
  for (const auto& c : colours) {
    int16_t y, cb, cr;
    pqx_Video_ColorRGB2YCC444_16S(c.rgb, &y, &cb, &cr, 1);
    EXPECT_TRUE(y == c.y && cb == c.cb && cr == c.cr) << y << " " << cb << " " << cr;
  }
}

}  // namespace
