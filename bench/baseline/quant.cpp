#include "any_address.h"
#include "baseline.h"

// For states whose results fit 32 bits, as those of the Init operations do: without a test, twice as fast.

namespace baseline {

using plain::any_address, plain::AnyAddress16;

pqx_Status Quantize_16S_I(const float* pState, int16_t* pSrcDst) {
  const auto* state = any_address(pState);
  auto* block = any_address(pSrcDst);
  for (int i = 0; i < 64; ++i) block[i] = AnyAddress16(uint32_t(int32_t(block[i] * state[i] + 32768.5f)) + 0x8000);
  return PQX_OK;
}

pqx_Status DeQuantize_16S_I(const double* pState, int16_t* pSrcDst) {
  const auto* state = any_address(pState);
  auto* block = any_address(pSrcDst);
  for (int i = 0; i < 64; ++i) block[i] = AnyAddress16(int32_t(block[i] * state[i]));
  return PQX_OK;
}

}  // namespace baseline
