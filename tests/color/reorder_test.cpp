#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(Reorder, MovesBytesWithinPixels) {
  test::check({
      OPERATION(ColorABGR2RGB_8U),
      OPERATION(ColorARGB2RGB_8U),
      OPERATION(ColorRGB2ABGR_8U),
      OPERATION(ColorRGB2ARGB_8U),
      OPERATION(ColorARGB2ABGR_8U_I),
      OPERATION(ColorRGB2BGR_8U_I),
      OPERATION(ColorRGBA2ABGR_32U),
  });
}

}  // namespace
