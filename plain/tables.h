/// The conversion tables as plain arrays, each entry floor(A + c x + 0.5); every unit has its own, which code in a shared
/// object reaches faster.
#pragma once

#include <stdint.h>

#include <array>

namespace plain {

struct Line {
  double a, c;
  constexpr int at(int x) const {
    const double v = a + c * x + 0.5;
    return int(v) - (v < 0);  // no entry is a negative integer exactly
  }
};

constexpr std::array<int16_t, 256> half_units(Line line) {
  std::array<int16_t, 256> t{};
  for (int x = 0; x < 256; ++x) t[x] = int16_t(line.at(x));
  return t;
}

constexpr auto tYY = half_units({0, 2.328767}), tRV = half_units({0.006, 3.193182}), tGV = half_units({0, 1.626374}),
               tGU = half_units({271.272, -0.784}), tBU = half_units({0, 4.03681}),
               tRCr = half_units({-0.01, 2.804054}), tGCr = half_units({0.07, 1.428}),
               tGCb = half_units({270.922, -0.688312}), tBCb = half_units({0, 3.544});

/// Y in bits 0..9, Cb in 10..18, Cr in 21..29, chroma modulo 512.
constexpr std::array<uint32_t, 256> ycc_words(Line y, Line cb, Line cr) {
  std::array<uint32_t, 256> t{};
  for (int x = 0; x < 256; ++x)
    t[x] = uint32_t(y.at(x)) + (uint32_t(cb.at(x) + 512) % 512 << 10) + (uint32_t(cr.at(x) + 512) % 512 << 21);
  return t;
}

constexpr auto r2j = ycc_words({0, 0.298969}, {0.003, -0.16875}, {-0.25, 0.5}),
               g2j = ycc_words({0.011, 0.586957}, {128.006, -0.331288}, {128.009, -0.41875}),
               b2j = ycc_words({0, 0.11399}, {-0.25, 0.5}, {0, -0.081301});

/// R in bits 0..9, G in 10..19, B signed from bit 20 on.
constexpr std::array<int32_t, 256> rgb_words(Line r, Line g, Line b) {
  std::array<int32_t, 256> t{};
  for (int x = 0; x < 256; ++x) t[x] = r.at(x) + g.at(x) * 1024 + b.at(x) * 1048576;
  return t;
}

constexpr auto Yuv2rgb = rgb_words({32.997, 1.164474}, {0, 1.164384}, {0, 1.164384}),
               yUv2rgb = rgb_words({0, 0}, {135.632, -0.392}, {-276.988, 2.018405}),
               yuV2rgb = rgb_words({0.003, 1.596591}, {256, -0.813187}, {0, 0});

constexpr uint8_t clamp_to_byte(int v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v); }
/// The byte of a half-unit sum.
constexpr uint8_t clip(int s) { return clamp_to_byte(s >> 1); }

}  // namespace plain
