#include "common/export.h"
#include "common/lanes.h"

pqx_Status pqx_Video_DCT8x8Inv_DC_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep) {
  const pqx::i16x8 samples = pqx::all_i16((pqx::load_one<int16_t>(pSrc) + 4) >> 3);
  const pqx::u8x16 pixels = pack(samples, samples);
#pragma GCC unroll 8
  for (int64_t y = 0; y < 8; ++y) pqx::store_half(pDst + y * dstStep, pixels);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_DC_16S_8U);
