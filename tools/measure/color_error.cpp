/// How far the colour conversions lie from the real-valued formulas: every conversion on 2^24 inputs, all of them for
/// 8-bit samples, 256 levels of each channel for 12-bit ones. Prints sections for pages.py.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "pqx_video.h"

namespace {

struct Rule {
  const char *table, *field;
  double offset, slope;
  int (*entry)(int x);
};

constexpr int signed_field(uint32_t word, int shift) {
  return int(word >> shift & 511) - int(word >> shift & 256) * 2;
}

const Rule rules[] = {
    {"pqx_tRCr", "by Cr", -0.01, 2.804054, [](int x) -> int { return pqx_tRCr[x]; }},
    {"pqx_tGCr", "by Cr", 0.07, 1.428, [](int x) -> int { return pqx_tGCr[x]; }},
    {"pqx_tGCb", "by Cb", 270.922, -0.688312, [](int x) -> int { return pqx_tGCb[x]; }},
    {"pqx_tBCb", "by Cb", 0, 3.544, [](int x) -> int { return pqx_tBCb[x]; }},
    {"pqx_tYY", "by Y", 0, 2.328767, [](int x) -> int { return pqx_tYY[x]; }},
    {"pqx_tRV", "by V", 0.006, 3.193182, [](int x) -> int { return pqx_tRV[x]; }},
    {"pqx_tGV", "by V", 0, 1.626374, [](int x) -> int { return pqx_tGV[x]; }},
    {"pqx_tGU", "by U", 271.272, -0.784, [](int x) -> int { return pqx_tGU[x]; }},
    {"pqx_tBU", "by U", 0, 4.03681, [](int x) -> int { return pqx_tBU[x]; }},
    {"pqx_t_r2j", "Y", 0, 0.298969, [](int x) { return int(pqx_t_r2j[x] & 1023); }},
    {"pqx_t_r2j", "Cb", 0.003, -0.16875, [](int x) { return signed_field(pqx_t_r2j[x], 10); }},
    {"pqx_t_r2j", "Cr", -0.25, 0.5, [](int x) { return signed_field(pqx_t_r2j[x], 21); }},
    {"pqx_t_g2j", "Y", 0.011, 0.586957, [](int x) { return int(pqx_t_g2j[x] & 1023); }},
    {"pqx_t_g2j", "Cb", 128.006, -0.331288, [](int x) { return signed_field(pqx_t_g2j[x], 10); }},
    {"pqx_t_g2j", "Cr", 128.009, -0.41875, [](int x) { return signed_field(pqx_t_g2j[x], 21); }},
    {"pqx_t_b2j", "Y", 0, 0.11399, [](int x) { return int(pqx_t_b2j[x] & 1023); }},
    {"pqx_t_b2j", "Cb", -0.25, 0.5, [](int x) { return signed_field(pqx_t_b2j[x], 10); }},
    {"pqx_t_b2j", "Cr", 0, -0.081301, [](int x) { return signed_field(pqx_t_b2j[x], 21); }},
    {"pqx_t_Yuv2rgb", "R", 32.997, 1.164474, [](int x) { return pqx_t_Yuv2rgb[x] & 1023; }},
    {"pqx_t_Yuv2rgb", "G", 0, 1.164384, [](int x) { return pqx_t_Yuv2rgb[x] >> 10 & 1023; }},
    {"pqx_t_Yuv2rgb", "B", 0, 1.164384, [](int x) { return pqx_t_Yuv2rgb[x] >> 20; }},
    {"pqx_t_yUv2rgb", "G", 135.632, -0.392, [](int x) { return pqx_t_yUv2rgb[x] >> 10 & 1023; }},
    {"pqx_t_yUv2rgb", "B", -276.988, 2.018405, [](int x) { return pqx_t_yUv2rgb[x] >> 20; }},
    {"pqx_t_yuV2rgb", "R", 0.003, 1.596591, [](int x) { return pqx_t_yuV2rgb[x] & 1023; }},
    {"pqx_t_yuV2rgb", "G", 256, -0.813187, [](int x) { return pqx_t_yuV2rgb[x] >> 10 & 1023; }},
};

void print_rules() {
  std::puts("== color-rules\n| table | index or field | A | c |\n|---|---|--:|--:|");
  for (const Rule& rule : rules) {
    for (int x = 0; x < 256; ++x)
      if (rule.entry(x) != int(std::floor(rule.offset + rule.slope * x + 0.5))) {
        std::fprintf(stderr, "%s, %s: entry %d is %d\n", rule.table, rule.field, x, rule.entry(x));
        std::exit(1);
      }
    std::printf("| `%s` | %s | %g | %.8g |\n", rule.table, rule.field, rule.offset, rule.slope);
  }
}

/// One value of the first channel, all of the two others.
constexpr int levels = 256, pixels = levels * levels;
template <class T>
using Planes = std::array<std::vector<T>, 3>;
using Point = std::array<double, 3>;

// Rec. 601 luma; chroma and luma at the scale of samples in 0..255.
constexpr double kr = 0.299, kb = 0.114, kg = 1 - kr - kb;

Point ycc_from_rgb(const Point& rgb, double center) {
  const double y = kr * rgb[0] + kg * rgb[1] + kb * rgb[2];
  return {y, (rgb[2] - y) / (2 - 2 * kb) + center, (rgb[0] - y) / (2 - 2 * kr) + center};
}
Point rgb_from_ycc(double y, double cb, double cr) {
  const double r = y + (2 - 2 * kr) * cr, b = y + (2 - 2 * kb) * cb;
  return {r, (y - kr * r - kb * b) / kg, b};
}
Point to_ycc(const Point& p) { return ycc_from_rgb(p, 128); }
Point to_ycc_12(const Point& p) { return ycc_from_rgb(p, 2048); }
Point inks_to_ycc(const Point& p) { return to_ycc({255 - p[0], 255 - p[1], 255 - p[2]}); }
Point from_ycc(const Point& p) { return rgb_from_ycc(p[0], p[1] - 128, p[2] - 128); }
Point from_ycc_12(const Point& p) { return rgb_from_ycc(p[0], p[1] - 2048, p[2] - 2048); }
Point inks_from_ycc(const Point& p) {
  const Point rgb = from_ycc(p);
  return {255 - rgb[0], 255 - rgb[1], 255 - rgb[2]};
}
Point from_yuv(const Point& p) {
  return rgb_from_ycc((p[0] - 16) * 255 / 219, (p[1] - 128) * 255 / 224, (p[2] - 128) * 255 / 224);
}

using Bytes = Planes<uint8_t>;
using Words = Planes<int16_t>;

void rgb_to_ycc(const Bytes& in, Bytes& out) {
  static std::vector<uint8_t> rgb(3 * pixels);
  pqx_Video_ColorMerge3_8U(in[0].data(), in[1].data(), in[2].data(), pixels, rgb.data());
  pqx_Video_ColorRGB2YCC444_8U(rgb.data(), out[0].data(), out[1].data(), out[2].data(), pixels);
}
void cmyk_to_ycck(const Bytes& in, Bytes& out) {
  static std::vector<uint8_t> cmyk(4 * pixels), k(pixels);
  pqx_Video_ColorMerge4_8U(in[0].data(), in[1].data(), in[2].data(), k.data(), pixels, cmyk.data());
  pqx_Video_ColorCMYK2YCCK444_8U(cmyk.data(), out[0].data(), out[1].data(), out[2].data(), k.data(), pixels);
}
void ycc_to_rgb(const Bytes& in, Bytes& out) {
  static std::vector<uint8_t> rgb(3 * pixels);
  pqx_Video_ColorYCC2RGB444_8U(in[0].data(), in[1].data(), in[2].data(), rgb.data(), pixels);
  pqx_Video_ColorSplit3_8U(rgb.data(), out[0].data(), out[1].data(), out[2].data(), pixels);
}
void ycck_to_cmyk(const Bytes& in, Bytes& out) {
  static std::vector<uint8_t> cmyk(4 * pixels), k(pixels);
  pqx_Video_ColorYCCK2CMYK444_8U(in[0].data(), in[1].data(), in[2].data(), k.data(), cmyk.data(), pixels);
  pqx_Video_ColorSplit4_8U(cmyk.data(), out[0].data(), out[1].data(), out[2].data(), k.data(), pixels);
}
void yuv444_to_rgb(const Bytes& in, Bytes& out) {
  static std::vector<uint8_t> rgb(3 * pixels);
  pqx_Video_ColorYUV2RGB444_8U(in[0].data(), in[1].data(), in[2].data(), 0, rgb.data(), 0, pixels, 1);
  pqx_Video_ColorSplit3_8U(rgb.data(), out[0].data(), out[1].data(), out[2].data(), pixels);
}
// One chroma sample serves four pixels of the same luma, of which the first is looked at.
void yuv420_to_rgb(const Bytes& in, Bytes& out) {
  static std::vector<uint8_t> luma(2 * pixels), rgb(2 * 6 * pixels);
  std::fill(luma.begin(), luma.end(), in[0][0]);
  pqx_Video_ColorYUV2RGB420_8U(luma.data(), 0, in[1].data(), in[2].data(), 0, rgb.data(), 6 * pixels, 2 * pixels, 2);
  for (size_t i = 0; i < pixels; ++i)
    for (size_t k = 0; k < 3; ++k) out[k][i] = rgb[6 * i + k];
}
void rgb_to_ycc_12(const Words& in, Words& out) {
  static std::vector<int16_t> rgb(3 * pixels);
  pqx_Video_ColorMerge3_16S(in[0].data(), in[1].data(), in[2].data(), pixels, rgb.data());
  pqx_Video_ColorRGB2YCC444_16S(rgb.data(), out[0].data(), out[1].data(), out[2].data(), pixels);
}
void ycc_to_rgb_12(const Words& in, Words& out) {
  static std::vector<int16_t> rgb(3 * pixels);
  pqx_Video_ColorYCC2RGB444_16S(in[0].data(), in[1].data(), in[2].data(), rgb.data(), pixels);
  pqx_Video_ColorSplit3_16S(rgb.data(), out[0].data(), out[1].data(), out[2].data(), pixels);
}

constexpr int bins_per_unit = 16, widest = 2;

/// Of one component: result minus exact value, the latter clipped to the range of results.
struct Errors {
  double largest = 0, sum = 0, sum_of_sizes = 0;
  int64_t nearest = 0, inside = 0;
  std::array<int64_t, 2 * widest* bins_per_unit> bins = {};  // of the exact values that need no clip

