#include "color/reorder.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorARGB2ABGR_8U_I(uint8_t* pSrcDst, int len) {
  int64_t i = 0;
  for (; i + 4 <= len; i += 4) pqx::store(pSrcDst + 4 * i, pqx::exchanged(pqx::load<pqx::u8x16>(pSrcDst + 4 * i)));
  for (; i < len; ++i) {
    uint8_t* p = pSrcDst + 4 * i;
    const uint8_t second = p[1];
    p[1] = p[3];
    p[3] = second;
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_ColorARGB2ABGR_8U_I);
