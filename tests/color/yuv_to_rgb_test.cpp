#include <gtest/gtest.h>

#include <algorithm>

#include "operation.h"
#include "plain.h"

using test::Argument, test::Count, test::Ints, test::plane, test::Span, test::step, test::touching;

namespace {

int64_t whole(int64_t n, int group) { return std::max<int64_t>(n, 0) / group * group; }
Count times(int factor, Count count) {
  return [=](Ints n) { return factor * count(n); };
}

std::vector<Argument> sub_sampled(int pixel, int columns, int rows) {
  const Count x = [=](Ints n) { return whole(n[7], columns); }, y = [=](Ints n) { return whole(n[8], rows); };
  const Count pairs_x = [=](Ints n) { return x(n) / columns; }, pairs_y = [=](Ints n) { return y(n) / rows; };
  return {plane(1, x, y),
          step(x),
          plane(4, pairs_x, pairs_y),
          plane(4, pairs_x, pairs_y),
          step(pairs_x),
          plane(6, times(pixel, x), y),
          step(times(pixel, x)),
          test::size(),
          test::size()};
}

std::vector<Argument> full(int pixel) {
  const Count x = [](Ints n) { return whole(n[6], 1); }, y = [](Ints n) { return whole(n[7], 1); };
  return {plane(3, x, y),        plane(3, x, y), plane(3, x, y), step(x), plane(5, times(pixel, x), y),
          step(times(pixel, x)), test::size(),   test::size()};
}

TEST_OPERATIONS(YuvToRgb, MatchesTheFormulaOnEveryPicture) {
  test::check({
      OPERATION(ColorYUV2RGB411_8U, sub_sampled(3, 4, 1)),
      OPERATION(ColorYUV2ARGB411_8U, sub_sampled(4, 4, 1)),
      OPERATION(ColorYUV2ABGR411_8U, sub_sampled(4, 4, 1)),
      OPERATION(ColorYUV2RGB420_8U, sub_sampled(3, 2, 2)),
      OPERATION(ColorYUV2ARGB420_8U, sub_sampled(4, 2, 2)),
      OPERATION(ColorYUV2ABGR420_8U, sub_sampled(4, 2, 2)),
      OPERATION(ColorYUV2RGBA420_8U, sub_sampled(4, 2, 2)),
      OPERATION(ColorYUV2RGB422_8U, sub_sampled(3, 2, 1)),
      OPERATION(ColorYUV2ARGB422_8U, sub_sampled(4, 2, 1)),
      OPERATION(ColorYUV2ABGR422_8U, sub_sampled(4, 2, 1)),
      OPERATION(ColorYUV2RGB444_8U, full(3)),
      OPERATION(ColorYUV2ARGB444_8U, full(4)),
      OPERATION(ColorYUV2ABGR444_8U, full(4)),
  });
}

// Pairs of rows start early by a sample and a square where the width is odd.
Argument drifting(int step, int width, int height, int rows, int64_t pixel) {
  return touching<uint8_t>([=](Ints n) {
    std::vector<Span> spans;
    const int64_t odd = n[size_t(width)] & 1, columns = whole(n[size_t(width)], 2);
    for (int64_t pair = 0; pair < whole(n[size_t(height)], 2) / 2; ++pair)
      for (int row = 0; row < rows; ++row)
        spans.push_back({(rows * pair + row) * n[size_t(step)] - pixel * odd * pair, pixel * columns});
    return spans;
  });
}

std::vector<Argument> zoomed(int zoom) {
  std::vector<Argument> arguments = sub_sampled(4, 2, 2);
  arguments[0] = drifting(1, 7, 8, 2, 1);
  arguments[5] = drifting(6, 7, 8, 2 * zoom, 4 * zoom);
  arguments[6] = step([=](Ints n) { return 4 * zoom * whole(n[7], 1); });
  return arguments;
}

// The part of a plane that a rectangle covers, in samples of `pixel` bytes; of chroma each is shared by 2x2 pixels.
Argument window_of(int step, int chroma, int zoom, int pixel) {
  return touching<uint8_t>([=](Ints n) {
    const int x0 = n[9] >> chroma, y0 = n[10] >> chroma;
    const int x1 = (n[11] + chroma) >> chroma, y1 = (n[12] + chroma) >> chroma;
    std::vector<Span> spans;
    if (n[9] < n[11] && n[10] < n[12])
      for (int64_t row = zoom * y0; row < zoom * y1; ++row)
        spans.push_back({row * n[size_t(step)] + pixel * zoom * x0, pixel * zoom * (x1 - x0)});
    return spans;
  });
}

std::vector<Argument> window(int zoom) {
  const Count x = [](Ints n) { return n[11] - std::min(n[9], 0); };
  const auto unread = test::size({}, -1, -1), corner = test::size({0, 1});
  return {window_of(1, 0, 1, 1),
          step(x),
          window_of(4, 1, 1, 1),
          window_of(4, 1, 1, 1),
          step(x),
          window_of(6, 0, zoom, 4),
          step(times(4 * zoom, x)),
          unread,
          unread,
          corner,
          corner,
          corner,
          corner};
}

TEST_OPERATIONS(YuvToRgb, ZoomsAndWindowsMatchTheFormula) {
  test::check({
      OPERATION(ColorYUV2ABGR420_X2_8U, zoomed(2)),
      OPERATION(ColorYUV2ABGR420_X3_8U, zoomed(3)),
      OPERATION(ColorYUV2ABGR420_W_8U, window(1)),
      OPERATION(ColorYUV2ABGR420_WX2_8U, window(2)),
      OPERATION(ColorYUV2ABGR420_WX3_8U, window(3)),
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
