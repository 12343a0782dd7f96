#include "dct/constants_8x8.h"

namespace pqx::dct {
namespace {

constexpr Cosines cosines(double c4, double scale) {
  return {0.4903926402016152 * scale,  0.46193976625564337 * scale, 0.4157348061512726 * scale, c4 * scale,
          0.27778511650980114 * scale, 0.19134171618254492 * scale, 0.09754516100806417 * scale};
}

}  // namespace

constinit const Cosines forward_cosines = cosines(0.3535533905932738, 1);
constinit const Cosines inverse_cosines = cosines(0.35355339, 1);
constinit const Cosines pixel_cosines = cosines(0.35355339, 1 << 24);

constinit const Factor half_root = 0.7071067811865476;

}  // namespace pqx::dct
