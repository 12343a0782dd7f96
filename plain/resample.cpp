#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

// Whole groups of four source samples give two outputs; what is left of a group gives one.
int down_sampled_length(int len) { return len <= 0 ? 0 : len / 4 * 2 + (len % 4 != 0); }

template <class T>
pqx_Status down_sample_420(const T* a, const T* b, int len, T* out) {
  const int n = down_sampled_length(len);
  for (int k = 0; k < n; ++k) out[k] = T((a[2 * k] + a[2 * k + 1] + b[2 * k] + b[2 * k + 1] + (k % 2 ? 2 : 1)) >> 2);
  return PQX_OK;
}

template <class T>
pqx_Status down_sample_422(const T* s, int len, T* out) {
  const int n = down_sampled_length(len);
  for (int k = 0; k < n; ++k) out[k] = T((s[2 * k] + s[2 * k + 1] + k % 2) >> 1);
  return PQX_OK;
}

}  // namespace

pqx_Status DownSample420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, int len, uint8_t* pDst) {
  return down_sample_420(pSrc0, pSrc1, len, pDst);
}
pqx_Status DownSample420_BL_16S(const int16_t* pSrc0, const int16_t* pSrc1, int len, int16_t* pDst) {
  return down_sample_420(any_address(pSrc0), any_address(pSrc1), len, any_address(pDst));
}
pqx_Status DownSample422_BL_8U(const uint8_t* pSrc, int len, uint8_t* pDst) {
  return down_sample_422(pSrc, len, pDst);
}
pqx_Status DownSample422_BL_16S(const int16_t* pSrc, int len, int16_t* pDst) {
  return down_sample_422(any_address(pSrc), len, any_address(pDst));
}

}  // namespace plain
