/// What chroma adds to luma in full range YCC, without tables.
#pragma once

#include "color/store_pixels.h"
#include "color/table_rules.h"

namespace pqx::ycc {

// A channel in half units is twice the luma and a chroma term. Twice the luma is even, so halving their sum is halving
// the term alone, which is done once for each chroma sample.

/// The rules of one component as high products of one operand, scale * sample + bias.
struct ChromaForm {
  int scale, bias;
  int factor, constant;  // red from Cr, halved: product - constant; blue from Cb: sample + product - constant
  int green_factor, green_constant;  // green from Cr: product - constant; from Cb: constant - product

  constexpr int operand(int x) const { return scale * x + bias; }
  constexpr int product(int x) const { return operand(x) * factor >> 16; }
  constexpr int green_product(int x) const { return operand(x) * green_factor >> 16; }
};

struct ChromaForms {
  ChromaForm cr, cb;
  bool up;  // halves go up, as where the halved sum is taken from 255

  // The mean of two products rounds up. Taken from half an even sum of constants it rounds green down; from half an
  // odd sum, itself rounded up, it rounds green up.
  constexpr int green_constant() const { return (cr.green_constant + cb.green_constant + up) / 2; }

  constexpr bool follow_rules() const {
    auto halved = [this](int term) { return (term + up) >> 1; };
    return rule::agree([this](int x) { return cr.product(x) - cr.constant; },
                       [=](int x) { return halved(rule::red_from_cr(x) - rule::ycc_red_constant); }) &&
           rule::agree([this](int x) { return x + cb.product(x) - cb.constant; },
                       [=](int x) { return halved(rule::blue_from_cb(x) - rule::ycc_blue_constant); }) &&
           rule::agree([this](int x) { return cr.green_product(x) - cr.green_constant; }, rule::green_from_cr) &&
           rule::agree([this](int x) { return cb.green_constant - cb.green_product(x); }, rule::green_from_cb) &&
           (cr.green_constant + cb.green_constant) % 2 == up && cr.operand(255) < 65536 && cb.operand(255) < 65536;
  }
};

inline constexpr ChromaForms light{
    .cr = {2, 17175, 45941, 12219, 46795, 12263}, .cb = {1, 32256, 50591, 25127, 45110, 22473}, .up = false};
inline constexpr ChromaForms ink{
    .cr = {2, 16384, 45941, 11664, 46802, 11700}, .cb = {1, 2058, 50593, 1815, 45110, 1687}, .up = true};
static_assert(light.follow_rules() && ink.follow_rules());

/// Operands for eight of sixteen samples.
template <ChromaForm F>
struct Operand {
  static u16x8 even(u8x16 x) { return scaled(even_bytes(x), F.bias); }
  static u16x8 odd(u8x16 x) { return scaled(odd_bytes(x), F.bias); }
  // Where bytes become words by a byte of our choice, most of the bias comes with it.
  static u16x8 low(u8x16 x) { return scaled(as<u16x8>(interleave_low(x, all_u8(above))), rest); }
  static u16x8 high(u8x16 x) { return scaled(as<u16x8>(interleave_high(x, all_u8(above))), rest); }

 private:
  static constexpr int above = F.bias / (256 * F.scale), rest = F.bias % (256 * F.scale);

  static u16x8 scaled(u16x8 x, int bias) {
    static_assert(F.scale == 1 || F.scale == 2);
    if (F.scale == 2) x = x + x;
    return bias == 0 ? x : x + all_u16(bias);
  }
};

/// What to add to the luma of eight pixels.
template <ChromaForms F>
[[gnu::always_inline]] inline PixelWords chroma_terms(u16x8 cb, u16x8 cr) {
  auto product = [](u16x8 operand, int factor) { return high_product(operand, all_u16(factor)); };
  return {.r = as_signed(product(cr, F.cr.factor) - all_u16(F.cr.constant)),
          .g = as_signed(all_u16(F.green_constant()) -
                         mean_up(product(cr, F.cr.green_factor), product(cb, F.cb.green_factor))),
          .b = as_signed(product(cb, F.cb.factor) + (cb - all_u16(F.cb.bias + F.cb.constant)))};
}

}  // namespace pqx::ycc
