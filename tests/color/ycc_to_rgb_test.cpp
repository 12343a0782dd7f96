#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <numeric>

#include "operation.h"
#include "plain.h"

using test::scratch;

namespace {

TEST_OPERATIONS(YccToRgb, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(ColorYCC2RGB444_8U),
      OPERATION(ColorYCC2BGRA444_8U),
      OPERATION(ColorYCC2ARGB444_8U),
      OPERATION(ColorYCC2RGB422_NN_8U),
      OPERATION(ColorYCC2BGRA422_NN_8U),
      OPERATION(ColorYCC2RGB422_BL_8U),
      OPERATION(ColorYCC2BGRA422_BL_8U),
      OPERATION(ColorYCC2RGB420_NN_8U),
      OPERATION(ColorYCC2BGRA420_NN_8U),
      OPERATION(ColorYCC2RGB420_BL_8U),
      OPERATION(ColorYCC2BGRA420_BL_8U),
      OPERATION(ColorYCCK2CMYK444_8U),
  });
}

// Beyond twelve bits luma saturates and chroma wraps.
TEST_OPERATIONS(YccToRgb, SixteenBitRowsMatchTheFormula) {
  for (const auto& fill : {test::range<int16_t>(0, 4095), test::any<int16_t>()})
    test::check(OPERATION(ColorYCC2RGB444_16S, .fills = {{"pY", fill}, {"pCb", fill}, {"pCr", fill}}));
}

/// Converts planes, luma first, that are as long as the operation needs them for that luma.
template <class T>
void expect_same_pixels(const test::Operation& operation, std::vector<std::vector<T>> planes, int pixel) {
  const int len = int(planes[0].size());
  std::vector<T> got(size_t(len) * size_t(pixel)), expected(got.size());
  std::vector<test::Slot> slots;
  for (auto& plane : planes) slots.push_back({.pointer = plane.data()});
  slots.insert(slots.end(), {{.pointer = got.data()}, {.number = len}});
  operation.run(slots.data());
  slots[planes.size()].pointer = expected.data();
  operation.model(slots.data());
  if (got == expected) return;
  const auto wrong = std::mismatch(got.begin(), got.end(), expected.begin()).first - got.begin();
  FAIL() << operation.name << ", first Cb " << planes[1][0] + 0 << ": channel " << wrong % pixel << " of pixel "
         << wrong / pixel;
}

TEST(YccToRgb, ConvertsEveryColour) {
  std::vector<uint8_t> y(65536), cr(65536), cr_of_pairs(32768);
  std::iota(y.begin(), y.end(), uint8_t(0));
  for (size_t i = 0; i < cr.size(); ++i) cr[i] = cr_of_pairs[i / 2] = uint8_t(i / 256);
  for (int b = 0; b < 256; ++b) {
    const std::vector<uint8_t> cb(65536, uint8_t(b)), cb_of_pairs(32768, uint8_t(b));
    expect_same_pixels<uint8_t>(OPERATION(ColorYCC2RGB444_8U), {y, cb, cr}, 3);
    expect_same_pixels<uint8_t>(OPERATION(ColorYCC2BGRA444_8U), {y, cb, cr}, 4);
    expect_same_pixels<uint8_t>(OPERATION(ColorYCC2RGB422_NN_8U), {y, cb_of_pairs, cr_of_pairs}, 3);
    expect_same_pixels<uint8_t>(OPERATION(ColorYCCK2CMYK444_8U), {y, cb, cr, y}, 4);
    if (HasFatalFailure()) return;
  }
}

// Every luma with every Cb and with every Cr, every Cb with every Cr.
TEST(YccToRgb, RoundsEveryTwelveBitSum) {
  std::vector<int16_t> y(4096), cb(4096);
  std::iota(y.begin(), y.end(), int16_t(0));
  for (int c = 0; c < 4096; ++c) {
    for (int i = 0; i < 4096; ++i) cb[size_t(i)] = int16_t((i + c) % 4096);
    expect_same_pixels<int16_t>(OPERATION(ColorYCC2RGB444_16S), {y, cb, std::vector<int16_t>(4096, int16_t(c))}, 3);
    if (HasFatalFailure()) return;
  }
}

