#include "common/export.h"
#include "common/overlap.h"
#include "mc/samples.h"

namespace pqx::mc {
namespace {

struct Anywhere {
  static __m128i residuals(const int16_t* p) { return load<i16x8>(p).v; }
};
/// Aligned residuals need no loads of their own.
struct Aligned {
  static __m128i residuals(const int16_t* p) { return *reinterpret_cast<const __m128i*>(p); }
};

// That the 16-bit sum saturates does not show: the pixel does so long before.
template <class Where>
i16x8 sum(const int16_t* residuals, const uint8_t* samples) {
  const u8x16 wide = interleave_low(load_samples<8>(samples), u8x16{_mm_setzero_si128()});
  return {_mm_adds_epi16(wide.v, Where::residuals(residuals))};
}

template <class Where>
[[gnu::always_inline]] inline pqx_Status add_by_rows(const int16_t* src, uint8_t* upper, int64_t step) {
#pragma GCC unroll 4
  for (int y = 0; y < 8; y += 2, upper += 2 * step) {
    uint8_t* const lower = upper + step;
    const u8x16 two_rows = pack(sum<Where>(src + 8 * y, upper), sum<Where>(src + 8 * y + 8, lower));
    store_half(upper, two_rows);
    store_high_half(lower, two_rows);
  }
  return PQX_OK;
}
[[gnu::noinline]] pqx_Status add_unaligned(const int16_t* src, uint8_t* dst, int64_t step) {
  return add_by_rows<Anywhere>(src, dst, step);
}

[[gnu::noinline]] pqx_Status add_in_order(const int16_t* src, uint8_t* dst, int64_t step) {
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) {
      const int sum = load_one<int16_t>(src + 8 * y + x) + dst[y * step + x];
      dst[y * step + x] = uint8_t(sum < 0 ? 0 : sum > 255 ? 255 : sum);
    }
  return PQX_OK;
}

}  // namespace
}  // namespace pqx::mc

pqx_Status pqx_Video_AddBlock_16S_8U_I(const int16_t* pSrc, uint8_t* pSrcDst, int step) {
  using namespace pqx::mc;
  // Rows that overlap each other, go upward or may touch the residuals keep the order of samples.
  if (step < 8 || !pqx::apart(pqx::distance(pSrc, pSrcDst), 128, 8 * int64_t(step)))
    return add_in_order(pSrc, pSrcDst, step);
  if (uintptr_t(pSrc) % 16 != 0) return add_unaligned(pSrc, pSrcDst, step);
  return add_by_rows<Aligned>(pSrc, pSrcDst, step);
}
PQX_SECOND_NAME(pqx_Video_AddBlock_16S_8U_I);
