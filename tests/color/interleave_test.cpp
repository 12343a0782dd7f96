#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Ints, test::row_lengths, test::size;

namespace {

// Samples for each of the pixels that argument `len` counts.
template <class T>
Argument samples(int each, int len) {
  return buffer<T>([=](Ints n) { return int64_t(each) * std::max(n[size_t(len)], 0); });
}

template <class T>
Argument plane(int len) {
  return samples<T>(1, len);
}

TEST_OPERATIONS(Interleave, MergesPlanesToPixels) {
  const Argument len = size(row_lengths());
  const auto a8 = [](int at) { return plane<uint8_t>(at); };
  const auto a16 = [](int at) { return plane<int16_t>(at); };
  test::check({
      OPERATION(ColorMerge2_8U, {a8(2), a8(2), len, samples<uint8_t>(2, 2)}),
      OPERATION(ColorMerge3_8U, {a8(3), a8(3), a8(3), len, samples<uint8_t>(3, 3)}),
      OPERATION(ColorMerge4_8U, {a8(4), a8(4), a8(4), a8(4), len, samples<uint8_t>(4, 4)}),
      OPERATION(ColorMerge2_16S, {a16(2), a16(2), len, samples<int16_t>(2, 2)}),
      OPERATION(ColorMerge3_16S, {a16(3), a16(3), a16(3), len, samples<int16_t>(3, 3)}),
      OPERATION(ColorMerge4_16S, {a16(4), a16(4), a16(4), a16(4), len, samples<int16_t>(4, 4)}),
  });
}

TEST_OPERATIONS(Interleave, SplitsPixelsToPlanes) {
  const Argument len = size(row_lengths());
  const auto a8 = [](int at) { return plane<uint8_t>(at); };
  const auto a16 = [](int at) { return plane<int16_t>(at); };
  test::check({
      OPERATION(ColorSplit2_8U, {samples<uint8_t>(2, 3), a8(3), a8(3), len}),
      OPERATION(ColorSplit3_8U, {samples<uint8_t>(3, 4), a8(4), a8(4), a8(4), len}),
      OPERATION(ColorSplit4_8U, {samples<uint8_t>(4, 5), a8(5), a8(5), a8(5), a8(5), len}),
      OPERATION(ColorSplit2_16S, {samples<int16_t>(2, 3), a16(3), a16(3), len}),
      OPERATION(ColorSplit3_16S, {samples<int16_t>(3, 4), a16(4), a16(4), a16(4), len}),
      OPERATION(ColorSplit4_16S, {samples<int16_t>(4, 5), a16(5), a16(5), a16(5), a16(5), len}),
  });
}

}  // namespace
