/// Rows of 12-bit YCC to 12-bit RGB, in single precision.
#pragma once

#include <stdint.h>

#include "common/lanes.h"
#include "pqx_video.h"

namespace pqx {

// The scale of 2^20 puts twelve bits around zero at the top of 32: saturating to them is saturating to 32 bits.
inline int16_t twelve_bits(float v) {
  const int32_t saturated = v >= 0x1p31f ? INT32_MAX : v < -0x1p31f ? INT32_MIN : int32_t(v);
  return int16_t((saturated >> 20) + 2048);
}

inline float chroma_12_bit(int c) { return float(int32_t(uint32_t(c - 2048) << 20)); }

inline pqx_Status ycc444_to_rgb_12_bit(const int16_t* y, const int16_t* cb, const int16_t* cr, int16_t* dst,
                                       int len) {
  for (int i = 0; i < len; ++i, dst += 3) {
    const float yf = float(load_one<int16_t>(y + i)) * 1048576.0f - 2146959360.0f;
    const float b = chroma_12_bit(load_one<int16_t>(cb + i)), r = chroma_12_bit(load_one<int16_t>(cr + i));
    store_one(dst, twelve_bits(r * 1.402f + yf));
    store_one(dst + 1, twelve_bits(yf - b * 0.34414f - r * 0.71414f));
    store_one(dst + 2, twelve_bits(b * 1.772f + yf));
  }
  return PQX_OK;
}

}  // namespace pqx
