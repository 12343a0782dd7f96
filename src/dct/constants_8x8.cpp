#include "dct/constants_8x8.h"

namespace pqx::dct {
namespace {

constexpr double C1 = 0.4903926402016152, C2 = 0.46193976625564337, C3 = 0.4157348061512726, C4 = 0.3535533905932738,
                 C5 = 0.27778511650980114, C6 = 0.19134171618254492, C7 = 0.09754516100806417;

constexpr Cosines cosines(double c4, double scale) {
  return {C1 * scale, C2 * scale, C3 * scale, c4 * scale, C5 * scale, C6 * scale, C7 * scale};
}

// What the fast row pass leaves on its results.
constexpr double row_scale[8] = {1, 8119 / C1, 5741 / C2, 8119 / C3, 1, 8119 / C3, 5741 / C2, 8119 / C1};

constexpr FourFactors unscaled(double c, int first_column) {
  const double* scale = row_scale + first_column;
  return {{float(c / scale[0]), float(c / scale[1]), float(c / scale[2]), float(c / scale[3])}};
}

constexpr ColumnCosines unscaled_cosines(int first_column) {
  FourFactors c4 = unscaled(C4, first_column);
  c4.lane[0] = 0;
  return {unscaled(C1, first_column), unscaled(C2, first_column), unscaled(C3, first_column), c4,
          unscaled(C5, first_column), unscaled(C6, first_column), unscaled(C7, first_column)};
}

}  // namespace

constinit const Cosines forward_cosines = cosines(C4, 1);
constinit const Cosines inverse_cosines = cosines(0.35355339, 1);
constinit const Cosines pixel_cosines = cosines(0.35355339, 1 << 24);

constinit const Factor half_root = 0.7071067811865476;

constinit const Result forward_results[8] = {{C4, C4, 1},  {C1, C7, 1},  {C2, C6, -1},  {C3, -C5, -1},
                                             {C4, -C4, 1}, {C5, C3, -1}, {C6, -C2, -1}, {C7, -C1, 1}};

constinit const ColumnCosines left_cosines = unscaled_cosines(0), right_cosines = unscaled_cosines(4);

constinit const Factor c4_high = 0x1.6ap-18, c4_low = 0x1.3cccfep-31;
constinit const Factor c7_over_c1 = C7 / C1, c5_over_c3 = C5 / C3;

}  // namespace pqx::dct
