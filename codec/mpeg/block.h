#pragma once

#include <array>
#include <cstdint>

#include "bits/bit_reader.h"
#include "mpeg/format.h"

namespace pqx_codec::mpeg {

/// Coefficients in natural order.
struct Block {
  alignas(16) std::array<int16_t, 64> coefficients{};
  unsigned positions = 0;         // all positions of coefficients that were coded, or'ed
  bool last_was_changed = false;  // by mismatch control, which keeps the sum of coefficients odd
};

/// How the coefficients of a block are coded.
struct BlockCoding {
  bool mpeg2, intra, intra_codes;
  const uint8_t* scan;
  const uint8_t* steps;  // in natural order
  int scale;             // twice the quantizer of MPEG-1
};

/// Reads the coefficients of an intra block behind its DC, which is given, or of another block with its first one. The
/// block must be empty.
void read_coefficients(BitReader& bits, const BlockCoding& coding, int intra_dc, Block& block);

/// Writes an intra block or adds another to its prediction, and leaves it empty.
void write_intra(Block& block, uint8_t* samples, int step);
void add_residual(Block& block, uint8_t* samples, int step);

}  // namespace pqx_codec::mpeg
