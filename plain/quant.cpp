#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

// A value that is not a number or does not fit becomes INT32_MIN.
template <class Float>
int32_t truncate(Float x) {
  const bool fits = x > Float(-2147483649.0) && x < Float(2147483648.0);
  return int32_t(fits ? x : Float(INT32_MIN));
}

}  // namespace

pqx_Status QuantizeInit_16S(const int16_t* pQMatrix, float* pState) {
  const auto* q = any_address(pQMatrix);
  auto* state = any_address(pState);
  for (int i = 0; i < 64; ++i) state[i] = AnyAddress<float>(1.0f / q[i]);
  return PQX_OK;
}

pqx_Status Quantize_16S_I(const float* pState, int16_t* pSrcDst) {
  const auto* state = any_address(pState);
  auto* block = any_address(pSrcDst);
  for (int i = 0; i < 64; ++i) {
    const float sum = block[i] * state[i] + 32768.5f;
    block[i] = AnyAddress16(uint32_t(truncate(sum)) + 0x8000);
  }
  return PQX_OK;
}

pqx_Status DeQuantizeInit_16S(const int16_t* pQMatrix, double* pState) {
  const auto* q = any_address(pQMatrix);
  auto* state = any_address(pState);
  for (int i = 0; i < 64; ++i) state[i] = AnyAddress<double>(q[i]);
  return PQX_OK;
}

pqx_Status DeQuantize_16S_I(const double* pState, int16_t* pSrcDst) {
  const auto* state = any_address(pState);
  auto* block = any_address(pSrcDst);
  for (int i = 0; i < 64; ++i) block[i] = AnyAddress16(truncate(block[i] * state[i]));
  return PQX_OK;
}

}  // namespace plain