TEST(YccToRgb, KnownColours) {
  const struct {
    int y, cb, cr, r, g, b;
  } known[] = {{128, 128, 128, 128, 128, 128}, {0, 128, 128, 0, 0, 0},   {255, 128, 128, 255, 255, 255},
               {0, 128, 255, 178, 0, 0},       {76, 85, 255, 254, 0, 0}, {29, 255, 107, 0, 0, 254},
               {150, 44, 21, 0, 255, 1},       {255, 0, 0, 75, 255, 28}};
  for (const auto& k : known) {
    const auto y = uint8_t(k.y), cb = uint8_t(k.cb), cr = uint8_t(k.cr), black = uint8_t(7);
    uint8_t rgb[3], bgra[4], argb[4], cmyk[4];
    pqx_Video_ColorYCC2RGB444_8U(&y, &cb, &cr, rgb, 1);
    pqx_Video_ColorYCC2BGRA444_8U(&y, &cb, &cr, bgra, 1);
    pqx_Video_ColorYCC2ARGB444_8U(&y, &cb, &cr, argb, 1);
    EXPECT_EQ((std::vector<int>{rgb, rgb + 3}), (std::vector{k.r, k.g, k.b})) << k.y << " " << k.cb << " " << k.cr;
    EXPECT_EQ((std::vector<int>{bgra, bgra + 4}), (std::vector{k.b, k.g, k.r, 255}));
    EXPECT_EQ((std::vector<int>{argb, argb + 4}), (std::vector{255, k.r, k.g, k.b}));
    if (k.cb != 128 || k.cr != 128) continue;
    pqx_Video_ColorYCCK2CMYK444_8U(&y, &cb, &cr, &black, cmyk, 1);
    EXPECT_EQ((std::vector<int>{cmyk, cmyk + 4}), (std::vector{255 - k.r, 255 - k.g, 255 - k.b, 7}));
  }

  const struct {
    int16_t y, cb, cr, r, g, b;
  } known_12_bit[] = {{4095, 2048, 2048, 4095, 4095, 4095}, {0, 2048, 2048, 0, 0, 0},
                      {1000, 2048, 2048, 1000, 1000, 1000}, {2048, 2048, 4095, 4095, 586, 2048},
                      {2048, 0, 2048, 2048, 2753, 0},       {-32768, 4095, 4095, 0, 0, 0},
                      {32767, 0, 0, 4095, 4095, 4095}};
  for (const auto& k : known_12_bit) {
    int16_t rgb[3];
    pqx_Video_ColorYCC2RGB444_16S(&k.y, &k.cb, &k.cr, rgb, 1);
    EXPECT_EQ((std::vector<int>{rgb, rgb + 3}), (std::vector<int>{k.r, k.g, k.b}))
        << k.y << " " << k.cb << " " << k.cr;
  }
}

TEST(YccToRgb, LongRowsTakeScratchMemoryAndGiveItBack) {
  std::vector<uint8_t> row(4104), dst0(4 * row.size(), 170), dst1 = dst0;
  const auto untouched = dst0;
  const uint8_t* s = row.data();
  for (auto* convert : {pqx_Video_ColorYCC2RGB420_BL_8U, pqx_Video_ColorYCC2BGRA420_BL_8U}) {
    auto run = [&](int len, int refused = 0) {
      scratch.expect(refused);
      return convert(s, s, s, s, s, s, s, s, dst0.data(), dst1.data(), len);
    };
    for (int len : {INT_MIN, -1, 0, 1, 4096}) {
      EXPECT_EQ(run(len), PQX_OK);
      EXPECT_TRUE(scratch.requests.empty()) << len;
    }
    EXPECT_EQ(run(4097), PQX_OK);
    EXPECT_EQ(scratch.requests, std::vector{4 * 4104});
    EXPECT_EQ(scratch.blocks, 0);

    dst0 = dst1 = untouched;
    EXPECT_EQ(run(536870904, 1), PQX_ERR_MEMORY);
    EXPECT_EQ(scratch.requests, std::vector{2147483616});
    for (int len : {536870905, INT_MAX}) {  // more than can be asked for
      EXPECT_EQ(run(len), PQX_ERR_MEMORY);
      EXPECT_TRUE(scratch.requests.empty()) << len;
    }
    EXPECT_EQ(dst0, untouched);
    EXPECT_EQ(dst1, untouched);
  }
}

}  // namespace
