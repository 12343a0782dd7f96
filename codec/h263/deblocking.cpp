#include <algorithm>
#include <cstdlib>

#include "h263/format.h"
#include "h263/prediction.h"

namespace pqx_codec::h263 {
namespace {

/// Filters across eight places of an edge, between b and c of a, b, c, d.
/// @param across, along  from sample to sample, and from place to place
void filter(uint8_t* c, int across, int along, int strength) {
  for (int i = 0; i < 8; ++i, c += along) {
    uint8_t *const b = c - across, *const a = b - across, *const d = c + across;
    const int slope = (*a - 4 * *b + 4 * *c - *d) / 8, size = std::abs(slope);
    // Up to the strength the full correction; beyond it less and less, for it may be an edge of the picture.
    const int ramp = std::max(0, size - std::max(0, 2 * (size - strength)));
    const int outer = std::clamp((*a - *d) / 4, -(ramp / 2), ramp / 2);
    const int inner = slope < 0 ? -ramp : ramp;
    *a = uint8_t(*a - outer);
    *b = uint8_t(std::clamp(*b + inner, 0, 255));
    *c = uint8_t(std::clamp(*c - inner, 0, 255));
    *d = uint8_t(*d + outer);
  }
}

}  // namespace

void deblock(BorderedPlane& plane, const std::vector<uint8_t>& quants, int size_of_macroblock) {
  const int columns = plane.columns() / size_of_macroblock;
  const auto quant = [&](int x, int y) {
    return quants[size_t(y / size_of_macroblock * columns + x / size_of_macroblock)];
  };
  const auto strength = [&](uint8_t here, uint8_t before) { return int(filter_strength[here ? here : before]); };
  for (int y = 8; y < plane.rows(); y += 8)
    for (int x = 0; x < plane.columns(); x += 8)
      if (const int s = strength(quant(x, y), quant(x, y - 8))) filter(plane.at(x, y), plane.step(), 1, s);
  for (int y = 0; y < plane.rows(); y += 8)
    for (int x = 8; x < plane.columns(); x += 8)
      if (const int s = strength(quant(x, y), quant(x - 8, y))) filter(plane.at(x, y), 1, plane.step(), s);
}

}  // namespace pqx_codec::h263
