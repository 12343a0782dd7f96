#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Count, test::Ints, test::Operation, test::plane, test::size, test::step,
    test::touching;

namespace {

const std::vector<int> favoured = {4, 8, 16};

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
  return touching<uint8_t>([=](Ints n) {
    std::vector<test::Span> spans;
    for (int64_t row = 0; row < rows(n); ++row)
      for (int64_t offset : {int64_t(0), int64_t(n[size_t(below)])})
        spans.push_back({row * n[size_t(step)] + offset, columns(n)});
    return spans;
  });
}

// Arguments (pSrc, pDst, step, width, height), with so many columns read beyond those written.
std::vector<Argument> one_step(Count columns, int more) {
  const Count wide = with(columns, more), high = rows(4, columns);
  return {plane(2, wide, high), plane(2, columns, high), step(with(columns, more + 1)), size(favoured),
          size(favoured)};
}
// (pSrc, pDst, srcStep, step, width, height).
std::vector<Argument> two_steps(int more) {
  const Count columns = multiple_of(4, 4), wide = with(columns, more), high = rows(5, columns);
  return {plane_and_below(3, 2, wide, high),
          plane(3, columns, high),
          step(wide),
          step(wide),
          size(favoured),
          size(favoured)};
}
TEST_OPERATIONS(Prediction, CopiesAndInterpolatesInTheRangeOfItsSamples) {
  test::check({
      OPERATION(CopyRef_8U, one_step(eight_or_sixteen(3), 0)),
      OPERATION(CopyRefAve_8U, one_step(multiple_of(8, 3), 0), {{1, 0, test::in_place}}),
      OPERATION(InterpX_8U, one_step(multiple_of(8, 3), 1), {{1, 0}}),
      OPERATION(InterpAveX_8U, one_step(multiple_of(4, 3), 1), {{1, 0}}),
      OPERATION(InterpY_8U, two_steps(0), {{1, 0}}),
      OPERATION(InterpAveY_8U, two_steps(0), {{1, 0}}),
      OPERATION(InterpXY_8U, two_steps(1), {{1, 0}}),
      OPERATION(InterpAveXY_8U, two_steps(1), {{1, 0}}),
  });
}

TEST_OPERATIONS(Prediction, WidensToPackedBlocks) {
  const auto packed = [](int width, int height) {
    return buffer<int16_t>(area(eight_or_sixteen(width), rows(height, eight_or_sixteen(width))));
  };
  const Count columns = eight_or_sixteen(3), high = rows(4, columns);
  const Count wide = eight_or_sixteen(4);
  const auto two_steps = [&](int more) -> std::vector<Argument> {
    return {plane_and_below(2, 1, with(wide, more), rows(5, wide)),
            step(with(wide, more)),
            step(with(wide, more)),
            packed(4, 5),
            size(favoured),
            size(favoured)};
  };
  // The packed rows of an odd width leave their last element alone.
  const Argument pairs = touching<int16_t>([](Ints n) {
    std::vector<test::Span> spans;
    for (int64_t row = 0; row < n[4]; ++row) spans.push_back({2 * row * n[3], std::max(n[3] / 2, 0) * 4});
    return spans;
  });
  const Argument even_columns = plane(1, multiple_of(2, 3), rows(4, multiple_of(2, 3)));
  test::check({
      OPERATION(CopyRef_8U_16S, {even_columns, step(multiple_of(2, 3)), pairs, size(favoured), size(favoured)},
                {{2, 0}}),
      OPERATION(
          InterpX_8U_16S,
          {plane(1, with(columns, 1), high), step(with(columns, 1)), packed(3, 4), size(favoured), size(favoured)},
          {{2, 0}}),
      OPERATION(InterpY_8U_16S, two_steps(0), {{3, 0}}),
      OPERATION(InterpXY_8U_16S, two_steps(1), {{3, 0}}),
  });
}

TEST_OPERATIONS(Prediction, InterpolatesThreePlanesWithinTheBlock) {
  const auto planes = [](int step_at, int width_at, int height_at, int fixed_width = 0) {
    const Count columns = [=](Ints n) { return fixed_width ? fixed_width : n[size_t(width_at)]; };
    const Count rows = [=](Ints n) { return std::max(n[size_t(height_at)], 1); };
    return plane(step_at, columns, rows);
  };
  const auto width_at = [](int at) { return step([=](Ints n) { return n[size_t(at)]; }); };
  const Argument width = size(favoured, 1);
  const Argument a = planes(1, 2, 3), b = planes(4, 0, 5, 16), c = planes(4, 5, 6);
  test::check({
      OPERATION(InterpX_Y_XY_8U, {a, width_at(2), width, size(favoured), a, a, a}),
      {"pqx_VideoInterpX_Y_XY_8U_w16",
       test::erase(pqx_VideoInterpX_Y_XY_8U_w16),
       test::erase(plain::InterpX_Y_XY_8U_w16),
       {b, b, b, b, step([](Ints) { return 16; }), size(favoured)}},
      {"pqx_VideoInterpX_Y_XY_8U_comm",
       test::erase(pqx_VideoInterpX_Y_XY_8U_comm),
       test::erase(plain::InterpX_Y_XY_8U_comm),
       {c, c, c, c, width_at(5), width, size(favoured)}},
  });
}

}  // namespace
