/// Rows of 12-bit YCC to 12-bit RGB, in single precision.
#pragma once

#include <stdint.h>

#include "color/store_pixels.h"
#include "common/lanes.h"
#include "common/walk.h"
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

  WidePixel(F luma, F cb, F cr) {
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
  // Saturated on both sides: conversion makes the lowest integer of what is too low, but raises an exception, too.
  auto upper_bits = [](f32x4 v) {
    const __m128 limited = _mm_max_ps(_mm_min_ps(v.v, _mm_set1_ps(0x1.fffffep30f)), _mm_set1_ps(-0x1p31f));
    return i32x4{_mm_cvttps_epi32(limited)} >> 20;
  };
  return pack(upper_bits(low), upper_bits(high)) + all_i16(2048);
}

// Luma at 2^20 less 2^31 - 2^19, and chroma differences at 2^20, which the lowest twelve bits decide.
inline float wide_luma(int y) { return float(y * 65536) * 16 - 2146959360; }
inline float wide_chroma(int c) { return float(int32_t(uint32_t(c - 2048) << 20)); }

/// Eight pixels, one in a pair of three-byte pixels.
[[gnu::always_inline]] inline Quads<3> pixels_of_12_bits(u16x8 y, u16x8 cb, u16x8 cr) {
  // A word below the upper half of a power of two adds itself to it, in units of the last place. Luma comes twice: its
  // constant is an odd number of units. Where doubling saturates, every channel does.
  constexpr float luma_unit = 0x1p19f, chroma_unit = 0x1p20f;
  constexpr float no_luma = (0x1p23f + 32768) * luma_unit + 2146959360, no_chroma = (0x1p23f + 2048) * chroma_unit;
  static_assert(double(no_luma) == (0x1p23 + 32768) * luma_unit + 2146959360);
  constexpr int above_luma = 0x5480, above_chroma = 0x5500;
  y = u16x8{_mm_adds_epi16(y.v, y.v)} ^ all_u16(0x8000);
  cb = cb & all_u16(4095);
  cr = cr & all_u16(4095);
  auto low = [](u16x8 x, int above, float none) {
    return f32x4{_mm_castsi128_ps(_mm_unpacklo_epi16(x.v, all_u16(above).v))} - all<f32x4>(none);
  };
  auto high = [](u16x8 x, int above, float none) {
    return f32x4{_mm_castsi128_ps(_mm_unpackhi_epi16(x.v, all_u16(above).v))} - all<f32x4>(none);
  };
  const WidePixel<f32x4> p(low(y, above_luma, no_luma), low(cb, above_chroma, no_chroma),
                           low(cr, above_chroma, no_chroma)),
      q(high(y, above_luma, no_luma), high(cb, above_chroma, no_chroma), high(cr, above_chroma, no_chroma));
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
  cover_in_one_loop<16>(
      n, [=](int64_t i, bool last) __attribute__((always_inline)) {
        prefetch_ahead(bytes(y) + i, bytes(cb) + i, bytes(cr) + i, out + 3 * i);
        store_pixels(out + 3 * i, pixels_of_12_bits(words_from(y, i), words_from(cb, i), words_from(cr, i)), last);
      });
  return PQX_OK;
}

}  // namespace pqx::ycc
