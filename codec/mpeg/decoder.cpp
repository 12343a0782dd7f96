#include "mpeg/decoder.h"

#include <algorithm>
#include <utility>

#include "mpeg/codes.h"
#include "mpeg/headers.h"
#include "mpeg/slice.h"
#include "mpeg/start_code.h"

namespace pqx_codec::mpeg {
namespace {

enum Code : uint8_t {
  picture_code = 0,
  last_slice_code = 0xAF,
  sequence_code = 0xB3,
  extension_code = 0xB5,
  sequence_end_code = 0xB7,
  group_code = 0xB8,
};
enum Extension { sequence_extension = 1, quant_matrix = 3, sequence_scalable = 5, picture_coding = 8 };

constexpr size_t start_code_size = 4;
// No buffer that the standards allow a decoder holds more of one picture.
constexpr size_t most_unit_bytes = size_t{4} << 20;
// Pictures with more rows number their slices by more bits.
constexpr int most_rows_of_short_numbers = 2800;

/// The field's rows once more for the other field.
void repeat_field(Frame& frame, Structure field) {
  const int from = field == Structure::bottom;
  for (const Frame::Plane& plane : frame.planes)
    for (int y = 0; y < plane.rows; y += 2) std::copy_n(plane.row(y + from), plane.columns, plane.row(y + 1 - from));
}

void paint_grey(Frame& frame, Rows rows, const Area& area) {
  const int step = rows == Rows::all ? 1 : 2, first = rows == Rows::bottom;
  for (const Frame::Plane& plane : frame.planes) {
    const bool chroma = &plane != frame.planes.data();
    const int across = chroma, down = chroma && frame.halved_rows;
    for (int y = area.y >> down; y < (area.y + area.rows) >> down; ++y)
      std::fill_n(plane.row(y * step + first) + (area.x >> across), 16 >> across, uint8_t{128});
  }
}

bool is_same_format(const Sequence& a, const Sequence& b) {
  return a.width == b.width && a.height == b.height && a.mpeg2 == b.mpeg2 && a.chroma_422 == b.chroma_422 &&
         a.macroblock_rows() == b.macroblock_rows();
}

}  // namespace

void Decoder::push(std::span<const uint8_t> bytes) {
  bytes_.erase(bytes_.begin(), bytes_.begin() + ptrdiff_t(begin_));
  scanned_ -= std::min(scanned_, begin_);
  begin_ = 0;
  demultiplexer_.push(bytes, bytes_);
}

void Decoder::finish() {
  demultiplexer_.finish(bytes_);
  finished_ = true;
}

/// The next start code with what follows, as far as the next one. False if that is not there yet.
bool Decoder::take_unit(Unit& unit) {
  const std::span<const uint8_t> all(bytes_);
  begin_ = find_start_code(all, begin_);
  if (all.size() - begin_ < start_code_size) {
    // It may have begun.
    begin_ -= begin_ == all.size() ? std::min<size_t>(begin_, 2) : 0;
    return false;
  }
  const size_t first = begin_ + start_code_size, end = find_start_code(all, std::max(scanned_, first));
  if (end == all.size() && !finished_) {
    scanned_ = end - 2;
    if (end - begin_ <= most_unit_bytes) return false;
    begin_ = scanned_;
    tolerate("there is no start code for too long");
    return false;
  }
  unit = {all[first - 1], all.subspan(first, end - first)};
  begin_ = scanned_ = end;
  return true;
}

const Frame* Decoder::next() {
  shown_.reset();
  for (;;) {
    if (!due_.empty()) {
      shown_ = std::move(due_.front());
      due_.pop_front();
      return shown_.get();
    }
    try {
      if (Unit unit; take_unit(unit)) {
        handle(unit);
      } else {
        if (!finished_ || std::exchange(ended_, true)) return nullptr;
        if (!has_sequence_ && !has_next_sequence_) throw Failure("not an MPEG video stream");
        finish_sequence();
      }
    } catch (const Failure& failure) {
      if (!options_.conceal || !has_sequence_) throw;
      options_.conceal("picture " + std::to_string(pictures_) + ": " + failure.what());
    }
  }
}

/// Reports damage that can be gone on from.
void Decoder::tolerate(const std::string& damage) const {
  if (!options_.conceal) damaged(damage);
  options_.conceal("picture " + std::to_string(pictures_) + ": " + damage);
}

void Decoder::note(const char* what) {
  if (std::ranges::find(noted_, what) != noted_.end()) return;
  noted_.push_back(what);
  if (options_.note) options_.note(what);
}

void Decoder::handle(const Unit& unit) {
  BitReader bits(unit.bytes);
  // Behind the header of a sequence, an extension tells MPEG-2 from MPEG-1.
  if (has_next_sequence_ &&
      !(unit.code == extension_code && !unit.bytes.empty() && unit.bytes[0] >> 4 == sequence_extension))
    start_sequence();
  if (unit.code == picture_code) {
    start_picture(bits);
  } else if (unit.code <= last_slice_code) {
    decode_slice(unit.code - 1, bits);
  } else if (unit.code == extension_code) {
    handle_extension(bits);
  } else if (unit.code == sequence_code) {
    finish_picture();
    next_sequence_ = read_sequence_header(bits);
    has_next_sequence_ = true;
  } else if (unit.code == group_code) {
    finish_picture();
    bits.read(25);  // time
    closed_group_ = bits.read(1);
    // Of a broken link, the pictures that the next ones would refer to are gone.
    if (bits.read(1) && !closed_group_) references_ = 0;
  } else if (unit.code == sequence_end_code) {
    finish_sequence();
  }
}

void Decoder::handle_extension(BitReader bits) {
  switch (bits.read(4)) {
    case sequence_extension:
      if (!has_next_sequence_) break;
      read_sequence_extension(bits, next_sequence_);
      start_sequence();
      break;
    case quant_matrix:
      if (has_sequence_) read_quant_matrix_extension(bits, sequence_.matrices);
      break;
    case sequence_scalable:
      throw Failure("not supported: scalable MPEG-2");
    case picture_coding:
      if (state_ != State::header) break;
      state_ = State::none;
      read_picture_coding_extension(bits, picture_);
      state_ = State::complete_header;
      break;
  }
}

void Decoder::start_sequence() {
  has_next_sequence_ = false;
  const Sequence& s = next_sequence_;
  if (s.width == 0 || s.height == 0) damaged("pictures without samples");
  if (int64_t{s.width} * s.height > options_.max_pixels)
    throw Failure("picture too large: " + std::to_string(s.width) + " x " + std::to_string(s.height) + " pixels");
  wrong_sequence_ = has_sequence_ && !is_same_format(s, sequence_);
  if (wrong_sequence_) throw Failure("not supported: MPEG stream that changes the size or kind of its pictures");
  sequence_ = s;
  has_sequence_ = true;
}

void Decoder::start_picture(BitReader bits) {
  finish_picture();
  if (!has_sequence_ || wrong_sequence_) return note("what comes before a sequence header is left out");
  picture_ = read_picture_header(bits);
  state_ = sequence_.mpeg2 ? State::header : State::complete_header;
}

/// False if the picture is to be left out.
bool Decoder::prepare_picture() {
  const bool is_b = picture_.type == PictureType::b;
  if (picture_.type == PictureType::d) return note("D pictures are left out"), false;
  if (picture_.is_field() && sequence_.progressive) damaged("a field in a stream of frames");
  second_field_ = false;
  if (current_) {
    second_field_ = picture_.is_field() && picture_.structure != first_field_ && is_b == is_b_;
    if (!second_field_) {
      tolerate("a field is missing");
      finish_frame();
    }
  }
  if (!second_field_) {
    const int needed = picture_.type == PictureType::i ? 0 : is_b && !closed_group_ ? 2 : 1;
    if (references_ < needed) return note("pictures that refer to missing ones are left out"), false;
    if (picture_.repeat_first_field) note("repeated fields are left out");
    current_ = new_frame();
    current_->progressive = picture_.progressive;
    current_->top_field_first = picture_.is_field() ? !picture_.parity() : picture_.top_field_first;
    first_field_ = picture_.structure;
    is_b_ = is_b;
  }
  decoded_.assign(
      size_t(sequence_.macroblock_columns()) * size_t(sequence_.macroblock_rows()) / (picture_.is_field() ? 2 : 1),
      false);
  return true;
}

void Decoder::decode_slice(int row, BitReader bits) {
  if (state_ == State::header || state_ == State::complete_header) {
    const bool complete = std::exchange(state_, State::none) == State::complete_header;
    if (!complete) damaged("a picture without its extension");
    if (prepare_picture()) state_ = State::decoding;
  }
  if (state_ != State::decoding) return;
  if (sequence_.height > most_rows_of_short_numbers) row += int(bits.read(3)) << 7;
  PictureDecoding decoding{.sequence = sequence_, .picture = picture_, .to = *current_, .decoded = decoded_};
  for (size_t parity : {0, 1}) {
    if (is_b_) {
      decoding.references[0][parity] = older_.get();
      decoding.references[1][parity] = newer_.get();
    } else if (picture_.type == PictureType::p) {
      // The second field of a frame may refer to the first.
      const bool first_of_it = second_field_ && int(parity) != picture_.parity();
      decoding.references[0][parity] = first_of_it ? current_.get() : newer_.get();
    }
  }
  SliceDecoder(decoding, bits).decode(row);
}

void Decoder::finish_picture() {
  const State state = std::exchange(state_, State::none);
  if (state == State::header || state == State::complete_header) tolerate("a picture is missing");
  if (state != State::decoding) return;
  fill_gaps();
  if (picture_.is_field() && !second_field_) return;
  finish_frame();
}

/// Takes what has not been decoded from the frame before.
void Decoder::fill_gaps() {
  const auto missing = std::ranges::count(decoded_, false);
  if (missing == 0) return;
  tolerate(std::to_string(missing) + " macroblocks are missing");
  const Rows rows = !picture_.is_field() ? Rows::all : picture_.parity() ? Rows::bottom : Rows::top;
  const int columns = sequence_.macroblock_columns();
  for (size_t k = 0; k < decoded_.size(); ++k) {
    if (decoded_[k]) continue;
    const Area area{int(k) % columns * 16, int(k) / columns * 16, 16};
    if (newer_)
      predict(*newer_, rows, *current_, rows, area, {}, false);
    else
      paint_grey(*current_, rows, area);
  }
}

void Decoder::finish_frame() {
  if (picture_.is_field() && !second_field_) repeat_field(*current_, first_field_);
  if (is_b_) {
    due_.push_back(std::move(current_));
  } else {
    if (newer_is_due_) due_.push_back(newer_);
    older_ = std::move(newer_);
    newer_ = std::move(current_);
    newer_is_due_ = true;
    ++references_;
  }
  current_ = nullptr;
  ++pictures_;
}

void Decoder::finish_sequence() {
  finish_picture();
  if (current_) {
    tolerate("a field is missing");
    finish_frame();
  }
  if (std::exchange(newer_is_due_, false)) due_.push_back(newer_);
  older_ = newer_ = nullptr;
  references_ = 0;
}

std::shared_ptr<Frame> Decoder::new_frame() {
  constexpr size_t most_kept = 5;
  for (const auto& frame : frames_)
    if (frame.use_count() == 1) return frame;
  // Copies of the decoder may hold all of them.
  if (frames_.size() == most_kept) frames_.erase(frames_.begin());
  return frames_.emplace_back(std::make_shared<Frame>(sequence_));
}

}  // namespace pqx_codec::mpeg
