#include "common/export.h"
#include "mc/pieces.h"

namespace pqx::mc {
namespace {

template <int n>
struct Pieces {
  static i32x4 difference(const uint8_t* a, const uint8_t* b) {
    return {_mm_sad_epu8(load_piece<n>(a).v, load_piece<n>(b).v)};
  }
};
/// The first piece is aligned and needs no load of its own.
struct AlignedPieces {
  static i32x4 difference(const uint8_t* a, const uint8_t* b) {
    return {_mm_sad_epu8(load<u8x16>(b).v, *reinterpret_cast<const __m128i*>(a))};
  }
};

uint32_t total(i32x4 sum) { return uint32_t(_mm_cvtsi128_si32((sum + i32x4{_mm_unpackhi_epi64(sum.v, sum.v)}).v)); }

template <class Both>
[[gnu::always_inline]] inline uint32_t block_difference(const uint8_t* a, const uint8_t* b, int64_t step, int rows) {
  i32x4 sum = {_mm_setzero_si128()};
  in_fours(
      rows, [&](int k) { sum = sum + Both::difference(a + k * step, b + k * step); },
      [&] { a += 4 * step, b += 4 * step; });
  return total(sum);
}

/// Any number of rows, and of columns in whole eights.
[[gnu::noinline]] uint32_t any_difference(const uint8_t* a, const uint8_t* b, int step, int width, int rows) {
  const int64_t columns = (int64_t(width) + 7) & ~7;
  i32x4 sum = {_mm_setzero_si128()};
  if (columns == 16)
    for (; rows > 0; --rows, a += step, b += step) sum = sum + Pieces<16>::difference(a, b);
  else if (columns == 8)
    for (; rows > 0; --rows, a += step, b += step) sum = sum + Pieces<8>::difference(a, b);
  else if (columns > 0)
    for (; rows > 0; --rows, a += step, b += step)
      in_pieces(columns, [&](auto n, int64_t x) { sum = sum + Pieces<n>::difference(a + x, b + x); });
  return total(sum);
}

}  // namespace
}  // namespace pqx::mc

uint32_t pqx_Video_SumAbsDiff_8U(const uint8_t* pSrc1, const uint8_t* pSrc2, int step, int width, int height) {
  using namespace pqx::mc;
  if (comes_in_fours(height)) {
    if (width == 16) {
      const bool aligned = ((uintptr_t(pSrc1) | uintptr_t(step)) & 15) == 0;
      return aligned ? block_difference<AlignedPieces>(pSrc1, pSrc2, step, height)
                     : block_difference<Pieces<16>>(pSrc1, pSrc2, step, height);
    }
    if (width == 8) return block_difference<Pieces<8>>(pSrc1, pSrc2, step, height);
  }
  return any_difference(pSrc1, pSrc2, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_SumAbsDiff_8U);