  void add(int result, double exact, int highest) {
    const double error = result - std::clamp(exact, 0.0, double(highest));
    largest = std::max(largest, std::abs(error));
    sum += error;
    sum_of_sizes += std::abs(error);
    nearest += std::abs(error) < 0.5 + 1e-9;
    if (exact < 0 || exact > highest) return;
    ++inside;
    const int bin = int(std::floor((error + widest) * bins_per_unit));
    ++bins[size_t(std::clamp(bin, 0, int(bins.size()) - 1))];
  }
};

template <class T>
struct Conversion {
  const char* name;
  std::array<const char*, 3> components;
  Point (*exact)(const Point&);
  void (*run)(const Planes<T>&, Planes<T>&);
};

template <class T>
std::array<Errors, 3> measure(const Conversion<T>& conversion, int highest) {
  const auto level = [=](int i) { return T(i * highest / (levels - 1)); };
  std::array<Errors, 3> errors;
  Planes<T> in, out;
  for (auto* planes : {&in, &out})
    for (auto& plane : *planes) plane.resize(pixels);
  for (int i = 0; i < pixels; ++i) {
    in[1][size_t(i)] = level(i / levels);
    in[2][size_t(i)] = level(i % levels);
  }
  for (int first = 0; first < levels; ++first) {
    std::fill(in[0].begin(), in[0].end(), level(first));
    conversion.run(in, out);
    for (size_t i = 0; i < pixels; ++i) {
      const Point exact = conversion.exact({double(in[0][i]), double(in[1][i]), double(in[2][i])});
      for (size_t k = 0; k < 3; ++k) errors[k].add(out[k][i], exact[k], highest);
    }
  }
  return errors;
}

const Conversion<uint8_t> of_bytes[] = {
    {"RGB to YCC", {"Y", "Cb", "Cr"}, to_ycc, rgb_to_ycc},
    {"CMYK to YCCK", {"Y", "Cb", "Cr"}, inks_to_ycc, cmyk_to_ycck},
    {"YCC to RGB", {"R", "G", "B"}, from_ycc, ycc_to_rgb},
    {"YCCK to CMYK", {"C", "M", "Y"}, inks_from_ycc, ycck_to_cmyk},
    {"YUV 4:2:0 to RGB", {"R", "G", "B"}, from_yuv, yuv420_to_rgb},
    {"YUV 4:4:4 to RGB", {"R", "G", "B"}, from_yuv, yuv444_to_rgb},
};
const Conversion<int16_t> of_words[] = {
    {"RGB to YCC, 12 bits", {"Y", "Cb", "Cr"}, to_ycc_12, rgb_to_ycc_12},
    {"YCC to RGB, 12 bits", {"R", "G", "B"}, from_ycc_12, ycc_to_rgb_12},
};

struct Measured {
  const char *conversion, *component;
  Errors errors;
};

std::vector<Measured> measure_all() {
  std::vector<Measured> all;
  const auto take = [&](const auto& conversions, int highest) {
    for (const auto& conversion : conversions) {
      const auto errors = measure(conversion, highest);
      for (size_t k = 0; k < 3; ++k) all.push_back({conversion.name, conversion.components[k], errors[k]});
    }
  };
  take(of_bytes, 255);
  take(of_words, 4095);
  return all;
}

}  // namespace

int main() {
  print_rules();
  const std::vector<Measured> all = measure_all();
  const double inputs = double(levels) * pixels;
  std::puts("== color-error");
  std::puts("| conversion | component | largest | mean | mean size | nearest | in range |");
  std::puts("|---|---|--:|--:|--:|--:|--:|");
  for (const auto& [conversion, component, e] : all)
    std::printf("| %s | %s | %.3f | %+.3f | %.3f | %.1f %% | %.1f %% |\n", conversion, component, e.largest,
                e.sum / inputs, e.sum_of_sizes / inputs, 100 * double(e.nearest) / inputs,
                100 * double(e.inside) / inputs);
  std::puts("== color-bins");
  for (const auto& [conversion, component, e] : all) {
    std::printf("%s|%s", conversion, component);
    for (int64_t bin : e.bins) std::printf("|%.5f", double(bin) / double(e.inside));
    std::puts("");
  }
}
