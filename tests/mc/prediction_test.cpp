#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(Prediction, CopiesAndInterpolatesInTheRangeOfItsSamples) {
  const auto sizes = test::size({4, 8, 16});
  test::check({
      OPERATION(CopyRef_8U, .sizes = sizes),
      OPERATION(CopyRefAve_8U, .sizes = sizes),
      OPERATION(CopyRef_8U_16S, .sizes = sizes),
      OPERATION(InterpX_8U, .sizes = sizes),
      OPERATION(InterpAveX_8U, .sizes = sizes),
      OPERATION(InterpY_8U, .sizes = sizes),
      OPERATION(InterpAveY_8U, .sizes = sizes),
      OPERATION(InterpXY_8U, .sizes = sizes),
      OPERATION(InterpAveXY_8U, .sizes = sizes),
      OPERATION(InterpX_8U_16S, .sizes = sizes),
      OPERATION(InterpY_8U_16S, .sizes = sizes),
      OPERATION(InterpXY_8U_16S, .sizes = sizes),
      OPERATION(InterpX_Y_XY_8U, .sizes = sizes),
      test::operation("pqx_VideoInterpX_Y_XY_8U_w16", test::erase(plain::InterpX_Y_XY_8U_w16), {.sizes = sizes}),
      test::operation("pqx_VideoInterpX_Y_XY_8U_comm", test::erase(plain::InterpX_Y_XY_8U_comm), {.sizes = sizes}),
  });
}

}  // namespace
