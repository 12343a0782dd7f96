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

template <class T>
pqx_Status up_sample_422_nn(const T* s, int n, T* out) {
  for (int j = 0; j < n; ++j) {
    const int sample = s[j];
    out[2 * j] = T(sample);
    out[2 * j + 1] = T(sample);
  }
  return PQX_OK;
}

template <class T>
pqx_Status up_sample_420_nn(const T* s, int n, T* out0, T* out1) {
  for (int j = 0; j < n; ++j) {
    const int sample = s[j];
    out0[2 * j] = T(sample);
    out0[2 * j + 1] = T(sample);
    out1[2 * j] = T(sample);
    out1[2 * j + 1] = T(sample);
  }
  return PQX_OK;
}

// Bytes: a negative odd length counts as 1.
int byte_count(int len) { return len < 0 && len % 2 ? 1 : len; }

template <class T>
pqx_Status up_sample_422_bl(const T* s, int len, T* out) {
  const int n = len < 3 ? 2 : len;
  out[0] = s[0];
  out[1] = T((3 * s[0] + s[1] + 2) >> 2);
  for (int j = 1; j < n - 1; ++j) {
    out[2 * j] = T((3 * s[j] + s[j - 1] + 1) >> 2);
    out[2 * j + 1] = T((3 * s[j] + s[j + 1] + 2) >> 2);
  }
  out[2 * n - 2] = T((3 * s[n - 1] + s[n - 2] + 1) >> 2);
  out[2 * n - 1] = s[n - 1];
  return PQX_OK;
}

/// One of the two rows that lie between two source rows, nearer to `near`.
template <class T>
void up_sample_420_bl_row(const T* near, const T* far, int n, T* out) {
  const auto sum = [=](int j) { return 3 * near[j] + far[j]; };
  out[0] = T((4 * sum(0) + 8) >> 4);
  out[1] = T((3 * sum(0) + sum(1) + 7) >> 4);
  for (int j = 1; j < n - 1; ++j) {
    out[2 * j] = T((sum(j - 1) + 3 * sum(j) + 8) >> 4);
    out[2 * j + 1] = T((3 * sum(j) + sum(j + 1) + 7) >> 4);
  }
  out[2 * n - 2] = T((sum(n - 2) + 3 * sum(n - 1) + 8) >> 4);
  out[2 * n - 1] = T((4 * sum(n - 1) + 7) >> 4);
}

template <class T>
pqx_Status up_sample_420_bl(const T* prev, const T* cur, const T* next, int len, T* out0, T* out1) {
  const int n = len < 3 ? 2 : len;
  up_sample_420_bl_row(cur, prev, n, out0);
  up_sample_420_bl_row(cur, next, n, out1);
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

pqx_Status UpSample420_NN_8U(const uint8_t* pSrc, int len, uint8_t* pDst0, uint8_t* pDst1) {
  return up_sample_420_nn(pSrc, byte_count(len), pDst0, pDst1);
}
pqx_Status UpSample420_NN_16S(const int16_t* pSrc, int len, int16_t* pDst0, int16_t* pDst1) {
  return up_sample_420_nn(any_address(pSrc), len, any_address(pDst0), any_address(pDst1));
}
pqx_Status UpSample420_BL_8U(const uint8_t* pSrcPrev, const uint8_t* pSrcCur, const uint8_t* pSrcNext, int len,
                             uint8_t* pDst0, uint8_t* pDst1) {
  return up_sample_420_bl(pSrcPrev, pSrcCur, pSrcNext, len, pDst0, pDst1);
}
pqx_Status UpSample420_BL_16S(const int16_t* pSrcPrev, const int16_t* pSrcCur, const int16_t* pSrcNext, int len,
                              int16_t* pDst0, int16_t* pDst1) {
  return up_sample_420_bl(any_address(pSrcPrev), any_address(pSrcCur), any_address(pSrcNext), len, any_address(pDst0),
                          any_address(pDst1));
}
pqx_Status UpSample422_NN_8U(const uint8_t* pSrc, int len, uint8_t* pDst) {
  return up_sample_422_nn(pSrc, byte_count(len), pDst);
}
pqx_Status UpSample422_NN_16S(const int16_t* pSrc, int len, int16_t* pDst) {
  return up_sample_422_nn(any_address(pSrc), len, any_address(pDst));
}
pqx_Status UpSample422_BL_8U(const uint8_t* pSrc, int len, uint8_t* pDst) {
  return up_sample_422_bl(pSrc, len, pDst);
}
pqx_Status UpSample422_BL_16S(const int16_t* pSrc, int len, int16_t* pDst) {
  return up_sample_422_bl(any_address(pSrc), len, any_address(pDst));
}

}  // namespace plain
