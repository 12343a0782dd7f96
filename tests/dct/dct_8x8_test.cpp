#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Ints, test::plane, test::step;

namespace {

int64_t eight(Ints) { return 8; }
int64_t block(Ints) { return 64; }

/// Rows of 8-byte runs, one for each row of the top-left quarter.
Argument quarter_block() {
  Argument argument = buffer<int16_t>(block);
  argument.spans = [](Ints) { return std::vector<test::Span>{{0, 8}, {16, 8}, {32, 8}, {48, 8}}; };
  return argument;
}
Argument dc() {
  return buffer<int16_t>([](Ints) { return 1; });
}

// In place, by whole rows and by odd bytes, upward and downward.
const std::vector<int> distances = {0, 1, 2, 8, 15, 16, 48, 64, 100, 112, -1, -2, -8, -17, -32, -64, -111, -127};

TEST(Dct8x8, MatchesTheTypedArithmeticOnAnyBlock) {
  const Argument samples = buffer<int16_t>(block), pixels = plane(1, eight, eight), out = plane(2, eight, eight);
  test::check({
      OPERATION(DCT8x8Fwd_16S, {samples, samples}, {{1, 0, distances}}),
      OPERATION(DCT8x8Fwd_12S_16S, {samples, samples}, {{1, 0, distances}}),
      OPERATION(DCT8x8Fwd_8U_16S, {pixels, step(eight), samples}),
      OPERATION(DCT8x8Inv_16S, {samples, samples}, {{1, 0, distances}}),
      OPERATION(DCT8x8Inv_16S_8U, {samples, out, step(eight)}),
      OPERATION(DCT8x8Inv_1Q_16S, {quarter_block(), samples}, {{1, 0, distances}}),
      OPERATION(DCT8x8Inv_1Q_16S_8U, {quarter_block(), out, step(eight)}),
      OPERATION(DCT8x8Inv_DC_16S, {dc(), samples}, {{1, 0, distances}}),
      OPERATION(DCT8x8Inv_DC_16S_8U, {dc(), out, step(eight)}),
  });
}

}  // namespace
