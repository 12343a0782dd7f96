#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::row, test::size;

namespace {

// Source samples by length, of which every destination row receives two each.
int64_t bytes_repeated(int len) { return len >= 0 ? len : len & 1; }
int64_t interpolated(int len) { return std::max(len, 2); }

template <class T>
std::vector<Argument> nearest_422(int64_t (*samples)(int)) {
  return {row<T>(samples, 1), test::length(), row<T>(samples, 1, 2)};
}
template <class T>
std::vector<Argument> nearest_420(int64_t (*samples)(int)) {
  return {row<T>(samples, 1), test::length(), row<T>(samples, 1, 2), row<T>(samples, 1, 2)};
}
template <class T>
std::vector<Argument> bilinear_420() {
  const Argument in = row<T>(interpolated, 3), out = row<T>(interpolated, 3, 2);
  return {in, in, in, test::length(), out, out};
}

TEST_OPERATIONS(UpSample, MatchesTheFormulaOnEveryRow) {
  test::check({
      OPERATION(UpSample420_NN_8U, nearest_420<uint8_t>(bytes_repeated), {{2, 0}, {3, 0}}),
      OPERATION(UpSample420_NN_16S, nearest_420<int16_t>(test::whole), {{2, 0}, {3, 0}}),
      OPERATION(UpSample420_BL_8U, bilinear_420<uint8_t>()),
      OPERATION(UpSample420_BL_16S, bilinear_420<int16_t>()),
      OPERATION(UpSample422_NN_8U, nearest_422<uint8_t>(bytes_repeated), {{2, 0}}),
      OPERATION(UpSample422_NN_16S, nearest_422<int16_t>(test::whole), {{2, 0}}),
      OPERATION(UpSample422_BL_8U, nearest_422<uint8_t>(interpolated), {{2, 0}}),
      OPERATION(UpSample422_BL_16S, nearest_422<int16_t>(interpolated), {{2, 0}}),
  });
}

}  // namespace
