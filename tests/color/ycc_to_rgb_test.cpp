#include <gtest/gtest.h>

#include <algorithm>

#include "operation.h"
#include "plain.h"

using test::buffer, test::Ints, test::row_lengths, test::size;

namespace {

using Length = int64_t (*)(int len);
int64_t whole(int len) { return std::max(len, 0); }
int64_t pairs(int len) { return std::max(len, 0) / 2; }
int64_t pairs_written(int len) { return 2 * pairs(len); }
int64_t pairs_at_least_one(int len) { return std::max(len / 2, 1); }
int64_t filtered_pairs_written(int len) { return 2 * pairs_at_least_one(len); }
int64_t interpolated(int len) { return len < 1 ? 0 : std::max(len / 2, 2); }

/// Samples or pixels of T, as many as the last argument, a length, asks for.
template <class T>
test::Argument row(Length length, int per_pixel = 1) {
  return buffer<T>([=](Ints n) { return per_pixel * length(n.back()); });
}
test::Argument bytes(Length length, int per_pixel = 1) { return row<uint8_t>(length, per_pixel); }

TEST(YccToRgb, MatchesTheFormulaOnEveryRow) {
  const auto len = size(row_lengths());
  const auto y = bytes(whole);
  const std::vector<test::Argument> rgb444 = {y, y, y, bytes(whole, 3), len},
                                    bgra444 = {y, y, y, bytes(whole, 4), len};
  auto nearest422 = [&](int pixel) {
    return std::vector{bytes(pairs_written), bytes(pairs), bytes(pairs), bytes(pairs_written, pixel), len};
  };
  auto filtered422 = [&](int pixel) {
    return std::vector{bytes(filtered_pairs_written), bytes(pairs_at_least_one), bytes(pairs_at_least_one),
                       bytes(filtered_pairs_written, pixel), len};
  };
  auto nearest420 = [&](int pixel) {
    const auto luma = bytes(pairs_written), chroma = bytes(pairs), dst = bytes(pairs_written, pixel);
    return std::vector{luma, luma, chroma, chroma, dst, dst, len};
  };
  auto filtered420 = [&](int pixel) {
    const auto c = bytes(interpolated), dst = bytes(whole, pixel);
    return std::vector{y, y, c, c, c, c, c, c, dst, dst, len};
  };
  const auto y16 = row<int16_t>(whole);
  test::check({
      OPERATION(ColorYCC2RGB444_8U, rgb444),
      OPERATION(ColorYCC2BGRA444_8U, bgra444),
      OPERATION(ColorYCC2ARGB444_8U, bgra444),
      OPERATION(ColorYCC2RGB422_NN_8U, nearest422(3)),
      OPERATION(ColorYCC2BGRA422_NN_8U, nearest422(4)),
      OPERATION(ColorYCC2RGB422_BL_8U, filtered422(3)),
      OPERATION(ColorYCC2BGRA422_BL_8U, filtered422(4)),
      OPERATION(ColorYCC2RGB420_NN_8U, nearest420(3)),
      OPERATION(ColorYCC2BGRA420_NN_8U, nearest420(4)),
      OPERATION(ColorYCC2RGB420_BL_8U, filtered420(3)),
      OPERATION(ColorYCC2BGRA420_BL_8U, filtered420(4)),
      OPERATION(ColorYCCK2CMYK444_8U, {y, y, y, y, bytes(whole, 4), len}),
      OPERATION(ColorYCC2RGB444_16S, {y16, y16, y16, row<int16_t>(whole, 3), len}),
  });
}

}  // namespace
