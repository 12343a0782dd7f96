#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(Interleave, MergesPlanesToPixels) {
  test::check({
      OPERATION(ColorMerge2_8U),
      OPERATION(ColorMerge3_8U),
      OPERATION(ColorMerge4_8U),
      OPERATION(ColorMerge2_16S),
      OPERATION(ColorMerge3_16S),
      OPERATION(ColorMerge4_16S),
  });
}

TEST_OPERATIONS(Interleave, SplitsPixelsToPlanes) {
  test::check({
      OPERATION(ColorSplit2_8U),
      OPERATION(ColorSplit3_8U),
      OPERATION(ColorSplit4_8U),
      OPERATION(ColorSplit2_16S),
      OPERATION(ColorSplit3_16S),
      OPERATION(ColorSplit4_16S),
  });
}

}  // namespace
