/// What encoder and decoder do alike with a macroblock: predict it and add what was coded.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "bits/level_block.h"
#include "picture/yuv_picture.h"

namespace pqx_codec::h261 {

inline constexpr int max_quant = 31, max_level = 127;

struct Vector {
  int x = 0, y = 0;
  bool operator==(const Vector&) const = default;
};

/// A macroblock's place: six 8x8 blocks, four of luma in reading order, U, V.
struct BlockPlace {
  size_t plane;
  int x, y;
};
constexpr BlockPlace block_place(int block, int x, int y) {
  if (block < 4) return {0, x + block % 2 * 8, y + block / 2 * 8};
  return {size_t(block - 3), x / 2, y / 2};
}

/// Whether the prediction by a vector lies in the picture.
bool vector_fits(const YuvPicture& picture, int x, int y, Vector vector);

/// Predicts a macroblock from another picture of the same size.
void predict(const YuvPicture& from, YuvPicture& to, int x, int y, Vector vector, bool filter);

/// Sets a level L as the odd number next to 2 L, away from zero: its coefficient is a multiple of that.
inline void set_level(LevelBlock& block, unsigned position, int level) {
  const int doubled = 2 * level + (level < 0 ? -1 : 1);
  block.levels[position] = int16_t(doubled);
  block.positions |= position;
  block.bound = std::max(block.bound, std::abs(doubled));
}

/// Adds the residual of a predicted block to its prediction. The levels are used up.
void add_residual(LevelBlock& block, int quant, uint8_t* samples, int step);

/// Writes an intra block, whose DC is given as a coefficient, 1..2040. The levels are used up.
void write_intra(LevelBlock& block, int quant, uint8_t* samples, int step);

}  // namespace pqx_codec::h261
