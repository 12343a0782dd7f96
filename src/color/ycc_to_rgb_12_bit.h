/// Rows of 12-bit YCC to 12-bit RGB, in single precision.
#pragma once

#include <stdint.h>

#include "color/store_pixels.h"
#include "common/lanes.h"
#include "common/rows.h"
#include "pqx_video.h"

namespace pqx::ycc {

template <class F>
F all(float x);
template <>
inline float all<float>(float x) {
  return x;
}
template <>
inline f32x4 all<f32x4>(float x) {
  return {_mm_set1_ps(x)};
}

/// Channels of 32 bits, of which the upper twelve count, less half the range: so saturating to twelve bits is
/// saturating to 32. F is one float or four.
template <class F>
struct WidePixel {
  F r, g, b;

  WidePixel(F y, F cb, F cr) {
    const F luma = y * all<F>(16) - all<F>(2146959360);
    r = cr * all<F>(1.402f) + luma;
    g = luma - cb * all<F>(0.34414f) - cr * all<F>(0.71414f);
    b = cb * all<F>(1.772f) + luma;
  }
};

inline int16_t twelve_bits(float v) {
  const int32_t saturated = v >= 0x1p31f ? INT32_MAX : v < -0x1p31f ? INT32_MIN : int32_t(v);
  return int16_t((saturated >> 20) + 2048);
}
inline i16x8 twelve_bits(f32x4 low, f32x4 high) {
  // Conversion makes the lowest integer of anything out of range, so only what is too high has to be kept from it.
  auto upper_bits = [](f32x4 v) {
    return i32x4{_mm_cvttps_epi32(_mm_min_ps(v.v, _mm_set1_ps(0x1.fffffep30f)))} >> 20;
  };
  return pack(upper_bits(low), upper_bits(high)) + all_i16(2048);
}

// Samples at 2^16, and chroma differences at 2^20, which the lowest twelve bits decide.
inline float wide_luma(int y) { return float(y * 65536); }
inline float wide_chroma(int c) { return float(int32_t(uint32_t(c - 2048) << 20)); }

/// Eight pixels, one in a pair of three-byte pixels.
[[gnu::always_inline]] inline Quads<3> pixels_of_12_bits(u16x8 y, u16x8 cb, u16x8 cr) {
  cb = (cb - all_u16(2048)) << 4;
  cr = (cr - all_u16(2048)) << 4;
  auto low = [](u16x8 x) { return f32x4{_mm_cvtepi32_ps(interleave_low(all_u16(0), x).v)}; };
  auto high = [](u16x8 x) { return f32x4{_mm_cvtepi32_ps(interleave_high(all_u16(0), x).v)}; };
  const WidePixel<f32x4> p(low(y), low(cb), low(cr)), q(high(y), high(cb), high(cr));
  return pairs_of_words(as_unsigned(twelve_bits(p.r, q.r)), as_unsigned(twelve_bits(p.g, q.g)),
                        as_unsigned(twelve_bits(p.b, q.b)));
}

inline pqx_Status convert_444_12_bit(const int16_t* y, const int16_t* cb, const int16_t* cr, int16_t* dst, int len) {
  auto bytes = [](const int16_t* p) { return reinterpret_cast<const uint8_t*>(p); };
  auto words_from = [=](const int16_t* p, int64_t i) { return load<u16x8>(bytes(p) + i); };
  auto ends_of = [=](const int16_t* p, int64_t n) { return as<u16x8>(load_ends(bytes(p), n)); };
  auto* const out = reinterpret_cast<uint8_t*>(dst);
  const int64_t n = 2 * int64_t(len);
  if (n < 6) {
    for (int i = 0; i < len; ++i, dst += 3) {
      const WidePixel<float> p(wide_luma(load_one<int16_t>(y + i)), wide_chroma(load_one<int16_t>(cb + i)),
                               wide_chroma(load_one<int16_t>(cr + i)));
      store_one(dst, twelve_bits(p.r));
      store_one(dst + 1, twelve_bits(p.g));
      store_one(dst + 2, twelve_bits(p.b));
    }
    return PQX_OK;
  }
  if (n < 16) {
    store_ends(out, pixels_of_12_bits(ends_of(y, n), ends_of(cb, n), ends_of(cr, n)), n);
    return PQX_OK;
  }
  by_sixteens(
      n, [=](int64_t i, bool last) __attribute__((always_inline)) {
        prefetch_ahead(bytes(y) + i, bytes(cb) + i, bytes(cr) + i, out + 3 * i);
        store_pixels(out + 3 * i, pixels_of_12_bits(words_from(y, i), words_from(cb, i), words_from(cr, i)), last);
      });
  return PQX_OK;
}

}  // namespace pqx::ycc
