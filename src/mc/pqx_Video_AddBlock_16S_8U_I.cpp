#include "common/export.h"
#include "mc/overlap.h"
#include "mc/pieces.h"

pqx_Status pqx_Video_AddBlock_16S_8U_I(const int16_t* pSrc, uint8_t* pSrcDst, int step) {
  using namespace pqx::mc;
  const bool rows_apart = step <= -8 || step >= 8;
  if (rows_apart && disjoint(extent(pSrcDst, step, 8, 8), extent(pSrc, 16, 16, 8))) {
    // The saturation of the 16-bit sum cannot show: it is beyond that of the pixel.
    for (int64_t y = 0; y < 8; ++y) {
      uint8_t* row = pSrcDst + y * step;
      const auto samples = interleave_low(load_piece<8>(row), pqx::u8x16{_mm_setzero_si128()});
      const auto residuals = pqx::load<pqx::i16x8>(pSrc + 8 * y);
      const pqx::i16x8 sum = {_mm_adds_epi16(residuals.v, samples.v)};
      store_piece<8>(row, pack(sum, sum));
    }
    return PQX_OK;
  }
  for (int64_t y = 0; y < 8; ++y)
    for (int64_t x = 0; x < 8; ++x) {
      uint8_t& sample = pSrcDst[y * step + x];
      const int sum = pqx::load_one<int16_t>(pSrc + 8 * y + x) + sample;
      sample = uint8_t(sum < 0 ? 0 : sum > 255 ? 255 : sum);
    }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_AddBlock_16S_8U_I);
