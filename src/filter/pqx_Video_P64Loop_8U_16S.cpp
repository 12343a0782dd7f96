#include "common/export.h"
#include "filter/loop_filter.h"

pqx_Status pqx_Video_P64Loop_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  pqx::loop_filter(pSrc, srcStep, [=](int64_t r, pqx::i16x8 samples) { pqx::store(pDst + 8 * r, samples); });
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_P64Loop_8U_16S);
