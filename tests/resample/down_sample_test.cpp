#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::row, test::size;

namespace {

// Pairs of source samples that are read: one for each output, even where the last one reaches past the row.
int64_t outputs(int len) { return len <= 0 ? 0 : len / 4 * 2 + (len % 4 != 0); }

template <class T>
std::vector<test::Argument> squares() {
  return {row<T>(outputs, 2, 2), row<T>(outputs, 2, 2), test::length(), row<T>(outputs, 2)};
}
template <class T>
std::vector<test::Argument> pairs() {
  return {row<T>(outputs, 1, 2), test::length(), row<T>(outputs, 1)};
}

TEST_OPERATIONS(DownSample, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(DownSample420_BL_8U, squares<uint8_t>(), {{3, 0}, {3, 1}}),
      OPERATION(DownSample420_BL_16S, squares<int16_t>(), {{3, 0}, {3, 1}}),
      OPERATION(DownSample422_BL_8U, pairs<uint8_t>(), {{2, 0}}),
      OPERATION(DownSample422_BL_16S, pairs<int16_t>(), {{2, 0}}),
  });
}

}  // namespace
