#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "h263/block.h"
#include "h263/header.h"
#include "h263/prediction.h"
#include "picture/yuv_picture.h"

namespace pqx_codec::h263 {

/// Whether a file that begins with these bytes is an H.263 stream whose first picture starts there.
bool is_stream(std::span<const uint8_t> bytes);

/// Decodes a stream that is handed over piece by piece. Holds the bytes of one picture and the pieces that it came in.
class Decoder {
 public:
  using Report = std::function<void(const std::string& damage)>;

  /// @param report  conceals damage and tells of it: what is missing stays as in the picture before
  explicit Decoder(Report report = {}) : report_(std::move(report)) {}

  /// Takes the next bytes of the stream.
  void push(std::span<const uint8_t> bytes);
  /// Tells that there are no more.
  void finish() { finished_ = true; }
  /// Decodes the next picture; false if it is not complete, or behind the last one.
  bool next();

  const YuvPicture& picture() const { return picture_; }
  /// Of the pictures: their rate, and the width of a sample to its height.
  FrameRate rate() const { return header_.rate; }
  FrameRate aspect() const { return header_.aspect; }

 private:
  struct Macroblock {
    enum class Kind { skipped, inter, intra } kind = Kind::skipped;
    int segment = -1;  // the group of blocks or slice that it is in
    int quant = 0;
    std::array<Vector, 4> vectors{};
  };
  struct Residual {
    int pattern = 0;  // 32 for the first block
    std::array<LevelBlock, 6> blocks;
  };

  std::span<const uint8_t> take_picture();
  void conceal(const Failure& failure) const;
  void decode_picture(std::span<const uint8_t> bytes);
  void begin_picture();
  void decode_segments(BitReader& bits);
  bool find_segment(BitReader& bits);
  void read_segment_header(BitReader& bits);
  int read_slice_address(BitReader& bits) const;
  void skip_to(int address);
  void decode_macroblock(BitReader& bits);
  bool read_type(BitReader& bits, int& type, int& chroma_pattern) const;
  void read_quant(BitReader& bits);
  void read_vectors(BitReader& bits, Macroblock& m, bool four) const;
  Vector predicted_vector(size_t block) const;
  void read_blocks(BitReader& bits, bool intra, Scan scan, Residual& residual);
  int chroma_quant(int quant) const;
  void finish_macroblock();
  void reconstruct(int address);
  void predict(int address);
  void predict_overlapped(int x, int y, const Macroblock& m);
  void finish_picture();

  const Macroblock* macroblock(int x, int y) const;
  bool in_segment(const Macroblock* m) const { return m && m->segment == segment_; }

  std::vector<uint8_t> bytes_;              // from the last push on
  size_t next_picture_ = 0, searched_ = 0;  // as far as start codes have been looked for
  bool finished_ = false;
  Report report_;  // none: damage is not concealed
  HeaderReader header_reader_;
  PictureHeader header_;
  bool started_ = false;
  int pictures_ = 0;
  Frame frame_, before_;
  HalfSampleGrid grid_;
  std::vector<IntraPrediction> intra_prediction_;  // of the components
  YuvPicture picture_;

  std::vector<Macroblock> macroblocks_;
  int address_ = 0, segment_ = 0, quant_ = 0;
  std::array<Residual, 2> residuals_;  // of macroblocks with even addresses, with odd ones
};

}  // namespace pqx_codec::h263
