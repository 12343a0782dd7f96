#pragma once

#include <span>
#include <string>
#include <vector>

#include "h261_bits.h"
#include "h261_macroblock.h"
#include "yuv_picture.h"

namespace pqxvideo::h261 {

bool is_stream(std::span<const uint8_t> bytes);

/// The macroblocks of a picture that may differ from the one before, in samples; empty if x0 = x1.
struct Changed {
  int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

class Decoder {
 public:
  /// @param conceal  keep the picture before wherever the stream is damaged, up to the next group of blocks
  explicit Decoder(std::span<const uint8_t> stream, bool conceal = false);

  /// Decodes the next picture; false at the end of the stream.
  bool next();

  const YuvPicture& picture() const { return picture_; }
  Changed changed() const { return changed_; }
  /// Numbers of frames since the picture before, as the stream counts them: 1 if none was left out.
  int frames_passed() const { return frames_passed_; }
  /// What was found damaged and concealed.
  const std::vector<std::string>& reports() const { return reports_; }

 private:
  bool find_start_code();
  void read_picture_header();
  void decode_groups();
  void decode_group(int number);
  void decode_macroblock(int x, int y, const MacroblockType& type, int quant, Vector vector);
  void read_block(LevelBlock& block, bool intra);

  BitReader bits_;
  bool conceal_;
  bool started_ = false;
  PictureFormat format_{};
  YuvPicture picture_, before_;
  Changed changed_;
  int temporal_reference_ = 0, frames_passed_ = 1;
  int pictures_ = 0;
  std::vector<std::string> reports_;
};

}  // namespace pqxvideo::h261
