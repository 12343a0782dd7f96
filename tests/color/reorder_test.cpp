#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::Ints, test::size, test::Span;

namespace {

Argument pixels(int bytes, int len) { return test::row<uint8_t>(test::whole, len, bytes); }

TEST_OPERATIONS(Reorder, MovesBytesWithinPixels) {
  const Argument len = test::length();
  test::check({
      OPERATION(ColorABGR2RGB_8U, {pixels(4, 2), pixels(3, 2), len}, {{1, 0, test::in_place}}),
      OPERATION(ColorARGB2RGB_8U, {pixels(4, 2), pixels(3, 2), len}, {{1, 0, test::in_place}}),
      OPERATION(ColorRGB2ABGR_8U, {pixels(3, 2), pixels(4, 2), len}),
      OPERATION(ColorRGB2ARGB_8U, {pixels(3, 2), pixels(4, 2), len}),
      OPERATION(ColorARGB2ABGR_8U_I, {pixels(4, 1), len}),
      OPERATION(ColorRGB2BGR_8U_I, {pixels(3, 1), len}),
  });
}

// Rows of 32-bit pixels at a distance counted in pixels.
Argument rows_of_words(int step) {
  return test::touching<uint8_t>([=](Ints n) {
    std::vector<Span> spans;
    for (int64_t y = 0; n[4] > 0 && y < n[5]; ++y) spans.push_back({y * n[size_t(step)] * 4, int64_t(n[4]) * 4});
    return spans;
  });
}

TEST_OPERATIONS(Reorder, ReversesTheBytesOfContiguousAndSeparateRows) {
  const auto step = test::step([](Ints n) { return std::max(n[4], 1); });
  // In place the steps are equal.
  const test::Overlap in_place = {2, 0, [](Ints n, int64_t distance) { return distance == 0 && n[1] == n[3]; }};
  test::check(
      OPERATION(ColorRGBA2ABGR_32U, {rows_of_words(1), step, rows_of_words(3), step, size(), size()}, {in_place}));
}

}  // namespace
