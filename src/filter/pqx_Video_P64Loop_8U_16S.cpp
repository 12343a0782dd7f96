#include "common/export.h"
#include "filter/loop_filter.h"

pqx_Status pqx_Video_P64Loop_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  const pqx::FilteredBlock block = pqx::loop_filtered(pSrc, srcStep);
#pragma GCC unroll 8
  for (int r = 0; r < 8; ++r) store(pDst + 8 * r, block.row[r]);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_P64Loop_8U_16S);
