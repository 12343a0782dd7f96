#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

namespace {

TEST_OPERATIONS(Average, RoundsEachOfItsMeans) {
  const auto sizes = test::size({2, 4, 8, 16});
  test::check({
      OPERATION(Average2NoRnd_8U, .sizes = sizes),
      OPERATION(Average2Rnd_8U, .sizes = sizes),
      OPERATION(Average3NoRnd_8U, .sizes = sizes),
      OPERATION(Average3Rnd_8U, .sizes = sizes),
  });
}

}  // namespace
