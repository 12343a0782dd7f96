#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Ints, test::plane, test::size, test::step;

namespace {

int64_t eight(Ints) { return 8; }
int64_t block(Ints) { return 64; }

TEST_OPERATIONS(P64Loop, FiltersInsideTheBlock) {
  const Argument in_place = plane(2, eight, eight);
  test::check({
      OPERATION(P64Loop_8U, {in_place, in_place, step(eight)}, {{1, 0, test::in_place}}),
      OPERATION(P64Loop_8U_16S, {plane(1, eight, eight), step(eight), buffer<int16_t>(block)}),
  });
}

TEST_OPERATIONS(P64Decimate, AveragesSquares) {
  const test::Count width = [](Ints n) { return n[4]; }, height = [](Ints n) { return n[4] > 0 ? n[5] : 0; };
  const auto twice = [=](Ints n) { return 2 * width(n); };
  const Argument src = plane(1, twice, [=](Ints n) { return 2 * height(n); }), dst = plane(3, width, height);
  test::check({OPERATION(P64Decimate_8U, {src, step(twice), dst, step(width), size(), size()}, {{2, 0}})});
}

}  // namespace
