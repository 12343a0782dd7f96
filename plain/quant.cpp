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
template <class Float>
int32_t truncate_what_fits(Float x) {
  return int32_t(x);
}

template <int32_t to_int(float)>
pqx_Status quantize(const float* reciprocals, int16_t* coefficients) {
  const auto* state = any_address(reciprocals);
  auto* block = any_address(coefficients);
  for (int i = 0; i < 64; ++i) {
    const float sum = block[i] * state[i] + 32768.5f;
    block[i] = AnyAddress16(uint32_t(to_int(sum)) + 0x8000);
  }
  return PQX_OK;
}

template <int32_t to_int(double)>
pqx_Status dequantize(const double* steps, int16_t* levels) {
  const auto* state = any_address(steps);
  auto* block = any_address(levels);
  for (int i = 0; i < 64; ++i) block[i] = AnyAddress16(to_int(block[i] * state[i]));
  return PQX_OK;
}

}  // namespace

pqx_Status QuantizeInit_16S(const int16_t* pQMatrix, float* pState) {
  const auto* q = any_address(pQMatrix);
  auto* state = any_address(pState);
  for (int i = 0; i < 64; ++i) state[i] = AnyAddress<float>(1.0f / q[i]);
  return PQX_OK;
}

pqx_Status Quantize_16S_I(const float* pState, int16_t* pSrcDst) { return quantize<truncate>(pState, pSrcDst); }

pqx_Status DeQuantizeInit_16S(const int16_t* pQMatrix, double* pState) {
  const auto* q = any_address(pQMatrix);
  auto* state = any_address(pState);
  for (int i = 0; i < 64; ++i) state[i] = AnyAddress<double>(q[i]);
  return PQX_OK;
}

pqx_Status DeQuantize_16S_I(const double* pState, int16_t* pSrcDst) { return dequantize<truncate>(pState, pSrcDst); }

pqx_Status fitting::Quantize_16S_I(const float* pState, int16_t* pSrcDst) {
  return quantize<truncate_what_fits>(pState, pSrcDst);
}
pqx_Status fitting::DeQuantize_16S_I(const double* pState, int16_t* pSrcDst) {
  return dequantize<truncate_what_fits>(pState, pSrcDst);
}

}  // namespace plain
