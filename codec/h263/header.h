#pragma once

#include "bits/bit_reader.h"
#include "picture/y4m.h"

namespace pqx_codec::h263 {

/// What may hold on from one picture header to the next.
struct Modes {
  int width = 0, height = 0;
  FrameRate rate{}, aspect{12, 11};  // of a sample, width to height
  bool own_clock = false;
  bool extended_vectors = false, reversible_vectors = false;  // Annex D without PLUSPTYPE and with it
  bool overlapped = false;                                    // Annex F
  bool advanced_intra = false;                                // Annex I
  bool deblocking = false;                                    // Annex J
  bool slices = false;                                        // Annex K
  bool modified_quant = false;                                // Annex T
};

struct PictureHeader : Modes {
  bool predicted = false;
  int quant = 0;
  int rounding = 0;  // 1: half-sample predictions round exact halves down

  int columns() const { return (width + 15) / 16; }  // of macroblocks
  int rows() const { return (height + 15) / 16; }
  /// Rows of macroblocks in a group of blocks.
  int rows_of_group() const { return height <= 400 ? 1 : height <= 800 ? 2 : 4; }
  /// Bits that name the macroblock where a slice begins.
  int address_bits() const;
};

class HeaderReader {
 public:
  /// Reads on behind a picture's start code.
  PictureHeader read(BitReader& bits);

 private:
  PictureHeader read_plain(BitReader& bits, int format) const;
  PictureHeader read_plus(BitReader& bits);
  Modes read_modes(BitReader& bits, bool& custom_size) const;

  Modes modes_;  // the latest of PLUSPTYPE
};

}  // namespace pqx_codec::h263
