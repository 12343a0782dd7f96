#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "bits/bit_reader.h"
#include "mpeg/frame.h"
#include "mpeg/program_stream.h"
#include "picture/image.h"

namespace pqx_codec::mpeg {

struct DecoderOptions {
  using Report = std::function<void(const std::string& what)>;

  int64_t max_pixels = int64_t{1} << 24;  // more than MPEG-1 and the levels of MPEG-2 allow
  Report conceal = {};                    // told of damage, which is concealed; without it, damage throws Failure
  Report note = {};                       // told once of each kind of thing that is left out
};

/// Decodes MPEG-1 and MPEG-2 video, alone or in a program stream, that is handed over piece by piece. Holds four frames
/// and the bytes of one slice, however long the stream is. Copies share frames and go on from where they were made.
class Decoder {
 public:
  explicit Decoder(DecoderOptions options = {}) : options_(std::move(options)) {}

  /// Hands over the next bytes of the stream, or that there are no more.
  void push(std::span<const uint8_t> bytes);
  void finish();

  /// The next frame in the order of display, which stays as it is until the next call; null if more bytes are needed or
  /// all have been decoded.
  const Frame* next();

  /// Of the frame that next() has given.
  const Sequence& sequence() const { return sequence_; }

 private:
  struct Unit {
    uint8_t code;
    std::span<const uint8_t> bytes;
  };

  bool take_unit(Unit& unit);
  void handle(const Unit& unit);
  void handle_extension(BitReader bits);
  void start_sequence();
  void start_picture(BitReader bits);
  bool prepare_picture();
  void decode_slice(int row, BitReader bits);
  void finish_picture();
  void finish_frame();
  void finish_sequence();
  void fill_gaps();
  std::shared_ptr<Frame> new_frame();
  void tolerate(const std::string& damage) const;
  void note(const char* what);

  DecoderOptions options_;
  Demultiplexer demultiplexer_;
  std::vector<uint8_t> bytes_;      // from the last push on
  size_t begin_ = 0, scanned_ = 0;  // of the next unit; as far as start codes have been looked for
  bool finished_ = false, ended_ = false;

  Sequence sequence_, next_sequence_;
  bool has_sequence_ = false, has_next_sequence_ = false, wrong_sequence_ = false;
  Picture picture_;
  enum class State { none, header, complete_header, decoding } state_ = State::none;  // of the picture
  bool closed_group_ = false;
  int references_ = 0;  // decoded since pictures could last refer to none
  int pictures_ = 0;

  std::shared_ptr<Frame> older_, newer_, current_, shown_;
  bool newer_is_due_ = false;  // to be shown
  // Of the frame that is being decoded:
  Structure first_field_{};
  bool second_field_ = false, is_b_ = false;
  std::vector<bool> decoded_;  // macroblocks of the picture
  std::deque<std::shared_ptr<Frame>> due_;
  std::vector<std::shared_ptr<Frame>> frames_;
  std::vector<std::string> noted_;
};

}  // namespace pqx_codec::mpeg
