#include "common/export.h"
#include "common/lanes.h"

pqx_Status pqx_Video_DCT2x2Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  using pqx::load_one, pqx::store_one;
  const int a = load_one<int16_t>(pSrc), b = load_one<int16_t>(pSrc + 1);
  const int c = load_one<int16_t>(pSrc + 2), d = load_one<int16_t>(pSrc + 3);
  store_one(pDst, int16_t((a + b + (c + d)) >> 1));
  store_one(pDst + 1, int16_t((a - b + (c - d)) >> 1));
  store_one(pDst + 2, int16_t((a + b - (c + d)) >> 1));
  store_one(pDst + 3, int16_t((a - b - (c - d)) >> 1));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT2x2Fwd_16S);
