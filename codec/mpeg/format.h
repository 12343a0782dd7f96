/// What the headers of MPEG-1 and MPEG-2 video say.
#pragma once

#include <array>
#include <cstdint>

#include "picture/y4m.h"

namespace pqx_codec::mpeg {

using Ratio = FrameRate;

/// Steps in natural order: of intra and other blocks of luma, then of chroma.
using QuantMatrix = std::array<uint8_t, 64>;
using QuantMatrices = std::array<QuantMatrix, 4>;

struct Sequence {
  int width = 0, height = 0;  // that are shown
  bool mpeg2 = false, progressive = true;
  bool chroma_422 = false;  // 4:2:0 otherwise
  Ratio rate;
  int aspect = 0;  // the code of it
  QuantMatrices matrices;

  /// Width to height of a sample; 0:0 if that is open.
  Ratio sample_aspect() const;
  int macroblock_columns() const { return (width + 15) / 16; }
  /// Each field of an interlaced picture has whole macroblocks.
  int macroblock_rows() const { return progressive ? (height + 15) / 16 : (height + 31) / 32 * 2; }
};

enum class PictureType { i = 1, p, b, d };
enum class Structure { top = 1, bottom, frame };

struct Picture {
  PictureType type = PictureType::i;
  Structure structure = Structure::frame;
  bool full_pel[2] = {};
  int f_code[2][2] = {};  // forward and backward, of x and y
  int dc_precision = 0;   // bits more than eight
  bool progressive = true, top_field_first = true, repeat_first_field = false;
  bool frame_only = true;  // no fields in a frame picture
  bool concealment_vectors = false, nonlinear_scale = false, intra_codes = false, alternate_scan = false;

  bool is_field() const { return structure != Structure::frame; }
  int parity() const { return structure == Structure::bottom; }
};

/// Natural positions of the coefficients in the order of alternate scan; for the other, see bits/zig_zag.h.
inline constexpr std::array<uint8_t, 64> alternate_positions{
    0,  8,  16, 24, 1,  9,  2,  10, 17, 25, 32, 40, 48, 56, 57, 49, 41, 33, 26, 18, 3,  11,
    4,  12, 19, 27, 34, 42, 50, 58, 35, 43, 51, 59, 20, 28, 5,  13, 6,  14, 21, 29, 36, 44,
    52, 60, 37, 45, 53, 61, 22, 30, 7,  15, 23, 31, 38, 46, 54, 62, 39, 47, 55, 63};

inline constexpr QuantMatrix default_intra_matrix{8,  16, 19, 22, 26, 27, 29, 34, 16, 16, 22, 24, 27, 29, 34, 37,
                                                  19, 22, 26, 27, 29, 34, 34, 38, 22, 22, 26, 27, 29, 34, 37, 40,
                                                  22, 26, 27, 29, 32, 35, 40, 48, 26, 27, 29, 32, 35, 40, 48, 58,
                                                  26, 27, 29, 34, 38, 46, 56, 69, 27, 29, 35, 38, 46, 56, 69, 83};

inline constexpr std::array<uint8_t, 32> nonlinear_scales{0,  1,  2,  3,  4,  5,  6,  7,  8,   10, 12,
                                                          14, 16, 18, 20, 22, 24, 28, 32, 36,  40, 44,
                                                          48, 52, 56, 64, 72, 80, 88, 96, 104, 112};

inline constexpr std::array<Ratio, 9> frame_rates{
    {{0, 0}, {24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {50, 1}, {60000, 1001}, {60, 1}}};

/// Height of a sample to its width in MPEG-1, in ten-thousandths.
inline constexpr std::array<int, 15> sample_heights{0,    10000, 6735,  7031,  7615,  8055,  8437, 8935,
                                                    9157, 9815,  10255, 10695, 10950, 11575, 12015};

}  // namespace pqx_codec::mpeg
