#pragma once

#include <bitset>
#include <functional>
#include <span>
#include <string>

#include "bits/bit_reader.h"
#include "h261/format.h"
#include "h261/macroblock.h"
#include "picture/rectangle.h"
#include "picture/yuv_picture.h"

namespace pqx_codec::h261 {

/// Whether a file that begins with these bytes is an H.261 stream whose first picture starts there.
bool is_stream(std::span<const uint8_t> bytes);

/// Decodes a stream, whose bytes must outlive it and its copies. They go on from where they were made.
class Decoder {
 public:
  using Report = std::function<void(const std::string& damage)>;

  explicit Decoder(std::span<const uint8_t> stream);
  /// Conceals damage: keeps the picture before wherever the stream is damaged, up to the next group of blocks.
  Decoder(std::span<const uint8_t> stream, Report report);

  /// Decodes the next picture; false at the end of the stream.
  bool next();

  const YuvPicture& picture() const { return picture_; }
  /// The macroblocks of the picture that may differ from the one before.
  const Rectangle& changed() const { return changed_; }
  /// Frames from the picture to the next, as the stream counts them: 1 if none was left out.
  int frames_to_next() const;

 private:
  void tolerate(const std::string& damage) const;
  bool find_start_code();
  bool read_picture_header();
  void decode_groups();
  void decode_group(int number);
  void decode_macroblock(int x, int y, const MacroblockType& type, int quant, Vector vector);
  void keep_others();
  void read_block(LevelBlock& block, bool intra);

  BitReader bits_;
  Report report_;  // none: damage is not concealed
  bool started_ = false;
  PictureFormat format_{};
  YuvPicture picture_, before_;
  std::bitset<PictureFormat{true}.macroblocks()> decoded_;  // macroblocks of the picture
  Rectangle changed_;
  int temporal_reference_ = 0;
  int pictures_ = 0;
};

}  // namespace pqx_codec::h261
