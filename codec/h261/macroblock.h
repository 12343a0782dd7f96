/// What encoder and decoder do alike with a macroblock: predict it and add what was coded.
#pragma once

#include <array>
#include <cstdint>

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

/// Levels of a block in natural order, odd numbers of twice the size: 2 L + 1, or 2 L - 1 if L is negative.
struct LevelBlock {
  alignas(16) std::array<int16_t, 64> doubled{};
  unsigned positions = 0;  // all positions of levels, or'ed
  int largest = 0;         // at least the magnitude of every doubled level
  int intra_dc = 0;        // 1..2040

  void set(unsigned position, int level) {
    doubled[position] = int16_t(2 * level + (level < 0 ? -1 : 1));
    positions |= position;
    largest = largest > 2 * level + 1 ? largest : 2 * level + 1;
    largest = largest > 1 - 2 * level ? largest : 1 - 2 * level;
  }
};

/// Adds a predicted block's residual to its prediction. The levels are used up.
void add_residual(LevelBlock& block, int quant, uint8_t* samples, int step);

/// Writes an intra block. The levels are used up.
void write_intra(LevelBlock& block, int quant, uint8_t* samples, int step);

}  // namespace pqx_codec::h261
