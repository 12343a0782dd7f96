#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "bits/bit_reader.h"
#include "bits/level_block.h"
#include "h263/format.h"

namespace pqx_codec::h263 {

struct BlockSyntax {
  bool advanced_intra = false;  // Annex I
  Scan scan = Scan::zigzag;
  bool long_levels = false;  // Annex T
  int quant = 0;
};

/// Reads coefficients from a place in scan order on into a block that has none there, and dequantizes them.
void read_coefficients(BitReader& bits, const BlockSyntax& syntax, unsigned first, LevelBlock& block);

/// Annex I: predicts the coefficients of intra blocks from those above and to the left.
class IntraPrediction {
 public:
  IntraPrediction(int columns, int rows) : columns_(columns), edges_(size_t(columns) * size_t(rows)) {}

  /// Completes the block in a column and row of blocks.
  void apply(Scan scan, bool has_above, bool has_left, int column, int row, LevelBlock& block);

 private:
  struct Edges {
    std::array<int16_t, 8> row, column;
  };

  int columns_;
  std::vector<Edges> edges_;
};

}  // namespace pqx_codec::h263
