#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(Filter, FiltersBlocksAndAveragesSquares) {
  test::check({
      OPERATION(P64Loop_8U),
      OPERATION(P64Loop_8U_16S),
      OPERATION(P64Decimate_8U),
  });
}

}  // namespace
