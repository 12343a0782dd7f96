#include "common/export.h"
#include "mc/samples.h"

namespace pqx::mc {
namespace {

template <int n>
i32x4 difference(const uint8_t* a, const uint8_t* b) {
  return {_mm_sad_epu8(load_samples<n>(a).v, load_samples<n>(b).v)};
}
/// Of sums below 2^16. Unlike a plain addition this one never takes the port that the differences need.
i32x4 add_saturated(i32x4 a, i32x4 b) { return {_mm_adds_epu16(a.v, b.v)}; }
uint32_t total(i32x4 sum) { return uint32_t(_mm_cvtsi128_si32((sum + i32x4{_mm_unpackhi_epi64(sum.v, sum.v)}).v)); }

template <int size>
[[gnu::always_inline]] inline uint32_t square_difference(const uint8_t* a, const uint8_t* b, int64_t step) {
  i32x4 sum = {_mm_setzero_si128()};
  static_assert(size * 8 * 255 < 1 << 16, "each half of the sum holds eight columns");
  // Left alone, the compiler derives each row's address from the one before.
  int64_t two = 2 * step, three = 3 * step, four = 4 * step;
  asm("" : "+r"(two), "+r"(three), "+r"(four));
  const auto add = [&](int64_t row) { sum = add_saturated(sum, difference<size>(a + row, b + row)); };
#pragma GCC unroll 4
  for (int y = 0; y < size; y += 4, a += four, b += four) {
    add(0);
    add(step);
    add(two);
    add(three);
  }
  return total(sum);
}

/// Any number of rows, and of columns in whole eights.
[[gnu::noinline]] uint32_t any_difference(const uint8_t* a, const uint8_t* b, int step, int width, int rows) {
  const int64_t columns = (int64_t(width) + 7) & ~7;
  i32x4 sum = {_mm_setzero_si128()};
  if (columns == 16)
#pragma GCC unroll 4
    for (; rows > 0; --rows, a += step, b += step) sum = sum + difference<16>(a, b);
  else if (columns == 8)
#pragma GCC unroll 4
    for (; rows > 0; --rows, a += step, b += step) sum = sum + difference<8>(a, b);
  else if (columns > 0)
    for (; rows > 0; --rows, a += step, b += step)
      in_pieces<4>(columns, [&](auto n, int64_t x) { sum = sum + difference<n>(a + x, b + x); });
  return total(sum);
}

}  // namespace
}  // namespace pqx::mc

uint32_t pqx_Video_SumAbsDiff_8U(const uint8_t* pSrc1, const uint8_t* pSrc2, int step, int width, int height) {
  using namespace pqx::mc;
  if (width == height) {
    if (width == 16) [[likely]]
      return square_difference<16>(pSrc1, pSrc2, step);
    if (width == 8) return square_difference<8>(pSrc1, pSrc2, step);
  }
  return any_difference(pSrc1, pSrc2, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_SumAbsDiff_8U);
