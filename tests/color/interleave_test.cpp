#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::row, test::whole;

namespace {

// Planes, and samples for each of the pixels, that argument `len` counts.
Argument a8(int len, int each = 1) { return row<uint8_t>(whole, len, each); }
Argument a16(int len, int each = 1) { return row<int16_t>(whole, len, each); }

TEST_OPERATIONS(Interleave, MergesPlanesToPixels) {
  const Argument len = test::length();
  test::check({
      OPERATION(ColorMerge2_8U, {a8(2), a8(2), len, a8(2, 2)}),
      OPERATION(ColorMerge3_8U, {a8(3), a8(3), a8(3), len, a8(3, 3)}),
      OPERATION(ColorMerge4_8U, {a8(4), a8(4), a8(4), a8(4), len, a8(4, 4)}),
      OPERATION(ColorMerge2_16S, {a16(2), a16(2), len, a16(2, 2)}),
      OPERATION(ColorMerge3_16S, {a16(3), a16(3), a16(3), len, a16(3, 3)}),
      OPERATION(ColorMerge4_16S, {a16(4), a16(4), a16(4), a16(4), len, a16(4, 4)}),
  });
}

TEST_OPERATIONS(Interleave, SplitsPixelsToPlanes) {
  const Argument len = test::length();
  test::check({
      OPERATION(ColorSplit2_8U, {a8(3, 2), a8(3), a8(3), len}),
      OPERATION(ColorSplit3_8U, {a8(4, 3), a8(4), a8(4), a8(4), len}),
      OPERATION(ColorSplit4_8U, {a8(5, 4), a8(5), a8(5), a8(5), a8(5), len}),
      OPERATION(ColorSplit2_16S, {a16(3, 2), a16(3), a16(3), len}),
      OPERATION(ColorSplit3_16S, {a16(4, 3), a16(4), a16(4), a16(4), len}),
      OPERATION(ColorSplit4_16S, {a16(5, 4), a16(5), a16(5), a16(5), a16(5), len}),
  });
}

}  // namespace
