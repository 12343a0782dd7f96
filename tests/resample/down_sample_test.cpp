#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(DownSample, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(DownSample420_BL_8U),
      OPERATION(DownSample420_BL_16S),
      OPERATION(DownSample422_BL_8U),
      OPERATION(DownSample422_BL_16S),
  });
}

}  // namespace
