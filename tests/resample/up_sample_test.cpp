#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(UpSample, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(UpSample420_NN_8U),
      OPERATION(UpSample420_NN_16S),
      OPERATION(UpSample420_BL_8U),
      OPERATION(UpSample420_BL_16S),
      OPERATION(UpSample422_NN_8U),
      OPERATION(UpSample422_NN_16S),
      OPERATION(UpSample422_BL_8U),
      OPERATION(UpSample422_BL_16S),
  });
}

}  // namespace
