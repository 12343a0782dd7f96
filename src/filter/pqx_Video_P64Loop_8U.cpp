#include "common/export.h"
#include "filter/loop_filter.h"

pqx_Status pqx_Video_P64Loop_8U(const uint8_t* pSrc, uint8_t* pDst, int step) {
  const pqx::FilteredBlock block = pqx::loop_filtered(pSrc, step);
#pragma GCC unroll 4
  for (int r = 0; r < 8; r += 2, pDst += 2 * int64_t(step)) {
    const pqx::u8x16 two_rows = pack(block.row[r], block.row[r + 1]);
    store_half(pDst, two_rows);
    store_high_half(pDst + step, two_rows);
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_P64Loop_8U);
