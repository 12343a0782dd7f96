/// What every entry of the conversion tables is: round(A + c x) of the sample x = 0..255. The slopes and offsets keep
/// every entry away from a half, so rounding is never in doubt. Tables in half units hold twice the 8-bit scale.
///
/// The entries are fixed, and each slope c is fitted to all 256 of its table: only an interval of 1e-4 to 6e-4 around it
/// gives them back. The matrix of BT.601 lies within these intervals for full range and for luma, the red one of 4:4:4
/// excepted. The chroma slopes of studio range are steeper than 255/224 times the matrix, by 0.035 % (red), 0.027 % (green
/// from V) and 0.06 % (U): 0.6 half units at the end of the range of blue, so the matrix itself would not give the
/// tables.
#pragma once

#include <stdint.h>

namespace pqx::rule {

constexpr int floor_to_int(double v) {
  const int toward_zero = int(v);
  return toward_zero > v ? toward_zero - 1 : toward_zero;
}

constexpr int term(double offset, double slope, int x) { return floor_to_int(offset + slope * x + 0.5); }

// Index of zero in pqx_tClip, which takes half units to bytes.
inline constexpr int clip_origin = 576;

// Studio range YUV to RGB, half units. Green from U carries the constant of the whole green equation.
constexpr int luma_from_y(int x) { return term(0, 2.328767, x); }
constexpr int red_from_v(int x) { return term(0.006, 3.193182, x); }
constexpr int green_from_v(int x) { return term(0, 1.626374, x); }
constexpr int green_from_u(int x) { return term(271.272, -0.784, x); }
constexpr int blue_from_u(int x) { return term(0, 4.03681, x); }
inline constexpr int yuv_red_constant = 446, yuv_blue_constant = 554;

// Full range YCC to RGB, half units. Green from Cb carries the constant of the whole green equation.
constexpr int red_from_cr(int x) { return term(-0.01, 2.804054, x); }
constexpr int green_from_cr(int x) { return term(0.07, 1.428, x); }
constexpr int green_from_cb(int x) { return term(270.922, -0.688312, x); }
constexpr int blue_from_cb(int x) { return term(0, 3.544, x); }
inline constexpr int ycc_red_constant = 359, ycc_blue_constant = 454;

// RGB to YCC. The offset of 128 stands in the green terms; the halves go down, so that no sum leaves 0..255.
struct Ycc {
  int y, cb, cr;
};
constexpr Ycc ycc_from_red(int x) { return {term(0, 0.298969, x), term(0.003, -0.16875, x), term(-0.25, 0.5, x)}; }
constexpr Ycc ycc_from_green(int x) {
  return {term(0.011, 0.586957, x), term(128.006, -0.331288, x), term(128.009, -0.41875, x)};
}
constexpr Ycc ycc_from_blue(int x) { return {term(0, 0.11399, x), term(-0.25, 0.5, x), term(0, -0.081301, x)}; }

// Studio range YUV 4:4:4 to RGB. The sum of a pixel holds red and green 256 too high, so that neither is negative.
struct Rgb {
  int r, g, b;
};
constexpr Rgb rgb_from_y(int x) { return {term(32.997, 1.164474, x), term(0, 1.164384, x), term(0, 1.164384, x)}; }
constexpr Rgb rgb_from_u(int x) { return {0, term(135.632, -0.392, x), term(-276.988, 2.018405, x)}; }
constexpr Rgb rgb_from_v(int x) { return {term(0.003, 1.596591, x), term(256, -0.813187, x), 0}; }

/// Whether a form of a rule gives the same for every sample.
constexpr bool agree(auto form, auto rule) {
  for (int x = 0; x < 256; ++x)
    if (form(x) != rule(x)) return false;
  return true;
}

}  // namespace pqx::rule
