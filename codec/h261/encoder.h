#pragma once

#include <cstdint>
#include <vector>

#include "bits/bit_writer.h"
#include "h261/format.h"
#include "h261/macroblock.h"
#include "picture/yuv_picture.h"

namespace pqx_codec::h261 {

struct EncoderOptions {
  int quant = 8;  // 1..31; coarser for a picture that would take more bits than the standard allows
  bool loop_filter = true;
  int search = 15;  // farthest vector, 0..15
};

class Encoder {
 public:
  /// For CIF and QCIF pictures only.
  Encoder(int width, int height, const EncoderOptions& options);

  /// Codes a picture as the next one of the stream and returns its bytes.
  std::vector<uint8_t> encode(const YuvPicture& picture);

  /// The last picture as a decoder sees it.
  const YuvPicture& reconstruction() const { return picture_; }

 private:
  struct Macroblock {
    MacroblockType type;
    Vector vector;
    int pattern = 0;
    int quant = 0;
    std::array<std::array<int16_t, 64>, 6> levels;
  };

  std::vector<uint8_t> encode_picture(const YuvPicture& source);
  void encode_group(const YuvPicture& source, int number);
  void choose_prediction(const YuvPicture& source, int x, int y, int macroblock, Macroblock& m);
  void transform(const YuvPicture& source, int x, int y, Macroblock& m);
  void reconstruct(int x, int y, const Macroblock& m);
  void put(uint32_t bits, int n) { bits_.cursor().put(bits, n); }
  void put(Code code) { put(code.bits, code.length); }
  void write(const Macroblock& m, int address_increment, Vector vector_before);
  void write_block(const std::array<int16_t, 64>& levels, bool intra);

  PictureFormat format_;
  EncoderOptions options_;
  std::array<std::array<float, 64>, max_quant + 1> quantizers_;
  YuvPicture picture_, before_, trial_;
  std::vector<int> predictions_since_intra_;
  int quant_ = 0;         // of the picture; a macroblock may need a coarser one
  size_t scan_end_ = 64;  // where the levels of its blocks end in scan order
  BitBuffer bits_;
  int pictures_ = 0;
};

}  // namespace pqx_codec::h261
