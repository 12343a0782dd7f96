#include "common/export.h"
#include "common/lanes.h"

pqx_Status pqx_Video_ColorARGB2ABGR_8U_I(uint8_t* pSrcDst, int len) {
  using pqx::u8x16, pqx::load, pqx::store;
  const u8x16 kept = {_mm_set1_epi32(0x00ff00ff)};
  int64_t i = 0;
  for (; i + 4 <= len; i += 4) {
    const auto pixels = load<u8x16>(pSrcDst + 4 * i);
    const u8x16 others = {_mm_andnot_si128(kept.v, pixels.v)};
    const u8x16 exchanged = {_mm_or_si128(_mm_slli_epi32(others.v, 16), _mm_srli_epi32(others.v, 16))};
    store(pSrcDst + 4 * i, (pixels & kept) | exchanged);
  }
  for (; i < len; ++i) {
    uint8_t* p = pSrcDst + 4 * i;
    const uint8_t second = p[1];
    p[1] = p[3];
    p[3] = second;
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_ColorARGB2ABGR_8U_I);
