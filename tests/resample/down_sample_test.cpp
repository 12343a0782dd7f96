#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::buffer, test::Ints, test::row_lengths, test::size;

namespace {

// Pairs of source samples that are read: one for each output, even where the last one reaches past the row.
int64_t outputs(int len) { return len <= 0 ? 0 : len / 4 * 2 + (len % 4 != 0); }

template <class T>
test::Argument source(int len) {
  return buffer<T>([=](Ints n) { return 2 * outputs(n[size_t(len)]); });
}

template <class T>
test::Argument halved(int len) {
  return buffer<T>([=](Ints n) { return outputs(n[size_t(len)]); });
}

// In place, behind the source's start, before it, and odd distances for 16-bit rows.
const std::vector<int> distances = {0, 1, 2, 7, 16, 33, 64, 200, -1, -2, -16, -35, -64, -300};

TEST_OPERATIONS(DownSample, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(DownSample420_BL_8U,
                {source<uint8_t>(2), source<uint8_t>(2), size(row_lengths()), halved<uint8_t>(2)},
                {{3, 0, distances}, {3, 1, distances}}),
      OPERATION(DownSample420_BL_16S,
                {source<int16_t>(2), source<int16_t>(2), size(row_lengths()), halved<int16_t>(2)},
                {{3, 0, distances}, {3, 1, distances}}),
      OPERATION(DownSample422_BL_8U, {source<uint8_t>(1), size(row_lengths()), halved<uint8_t>(1)},
                {{2, 0, distances}}),
      OPERATION(DownSample422_BL_16S, {source<int16_t>(1), size(row_lengths()), halved<int16_t>(1)},
                {{2, 0, distances}}),
  });
}

}  // namespace
