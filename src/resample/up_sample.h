/// Doubles a row of chroma by repetition (nearest neighbour) or by weighing the nearer sample 3 and the other 1.
#pragma once

#include <utility>

#include "common/lanes.h"
#include "common/rows.h"
#include "pqx_video.h"

namespace pqx {

// The 8-bit operations look only at the lowest bit of a negative length.
inline int64_t repeated_samples(int len, uint8_t) { return len >= 0 ? len : len & 1; }
inline int64_t repeated_samples(int len, int16_t) { return len; }

template <class T>
pqx_Status up_sample_422_nn(const T* src, int len, T* dst) {
  const int64_t n = repeated_samples(len, T());
  for (int64_t j = 0; j < n; ++j) {
    const T sample = load_one<T>(src + j);
    store_one(dst + 2 * j, sample);
    store_one(dst + 2 * j + 1, sample);
  }
  return PQX_OK;
}

template <class T>
pqx_Status up_sample_420_nn(const T* src, int len, T* upper, T* lower) {
  const int64_t n = repeated_samples(len, T());
  for (int64_t j = 0; j < n; ++j) {
    const T sample = load_one<T>(src + j);
    for (T* dst : {upper, lower}) {
      store_one(dst + 2 * j, sample);
      store_one(dst + 2 * j + 1, sample);
    }
  }
  return PQX_OK;
}

template <class T>
pqx_Status up_sample_422_bl(const T* src, int len, T* dst) {
  const int64_t n = len < 3 ? 2 : len;
  const auto s = [src](int64_t j) -> int { return load_one<T>(src + j); };
  store_one(dst, T(s(0)));
  for (int64_t j = 0; j < n - 1; ++j) {
    store_one(dst + 2 * j + 1, T((3 * s(j) + s(j + 1) + 2) >> 2));
    store_one(dst + 2 * j + 2, T((s(j) + 3 * s(j + 1) + 1) >> 2));
  }
  store_one(dst + 2 * n - 1, T(s(n - 1)));
  return PQX_OK;
}

template <class T>
pqx_Status up_sample_420_bl(const T* prev, const T* cur, const T* next, int len, T* upper, T* lower) {
  const int64_t n = len < 3 ? 2 : len;
  for (const auto& [far, dst] : {std::pair{prev, upper}, std::pair{next, lower}}) {
    const auto u = [=, far = far](int64_t j) { return 3 * load_one<T>(cur + j) + load_one<T>(far + j); };
    store_one(dst, T((4 * u(0) + 8) >> 4));
    for (int64_t j = 0; j < n - 1; ++j) {
      store_one(dst + 2 * j + 1, T((3 * u(j) + u(j + 1) + 7) >> 4));
      store_one(dst + 2 * j + 2, T((u(j) + 3 * u(j + 1) + 8) >> 4));
    }
    store_one(dst + 2 * n - 1, T((4 * u(n - 1) + 7) >> 4));
  }
  return PQX_OK;
}

}  // namespace pqx
