#include "common/export.h"
#include "mc/overlap.h"
#include "mc/pieces.h"

namespace pqx::mc {
namespace {

// That the 16-bit sum saturates does not show: the pixel does so long before.
i16x8 sum(const int16_t* residuals, const uint8_t* samples) {
  const u8x16 wide = interleave_low(load_piece<8>(samples), u8x16{_mm_setzero_si128()});
  return {_mm_adds_epi16(load<i16x8>(residuals).v, wide.v)};
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
  const Extent picture = extent(pSrcDst, step, 8, 8);
  const bool rows_overlap = picture.bytes < 8 * 8;
  if (rows_overlap || !disjoint(picture, extent(pSrc, 16, 16, 8))) return add_in_order(pSrc, pSrcDst, step);
  uint8_t* upper = pSrcDst;
#pragma GCC unroll 4
  for (int y = 0; y < 8; y += 2, upper += 2 * int64_t(step)) {
    uint8_t* const lower = upper + step;
    const pqx::u8x16 two_rows = pack(sum(pSrc + 8 * y, upper), sum(pSrc + 8 * y + 8, lower));
    store_half(upper, two_rows);
    store_high_half(lower, two_rows);
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_AddBlock_16S_8U_I);
