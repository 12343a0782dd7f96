#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::buffer, test::Count, test::Ints, test::row_lengths, test::size;

namespace {

Count all(int bytes, int len) {
  return [=](Ints n) { return int64_t(bytes) * std::max(n[size_t(len)], 0); };
}
// Pixels of whole pairs.
Count paired(int bytes, int len) {
  return [=](Ints n) { return int64_t(bytes) * (std::max(n[size_t(len)], 0) / 2 * 2); };
}
Count pairs(int len) {
  return [=](Ints n) { return int64_t(std::max(n[size_t(len)], 0) / 2); };
}

std::vector<test::Argument> arguments_444(int bytes) {
  const auto plane = buffer<uint8_t>(all(1, 4));
  return {buffer<uint8_t>(all(bytes, 4)), plane, plane, plane, size(row_lengths())};
}
std::vector<test::Argument> arguments_422(int bytes) {
  const auto chroma = buffer<uint8_t>(pairs(4));
  return {buffer<uint8_t>(paired(bytes, 4)), buffer<uint8_t>(paired(1, 4)), chroma, chroma, size(row_lengths())};
}
std::vector<test::Argument> arguments_420(int bytes) {
  const auto src = buffer<uint8_t>(paired(bytes, 6)), luma = buffer<uint8_t>(paired(1, 6));
  const auto chroma = buffer<uint8_t>(pairs(6));
  return {src, src, luma, luma, chroma, chroma, size(row_lengths())};
}

TEST(RgbToYcc, MatchesTheFormulaOnEveryRow) {
  const auto ink_plane = buffer<uint8_t>(all(1, 5));
  test::check({
      OPERATION(ColorRGB2YCC444_8U, arguments_444(3)),
      OPERATION(ColorABGR2YCC444_8U, arguments_444(4)),
      OPERATION(ColorARGB2YCC444_8U, arguments_444(4)),
      OPERATION(ColorBGRA2YCC444_8U, arguments_444(4)),
      OPERATION(ColorRGB2YCC422_BL_8U, arguments_422(3)),
      OPERATION(ColorABGR2YCC422_BL_8U, arguments_422(4)),
      OPERATION(ColorARGB2YCC422_BL_8U, arguments_422(4)),
      OPERATION(ColorBGRA2YCC422_BL_8U, arguments_422(4)),
      OPERATION(ColorRGB2YCC420_BL_8U, arguments_420(3)),
      OPERATION(ColorABGR2YCC420_BL_8U, arguments_420(4)),
      OPERATION(ColorARGB2YCC420_BL_8U, arguments_420(4)),
      OPERATION(ColorBGRA2YCC420_BL_8U, arguments_420(4)),
      OPERATION(ColorCMYK2YCCK444_8U,
                {buffer<uint8_t>(all(4, 5)), ink_plane, ink_plane, ink_plane, ink_plane, size(row_lengths())}),
  });
}

// At least one pixel is converted whatever the length, and samples beyond 12 bits are rounded as all others.
TEST(RgbToYcc, SixteenBitRowsMatchTheFormula) {
  const auto count = [](int samples) { return [=](Ints n) { return int64_t(samples) * std::max(n[4], 1); }; };
  for (const auto& fill : {test::range<int16_t>(0, 4095), test::range<int16_t>(-32768, 32767)}) {
    const auto plane = buffer<int16_t>(count(1));
    test::check(
        OPERATION(ColorRGB2YCC444_16S, {buffer<int16_t>(count(3), fill), plane, plane, plane, size(row_lengths())}));
  }
}

}  // namespace
