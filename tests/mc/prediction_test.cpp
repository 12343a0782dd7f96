#include <gtest/gtest.h>

#include <numeric>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Count, test::Ints, test::Operation, test::plane, test::size, test::step;

namespace {

const std::vector<int> widths = {
    -2147483647 - 1, -7, 0, 1, 2, 3, 4, 5, 7, 8, 9, 11, 12, 15, 16, 17, 20, 24, 31, 32, 45, 60};
const std::vector<int> heights = {-2147483647 - 1, -1, 0, 1, 2, 3, 4, 5, 7, 8, 9, 16, 17};
const std::vector<int> distances = {0, 1, 3, 8, 15, 16, 17, 24, 33, 64, 100, -1, -8, -15, -16, -17, -24, -40, -90};

/// Columns that a width means, by its position among the arguments.
Count multiple_of(int n, int width) {
  return [=](Ints ints) { return std::max(0, ints[size_t(width)] / n * n); };
}
Count eight_or_sixteen(int width) {
  return [=](Ints n) { return n[size_t(width)] == 8 ? 8 : 16; };
}
/// Rows, but none where there are no columns.
Count rows(int height, Count columns) {
  return [=](Ints n) { return columns(n) > 0 ? n[size_t(height)] : 0; };
}
Count with(Count columns, int more) {
  return [=](Ints n) { return columns(n) > 0 ? columns(n) + more : 0; };
}
Count area(Count columns, Count rows) {
  return [=](Ints n) { return columns(n) * std::max<int64_t>(rows(n), 0); };
}

/// Rows and, at a distance that argument `below` tells, the rows below them.
Argument plane_and_below(int step, int below, Count columns, Count rows) {
  Argument argument = plane(step, columns, rows);
  argument.spans = [=](Ints n) {
    std::vector<test::Span> spans;
    for (int64_t row = 0; row < rows(n); ++row)
      for (int64_t offset : {int64_t(0), int64_t(n[size_t(below)])})
        spans.push_back({row * n[size_t(step)] + offset, columns(n)});
    return spans;
  };
  return argument;
}

// Arguments (pSrc, pDst, step, width, height), with so many columns read beyond those written.
std::vector<Argument> one_step(Count columns, int more) {
  const Count wide = with(columns, more), high = rows(4, columns);
  return {plane(2, wide, high), plane(2, columns, high), step(with(columns, more + 1)), size(widths), size(heights)};
}
// (pSrc, pDst, srcStep, step, width, height).
std::vector<Argument> two_steps(int more) {
  const Count columns = multiple_of(4, 4), wide = with(columns, more), high = rows(5, columns);
  return {plane_and_below(3, 2, wide, high),
          plane(3, columns, high),
          step(wide),
          step(wide),
          size(widths),
          size(heights)};
}
// (pSrc, pDst, step, width, height) for operations that are given the step twice.
std::vector<Argument> step_twice(int more) {
  const Count columns = multiple_of(4, 3), wide = with(columns, more), high = rows(4, columns);
  return {plane_and_below(2, 2, wide, high), plane(2, columns, high), step(wide), size(widths), size(heights)};
}

template <auto f>
pqx_Status given_the_step_twice(const uint8_t* src, uint8_t* dst, int step, int width, int height) {
  return f(src, dst, step, step, width, height);
}
template <auto f>
pqx_Status given_the_step_twice(const uint8_t* src, int step, int16_t* dst, int width, int height) {
  return f(src, step, step, dst, width, height);
}
using To8 = pqx_Status(const uint8_t*, uint8_t*, int, int, int);
using To16 = pqx_Status(const uint8_t*, int, int16_t*, int, int);

#define STEP_TWICE(TO, NAME, ...)                                                          \
  {                                                                                        \
#NAME " with one step", test::erase < >((TO*)given_the_step_twice <pqx_Video_##NAME>), \
        test::erase < >((TO*)given_the_step_twice <plain::NAME>), __VA_ARGS__              \
  }

TEST_OPERATIONS(Prediction, CopiesAndInterpolatesInTheRangeOfItsSamples) {
  test::check({
      OPERATION(CopyRef_8U, one_step(eight_or_sixteen(3), 0)),
      OPERATION(CopyRefAve_8U, one_step(multiple_of(8, 3), 0), {{1, 0, {0}}}),
      OPERATION(InterpX_8U, one_step(multiple_of(8, 3), 1), {{1, 0, distances}}),
      OPERATION(InterpAveX_8U, one_step(multiple_of(4, 3), 1), {{1, 0, distances}}),
      OPERATION(InterpY_8U, two_steps(0), {{1, 0, distances}}),
      OPERATION(InterpAveY_8U, two_steps(0), {{1, 0, distances}}),
      OPERATION(InterpXY_8U, two_steps(1), {{1, 0, distances}}),
      OPERATION(InterpAveXY_8U, two_steps(1), {{1, 0, distances}}),
      STEP_TWICE(To8, InterpY_8U, step_twice(0), {{1, 0, distances}}),
      STEP_TWICE(To8, InterpAveY_8U, step_twice(0), {{1, 0, distances}}),
      STEP_TWICE(To8, InterpXY_8U, step_twice(1), {{1, 0, distances}}),
      STEP_TWICE(To8, InterpAveXY_8U, step_twice(1), {{1, 0, distances}}),
  });
}

TEST_OPERATIONS(Prediction, WidensToPackedBlocks) {
  const auto packed = [](int width, int height) {
    return buffer<int16_t>(area(eight_or_sixteen(width), rows(height, eight_or_sixteen(width))));
  };
  const Count columns = eight_or_sixteen(3), high = rows(4, columns);
  const auto one_step = [&](int below, int more) -> std::vector<Argument> {
    const Argument src =
        below ? plane_and_below(1, 1, with(columns, more), high) : plane(1, with(columns, more), high);
    return {src, step(with(columns, more)), packed(3, 4), size(widths), size(heights)};
  };
  const Count wide = eight_or_sixteen(4);
  const auto two_steps = [&](int more) -> std::vector<Argument> {
    return {plane_and_below(2, 1, with(wide, more), rows(5, wide)),
            step(with(wide, more)),
            step(with(wide, more)),
            packed(4, 5),
            size(widths),
            size(heights)};
  };
  // The packed rows of an odd width leave their last element alone.
  Argument pairs = buffer<int16_t>(area(multiple_of(2, 3), rows(4, multiple_of(2, 3))));
  pairs.spans = [](Ints n) {
    std::vector<test::Span> spans;
    for (int64_t row = 0; row < n[4]; ++row) spans.push_back({2 * row * n[3], std::max(n[3] / 2, 0) * 4});
    return spans;
  };
  const Argument even_columns = plane(1, multiple_of(2, 3), rows(4, multiple_of(2, 3)));
  test::check({
      OPERATION(CopyRef_8U_16S, {even_columns, step(multiple_of(2, 3)), pairs, size(widths), size(heights)},
                {{2, 0, distances}}),
      OPERATION(InterpX_8U_16S, one_step(0, 1), {{2, 0, distances}}),
      OPERATION(InterpY_8U_16S, two_steps(0), {{3, 0, distances}}),
      OPERATION(InterpXY_8U_16S, two_steps(1), {{3, 0, distances}}),
      STEP_TWICE(To16, InterpY_8U_16S, one_step(1, 0), {{2, 0, distances}}),
      STEP_TWICE(To16, InterpXY_8U_16S, one_step(1, 1), {{2, 0, distances}}),
  });
}

TEST_OPERATIONS(Prediction, InterpolatesThreePlanesWithinTheBlock) {
  const auto planes = [](int step_at, int width_at, int height_at, int fixed_width = 0) {
    const Count columns = [=](Ints n) { return fixed_width ? fixed_width : n[size_t(width_at)]; };
    const Count rows = [=](Ints n) { return std::max(n[size_t(height_at)], 1); };
    return plane(step_at, columns, rows);
  };
  const auto width_at = [](int at) { return step([=](Ints n) { return n[size_t(at)]; }); };
  std::vector<int> widths(40);
  std::iota(widths.begin(), widths.end(), 1);
  const Argument a = planes(1, 2, 3), b = planes(4, 0, 5, 16), c = planes(4, 5, 6);
  test::check({
      OPERATION(InterpX_Y_XY_8U, {a, width_at(2), size(widths), size(heights), a, a, a}),
      {"pqx_VideoInterpX_Y_XY_8U_w16",
       test::erase(pqx_VideoInterpX_Y_XY_8U_w16),
       test::erase(plain::InterpX_Y_XY_8U_w16),
       {b, b, b, b, step([](Ints) { return 16; }), size(heights)}},
      {"pqx_VideoInterpX_Y_XY_8U_comm",
       test::erase(pqx_VideoInterpX_Y_XY_8U_comm),
       test::erase(plain::InterpX_Y_XY_8U_comm),
       {c, c, c, c, width_at(5), size(widths), size(heights)}},
  });
}

// Every sum of four samples that can round in its own way.
TEST(Prediction, RoundsMeansOfSquaresOnce) {
  uint8_t src[2][17] = {}, dst[2][16];
  for (int bits = 0; bits < 4096; ++bits) {
    for (int i = 0; i < 17; ++i)
      src[0][i] = uint8_t(bits >> (i % 2 * 3) & 7), src[1][i] = uint8_t(bits >> (6 + i % 2 * 3) & 7);
    pqx_Video_InterpXY_8U(src[0], dst[0], 17, 16, 16, 1);
    plain::InterpXY_8U(src[0], dst[1], 17, 16, 16, 1);
    ASSERT_TRUE(std::equal(dst[0], dst[0] + 16, dst[1])) << bits;
  }
}

}  // namespace
