/// Finds the constants by which the colour kernels do without the tables of src/color/table_rules.h: every table is
///
///     table(x) = n x + c + sign * ((scale x + bias) * factor >> 16)
///
/// a high product of 16-bit words, whose bias brings the fraction that makes the floor round as the table does. One
/// operand scale x + bias can serve all tables of a component; a bias that is a multiple of 256 at scale 1 comes for
/// free where bytes become words, as their upper half.
///
///     find_forms                         for every component: the operands that serve one table or all, and the forms
///                                        of one that serves all
///     find_forms COMPONENT SCALE BIAS    all forms of one operand, such as: find_forms Cr 2 17175
///
/// The sources repeat the forms they use beside an assertion that they agree with the tables.

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "color/table_rules.h"

namespace {

using namespace pqx::rule;

struct Table {
  const char* name;
  int (*rule)(int);
};

struct Component {
  const char* name;
  std::vector<Table> tables;
};

// Red in Cr and blue in Cb are plain halves and need no form. Chroma terms that are added to luma are halved before,
// for inks with the half going up.
const std::vector<Component> components = {
    {"R", {{"Y", [](int x) { return ycc_from_red(x).y; }}, {"Cb", [](int x) { return ycc_from_red(x).cb; }}}},
    {"G",
     {{"Y", [](int x) { return ycc_from_green(x).y; }},
      {"Cb", [](int x) { return ycc_from_green(x).cb; }},
      {"Cr", [](int x) { return ycc_from_green(x).cr; }}}},
    {"B", {{"Y", [](int x) { return ycc_from_blue(x).y; }}, {"Cr", [](int x) { return ycc_from_blue(x).cr; }}}},
    {"Cr",
     {{"red, halved", [](int x) { return (red_from_cr(x) - ycc_red_constant) >> 1; }}, {"green", green_from_cr}}},
    {"Cb",
     {{"blue, halved", [](int x) { return (blue_from_cb(x) - ycc_blue_constant) >> 1; }}, {"green", green_from_cb}}},
    {"Cr-ink",
     {{"red, halved up", [](int x) { return (red_from_cr(x) - ycc_red_constant + 1) >> 1; }},
      {"green", green_from_cr}}},
    {"Cb-ink",
     {{"blue, halved up", [](int x) { return (blue_from_cb(x) - ycc_blue_constant + 1) >> 1; }},
      {"green", green_from_cb}}},
    {"Y", {{"luma", luma_from_y}}},
    {"U", {{"green", green_from_u}, {"blue", blue_from_u}}},
    {"V", {{"red", red_from_v}, {"green", green_from_v}}},
    {"Y444",
     {{"red", [](int x) { return rgb_from_y(x).r; }}, {"green, blue", [](int x) { return rgb_from_y(x).g; }}}},
    {"U444", {{"green", [](int x) { return rgb_from_u(x).g; }}, {"blue", [](int x) { return rgb_from_u(x).b; }}}},
    {"V444", {{"red", [](int x) { return rgb_from_v(x).r; }}, {"green", [](int x) { return rgb_from_v(x).g; }}}},
};

/// A slope that fits a table with the right fraction f = bias * factor mod 65536: (f + low) mod 65536 < width.
struct Slope {
  int n, sign, factor;
  int64_t low, width;

  bool takes(int bias) const { return ((int64_t(bias) * factor + low) & 65535) < width; }
  int constant(const Table& table, int bias) const {
    return table.rule(0) - sign * int(int64_t(bias) * factor >> 16);
  }
};

std::vector<Slope> slopes_of(const Table& table, int scale) {
  std::vector<Slope> slopes;
  const double slope = (table.rule(255) - table.rule(0)) / 255.0;
  for (const int n : {0, int(std::floor(slope)), int(std::floor(slope)) + 1}) {
    const double rest = (slope - n) / scale;
    if (n < 0 || n % scale != 0 || std::abs(rest) >= 1 || (!slopes.empty() && n == slopes.back().n)) continue;
    const int sign = rest < 0 ? -1 : 1, middle = int(65536 * std::abs(rest)), reach = 300 / scale + 2;
    for (int factor = std::max(middle - reach, 1); factor <= std::min(middle + reach, 65535); ++factor) {
      // The floor is right for all x when these, and the fraction of the bias on top, lie within one unit.
      int64_t low = INT64_MAX, high = INT64_MIN;
      for (int x = 0; x < 256; ++x) {
        const int64_t error = int64_t(scale) * x * factor - 65536 * int64_t(sign * (table.rule(x) - n * x));
        low = std::min(low, error);
        high = std::max(high, error);
      }
      if (high - low < 65536) slopes.push_back({n, sign, factor, low, 65536 - (high - low)});
    }
  }
  return slopes;
}

using Slopes = std::vector<std::vector<Slope>>;  // by table

Slopes slopes_of(const Component& component, int scale) {
  Slopes all;
  for (const Table& table : component.tables) all.push_back(slopes_of(table, scale));
  return all;
}

bool serves_all(const Slopes& all, int bias) {
  for (const auto& slopes : all) {
    bool found = false;
    for (const Slope& slope : slopes) found = found || slope.takes(bias);
    if (!found) return false;
  }
  return true;
}

void print_forms(const Component& component, const Slopes& all, int scale, int bias) {
  std::printf("  a = %d x + %d\n", scale, bias);
  for (size_t k = 0; k < all.size(); ++k)
    for (const Slope& slope : all[k])
      if (slope.takes(bias))
        std::printf("    %-16s %d x %+6d %c (a * %d >> 16)\n", component.tables[k].name, slope.n,
                    slope.constant(component.tables[k], bias), slope.sign < 0 ? '-' : '+', slope.factor);
}

void print_unpacked_biases(const Component& component) {
  for (const Table& table : component.tables) {
    std::printf("  %s alone, scale 1, 256 times", table.name);
    const Slopes slopes = {slopes_of(table, 1)};
    for (int upper = 0; upper < 256; ++upper)
      if (serves_all(slopes, 256 * upper)) std::printf(" %d", upper);
    std::printf("\n");
  }
}

void survey(const Component& component) {
  std::printf("%s\n", component.name);
  print_unpacked_biases(component);
  bool forms_printed = false;
  for (const int scale : {1, 2, 4, 8}) {
    const Slopes all = slopes_of(component, scale);
    std::vector<int> biases;
    for (int bias = 0; bias + 255 * scale < 65536; ++bias)
      if (serves_all(all, bias)) biases.push_back(bias);
    if (biases.empty()) continue;
    std::printf("  all, scale %d, %zu biases", scale, biases.size());
    for (size_t i = 0; i < biases.size() && i < 12; ++i) std::printf(" %d", biases[i]);
    int preferred = biases[0];
    std::printf(biases.size() > 12 ? " ...\n" : "\n");
    for (const int bias : biases) {
      const bool nearer = preferred % 256 != 0 || std::abs(bias - 32768) < std::abs(preferred - 32768);
      if (bias % 256 == 0 && nearer) preferred = bias;
    }
    if (!forms_printed) print_forms(component, all, scale, preferred);
    forms_printed = true;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 1 && argc != 4) {
    std::fprintf(stderr, "usage: find_forms [COMPONENT SCALE BIAS]\n");
    return 2;
  }
  for (const Component& component : components) {
    if (argc == 1)
      survey(component);
    else if (std::strcmp(component.name, argv[1]) == 0)
      print_forms(component, slopes_of(component, std::atoi(argv[2])), std::atoi(argv[2]), std::atoi(argv[3]));
  }
  return 0;
}
