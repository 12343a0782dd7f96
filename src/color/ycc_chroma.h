/// What chroma adds to luma in full range YCC, without tables.
#pragma once

#include "color/store_pixels.h"
#include "color/table_form.h"

namespace pqx::ycc {

// A channel in half units is twice the luma and a chroma term. Twice the luma is even, so halving their sum is halving
// the term alone, which is done once for each chroma sample.

/// Forms of the chroma terms of red, green and blue, one operand for each component. That of blue is what the term
/// differs by from the sample; that of green from Cb is subtracted.
struct ChromaForms {
  TableForm red_cr, green_cr, green_cb, blue_cb;
  bool up;  // halves go up, as where the halved sum is taken from 255

  // The mean of two products rounds up. Taken from half an even sum of constants it rounds green down; from half an
  // odd sum, itself rounded up, it rounds green up.
  constexpr int green_constant() const { return (green_cr.excess + green_cb.excess + up) / 2; }

  constexpr bool agree_with_rules() const {
    auto halved = [this](int term) { return (term + up) >> 1; };
    return red_cr.bias == green_cr.bias && red_cr.shift == green_cr.shift && blue_cb.bias == green_cb.bias &&
           blue_cb.shift == 0 && green_cb.shift == 0 &&
           red_cr.agrees_with([=](int x) { return halved(rule::red_from_cr(x) - rule::ycc_red_constant); }) &&
           blue_cb.agrees_with([=](int x) { return halved(rule::blue_from_cb(x) - rule::ycc_blue_constant) - x; }) &&
           green_cr.agrees_with(rule::green_from_cr) && green_cb.agrees_with(minus(rule::green_from_cb)) &&
           (green_cr.excess + green_cb.excess) % 2 == up;
  }
};

inline constexpr ChromaForms light{.red_cr = {1, 17175, 45941, 12219},
                                   .green_cr = {1, 17175, 46795, 12263},
                                   .green_cb = {0, 32256, 45110, 22473},
                                   .blue_cb = {0, 32256, 50591, 25127},
                                   .up = false};
inline constexpr ChromaForms ink{.red_cr = {1, 16384, 45941, 11664},
                                 .green_cr = {1, 16384, 46802, 11700},
                                 .green_cb = {0, 2058, 45110, 1687},
                                 .blue_cb = {0, 2058, 50593, 1815},
                                 .up = true};
static_assert(light.agree_with_rules() && ink.agree_with_rules());

/// What to add to the luma of eight pixels, from the operands of their chroma.
[[gnu::always_inline]] inline PixelWords chroma_terms(const ChromaForms& of, u16x8 cb, u16x8 cr) {
  return {.r = as_signed(of.red_cr.product(cr) - all_u16(of.red_cr.excess)),
          .g = as_signed(all_u16(of.green_constant()) - mean_up(of.green_cr.product(cr), of.green_cb.product(cb))),
          .b = as_signed(of.blue_cb.product(cb) + (cb - all_u16(of.blue_cb.bias + of.blue_cb.excess)))};
}

}  // namespace pqx::ycc
