#include "common/export.h"
#include "common/lanes.h"

pqx_Status pqx_Video_DCT8x8Inv_DC_16S(const int16_t* pSrc, int16_t* pDst) {
  const pqx::i16x8 samples = pqx::all_i16((pqx::load_one<int16_t>(pSrc) + 4) >> 3);
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) pqx::store(pDst + 8 * y, samples);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_DC_16S);
