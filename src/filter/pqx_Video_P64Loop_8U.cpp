#include "common/export.h"
#include "filter/loop_filter.h"

pqx_Status pqx_Video_P64Loop_8U(const uint8_t* pSrc, uint8_t* pDst, int step) {
  pqx::loop_filter(pSrc, step,
                   [=](int64_t r, pqx::i16x8 samples) { pqx::store_half(pDst + r * step, pack(samples, samples)); });
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_P64Loop_8U);
