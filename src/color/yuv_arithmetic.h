/// Studio range YUV to RGB by 16-bit products, without tables.
#pragma once

#include "color/store_pixels.h"
#include "color/table_form.h"
#include "common/lanes.h"

namespace pqx::yuv {

/// Channels of eight pixels, signed, modulo 2^16.
struct Rgb {
  u16x8 r, g, b;
};

/// Where several pixels share one U and one V.
namespace shared_chroma {

inline constexpr TableForm luma{0, 128 << 8, 21545, 10772}, red{2, 1113, 52317, 888}, green_v{2, 1113, 26645, 452},
    green_u{0, 89 << 8, 51379, 18133}, blue{3, 108, 33070, 54};
static_assert(luma.agrees_with([](int y) { return rule::luma_from_y(y) - 2 * y; }));
static_assert(red.agrees_with(rule::red_from_v) && blue.agrees_with(rule::blue_from_u) &&
              green_v.agrees_with(rule::green_from_v));
static_assert(green_u.agrees_with(minus(rule::green_from_u)));

// In half units luma is twice the sample and the product, less its excess. The mean of the product and a term rounds
// up; with terms that are higher by `above` than they should be, it rounds the halved sum down and is 2^15 too high,
// and so is the operand of luma that takes the place of the sample: together they are right.
inline constexpr int above = 65536 - 1 - luma.excess;

/// What the chroma of a pixel adds to luma.
inline Rgb terms(u16x8 u, u16x8 v) {
  const u16x8 v_operand = red.operand(v);
  return {red.product(v_operand) + all_u16(above - red.excess - rule::yuv_red_constant),
          all_u16(above + green_u.excess + green_v.excess) -
              (green_u.product(green_u.operand(u)) + green_v.product(v_operand)),
          blue.product(blue.operand(u)) + all_u16(above - blue.excess - rule::yuv_blue_constant)};
}

inline Rgb channels(u16x8 y_operand, const Rgb& terms) {
  const u16x8 part = luma.product(y_operand);
  return {y_operand + mean_up(part, terms.r), y_operand + mean_up(part, terms.g), y_operand + mean_up(part, terms.b)};
}

}  // namespace shared_chroma

/// Where every pixel has a U and a V of its own.
namespace own_chroma {

inline constexpr TableForm red_y{1, 128 << 8, 38157, 19045}, green_y{1, 128 << 8, 38155, 19077},
    red_v{0, 128 << 8, 39099, 19549}, green_v{0, 128 << 8, 53293, 26902}, green_u{2, 5102, 6421, 635},
    blue_u{2, 5102, 33070, 2851};
static_assert(red_y.agrees_with([](int y) { return rule::rgb_from_y(y).r; }));
static_assert(green_y.agrees_with([](int y) { return rule::rgb_from_y(y).g; }));
static_assert(green_y.agrees_with([](int y) { return rule::rgb_from_y(y).b; }));
static_assert(red_v.agrees_with([](int v) { return rule::rgb_from_v(v).r - v; }));
static_assert(green_v.agrees_with([](int v) { return -rule::rgb_from_v(v).g; }));
static_assert(green_u.agrees_with([](int u) { return -rule::rgb_from_u(u).g; }));
static_assert(blue_u.agrees_with([](int u) { return rule::rgb_from_u(u).b; }));

// The sums of red and of green are 256 too high by the rule; the operand of V takes the place of the sample.
inline Rgb channels(u16x8 y_operand, u16x8 u_operand, u16x8 v_operand) {
  const u16x8 green = green_y.product(y_operand);
  return {red_y.product(y_operand) + red_v.product(v_operand) + v_operand -
              all_u16(red_y.excess + red_v.excess + red_v.bias + 256),
          green - (green_u.product(u_operand) + green_v.product(v_operand)) -
              all_u16(green_y.excess - green_u.excess - green_v.excess + 256),
          green + blue_u.product(u_operand) - all_u16(green_y.excess + blue_u.excess)};
}

}  // namespace own_chroma

/// Sixteen pixels in two registers: of three bytes each, those at even places and those at odd ones; of four bytes,
/// the first eight and the last eight. So they are put together with the fewest instructions.
template <class T>
struct Halves {
  T first, last;
};

template <PixelLayout L>
Halves<u16x8> operands(const TableForm& form, u8x16 x) {
  if constexpr (L.bytes == 3) return {form.even(x), form.odd(x)};
  return {form.low(x), form.high(x)};
}

/// From values for pairs of pixels.
template <PixelLayout L>
Halves<Rgb> doubled(const Rgb& x) {
  if constexpr (L.bytes == 3) return {x, x};
  return {{interleave_low(x.r, x.r), interleave_low(x.g, x.g), interleave_low(x.b, x.b)},
          {interleave_high(x.r, x.r), interleave_high(x.g, x.g), interleave_high(x.b, x.b)}};
}

template <PixelLayout L>
Quads<L.bytes> put_together(const Rgb& first, const Rgb& last) {
  if constexpr (L.bytes == 3) {
    auto words = [](const Rgb& x) { return PixelWords{as_signed(x.r), as_signed(x.g), as_signed(x.b)}; };
    return quads_of<L>(words(first), words(last));
  } else {
    auto bytes = [](u16x8 a, u16x8 b) { return pack(as_signed(a), as_signed(b)); };
    return quads_of<L>(PixelBytes{bytes(first.r, last.r), bytes(first.g, last.g), bytes(first.b, last.b), all_u8(0)});
  }
}

}  // namespace pqx::yuv
