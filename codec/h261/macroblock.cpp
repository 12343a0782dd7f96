#include "h261/macroblock.h"

#include <algorithm>
#include <array>

#include "pqx_video.h"

namespace pqx_codec::h261 {
namespace {

/// A coefficient is quant * (2 |L| + 1), less one if quant is even. A step a little below an even quant makes the
/// dequantizer, which truncates, take off that one: 1 <= 2 |L| + 1 <= 255, so a 256th of it is above 0 and below 1.
class Dequantizers {
 public:
  Dequantizers() {
    for (int quant = 1; quant <= max_quant; ++quant)
      states_[size_t(quant)].fill(quant % 2 ? quant : quant - 1.0 / 256);
  }
  const double* operator[](int quant) const { return states_[size_t(quant)].data(); }

 private:
  std::array<std::array<double, 64>, max_quant + 1> states_;
};

void dequantize(LevelBlock& block, int quant) {
  static const Dequantizers states;
  pqx_Video_DeQuantize_16S_I(states[quant], block.levels.data());
  if (block.bound * quant > 2047)
    for (int16_t& c : block.levels) c = std::clamp<int16_t>(c, -2048, 2047);
}

}  // namespace

bool vector_fits(const YuvPicture& picture, int x, int y, Vector v) {
  return x + v.x >= 0 && y + v.y >= 0 && x + v.x + 16 <= picture.width() && y + v.y + 16 <= picture.height();
}

void predict(const YuvPicture& from, YuvPicture& to, int x, int y, Vector vector, bool filter) {
  // Chroma vectors are halves, cut off toward zero.
  const Vector chroma{vector.x / 2, vector.y / 2};
  if (filter) {
    for (int block = 0; block < 6; ++block) {
      const BlockPlace p = block_place(block, x, y);
      const Vector v = p.plane ? chroma : vector;
      pqx_Video_P64Loop_8U(from.planes[p.plane].at(p.x + v.x, p.y + v.y), to.planes[p.plane].at(p.x, p.y),
                           to.planes[p.plane].columns);
    }
    return;
  }
  for (size_t k = 0; k < 3; ++k) {
    const int size = k ? 8 : 16, left = k ? x / 2 : x, top = k ? y / 2 : y;
    const Vector v = k ? chroma : vector;
    pqx_Video_CopyRef_8U(from.planes[k].at(left + v.x, top + v.y), to.planes[k].at(left, top), to.planes[k].columns,
                         size, size);
  }
}

void add_residual(LevelBlock& block, int quant, uint8_t* samples, int step) {
  alignas(16) int16_t residual[64];
  dequantize(block, quant);
  inverse_transform(block, residual);
  pqx_Video_AddBlock_16S_8U_I(residual, samples, step);
  block.clear();
}

void write_intra(LevelBlock& block, int quant, uint8_t* samples, int step) {
  const int16_t dc = block.levels[0];
  if (!block.is_dc_only()) dequantize(block, quant);
  block.levels[0] = dc;
  inverse_transform(block, samples, step);
  block.clear();
}

}  // namespace pqx_codec::h261
