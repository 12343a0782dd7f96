#include "common/export.h"
#include "common/lanes.h"

pqx_Status pqx_Video_DCT2x2Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  const auto s = pqx::load_one<int64_t>(pSrc);
  const int a = int16_t(s), b = int16_t(s >> 16), c = int16_t(s >> 32), d = int16_t(s >> 48);
  const int out[] = {a + b + c + d, a - b + c - d, a + b - c - d, a - b - c + d};
  uint64_t packed = 0;
  for (int k = 3; k >= 0; --k) packed = packed << 16 | uint16_t(out[k] >> 1);
  pqx::store_one(pDst, packed);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT2x2Fwd_16S);
