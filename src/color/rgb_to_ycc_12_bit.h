/// Rows of 12-bit RGB to 12-bit YCC, in single precision.
#pragma once

#include <type_traits>

#include "color/load_pixels.h"
#include "common/lanes.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx {

template <class Float>
struct YccFloats {
  Float y, cb, cr;
};

/// Of one pixel, or of four whose samples come times 2^16, which the factors take back without rounding. Every product
/// and sum is rounded, from left to right.
template <class Float>
YccFloats<Float> ycc_12_bit(Float r, Float g, Float b) {
  constexpr bool four = std::is_same_v<Float, f32x4>;
  const auto c = [](float x) {
    if constexpr (four)
      return f32x4{_mm_set1_ps(x)};
    else
      return x;
  };
  const auto f = [c](float factor) { return c(four ? factor * 0x1p-16f : factor); };
  return {r * f(0.299f) + g * f(0.587f) + b * f(0.114f), r * f(-0.16874f) - g * f(0.33126f) + b * f(0.5f) + c(2048),
          r * f(0.5f) - g * f(0.41869f) - b * f(0.08131f) + c(2048)};
}

/// The even and the odd lanes as floats, times 2^16.
inline f32x4 even_floats(u16x8 a) { return floats(as<i32x4>(a) << 16); }
inline f32x4 odd_floats(u16x8 a) { return floats(as<i32x4>(a) & all_i32(-0x10000)); }

/// Truncates toward zero and keeps the low 16 bits.
inline i32x4 words(f32x4 even, f32x4 odd) {
  return (i32x4{_mm_cvttps_epi32(even.v)} & all_i32(0xffff)) | i32x4{_mm_cvttps_epi32(odd.v)} << 16;
}

/// Eight pixels of six bytes, which stand in memory as pairs of three-byte pixels do.
[[gnu::always_inline]] inline void eight_pixels_12_bit(const int16_t* src, int16_t* y, int16_t* cb, int16_t* cr) {
  const PixelPairs<3> p = load_pixel_pairs<3>(reinterpret_cast<const uint8_t*>(src));
  const u16x8 r = p.words[0], g = p.words[1], b = p.words[2];
  const YccFloats<f32x4> even = ycc_12_bit(even_floats(r), even_floats(g), even_floats(b));
  const YccFloats<f32x4> odd = ycc_12_bit(odd_floats(r), odd_floats(g), odd_floats(b));
  store(y, words(even.y, odd.y));
  store(cb, words(even.cb, odd.cb));
  store(cr, words(even.cr, odd.cr));
}

inline void one_pixel_12_bit(const int16_t* src, int16_t* y, int16_t* cb, int16_t* cr) {
  const YccFloats<float> pixel =
      ycc_12_bit(float(load_one<int16_t>(src)), float(load_one<int16_t>(src + 1)), float(load_one<int16_t>(src + 2)));
  store_one(y, int16_t(int(pixel.y)));
  store_one(cb, int16_t(int(pixel.cb)));
  store_one(cr, int16_t(int(pixel.cr)));
}

/// Converts one pixel at least.
inline pqx_Status rgb_to_ycc444_12_bit(const int16_t* src, int16_t* y, int16_t* cb, int16_t* cr, int len) {
  if (len < 8) {
    int i = 0;
    do one_pixel_12_bit(src + 3 * i, y + i, cb + i, cr + i);
    while (++i < len);
  } else {
    cover_in_one_loop<8>(len, [=](int64_t i, bool) { eight_pixels_12_bit(src + 3 * i, y + i, cb + i, cr + i); });
  }
  return PQX_OK;
}

}  // namespace pqx
