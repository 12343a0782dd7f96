#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::Ints, test::plane, test::size, test::step;

namespace {

int64_t columns(Ints n) { return n[6] == 2 || n[6] == 4 || n[6] == 8 ? n[6] : 16; }
int64_t bands(Ints n) { return std::max(n[7] + 3, 0) / 4 * 4; }

TEST_OPERATIONS(Average, RoundsEachOfItsMeans) {
  const auto block = [](int step) { return plane(step, columns, bands); };
  const std::vector<Argument> arguments = {
      block(1),      step(columns),       block(3),        step(columns), block(5),
      step(columns), size({2, 4, 8, 16}), size({4, 8, 16})};
  const std::vector<test::Overlap> in_place = {{4, 0, test::in_place}, {4, 2, test::in_place}};
  test::check({
      OPERATION(Average2NoRnd_8U, arguments, in_place),
      OPERATION(Average2Rnd_8U, arguments, in_place),
      OPERATION(Average3NoRnd_8U, arguments, in_place),
      OPERATION(Average3Rnd_8U, arguments, in_place),
  });
}

}  // namespace
