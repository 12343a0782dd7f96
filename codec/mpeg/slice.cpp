#include "mpeg/slice.h"

#include <algorithm>
#include <cstdlib>

#include "bits/zig_zag.h"

namespace pqx_codec::mpeg {
namespace {

enum { forward, backward };

Rows rows_of(bool bottom) { return bottom ? Rows::bottom : Rows::top; }

}  // namespace

SliceDecoder::SliceDecoder(const PictureDecoding& decoding, BitReader bits)
    : decoding_(decoding), sequence_(decoding.sequence), picture_(decoding.picture), bits_(bits) {
  coding_.mpeg2 = sequence_.mpeg2;
  coding_.intra_codes = picture_.intra_codes;
  coding_.scan = picture_.alternate_scan ? alternate_positions.data() : natural_position.data();
  reset_dc();
}

void SliceDecoder::decode(int row) {
  const int columns = sequence_.macroblock_columns();
  // Slices of MPEG-1 may go on in the next rows.
  const int end = (sequence_.mpeg2 ? row + 1 : decoding_.rows()) * columns;
  if (row >= decoding_.rows()) damaged("a slice outside the picture");
  read_scale();
  while (bits_.read(1)) {
    bits_.read(8);
    if (bits_.overrun()) damaged("it ends in the header of a slice");
  }
  int address = row * columns + read_increment() - 1;
  if (address >= end) damaged("a macroblock outside its slice");
  x_ = address % columns;
  y_ = address / columns;
  const auto finish_macroblock = [&] {
    decoding_.decoded[size_t(address)] = true;
    ++address;
    if (++x_ == columns) x_ = 0, ++y_;
  };
  for (;;) {
    decode_macroblock();
    finish_macroblock();
    if (bits_.overrun()) damaged("a slice ends within a macroblock");
    if (bits_.peek(23) == 0) return;
    const int skipped = read_increment() - 1;
    if (skipped >= end - address) damaged("a macroblock outside its slice");
    for (int k = 0; k < skipped; ++k) {
      skip_macroblock();
      finish_macroblock();
    }
  }
}

void SliceDecoder::read_scale() {
  const auto code = bits_.read(5);
  if (code == 0) damaged("quantizer 0");
  coding_.scale = picture_.nonlinear_scale ? nonlinear_scales[code] : 2 * int(code);
}

int SliceDecoder::read_increment() {
  for (int increment = 0;;) {
    const int code = read_code(address_table, bits_, "macroblock address");
    if (code == 0 && sequence_.mpeg2) damaged("macroblock stuffing");
    if (code == address_escape) {
      increment += address_escape - 1;
    } else if (code != 0) {
      return increment + code;
    }
    if (bits_.overrun()) damaged("a slice ends within a macroblock address");
  }
}

void SliceDecoder::skip_macroblock() {
  reset_dc();
  if (picture_.type == PictureType::p) {
    reset_vectors();
    predict_still();
    return;
  }
  if (!forward_ && !backward_) damaged("a macroblock is skipped where none can be");
  // As the one before, but with one vector for each direction.
  for (int s : {forward, backward}) {
    const int scale = picture_.full_pel[s] ? 2 : 1;
    vectors_[0][s] = {predictors_[0][s][0] * scale, predictors_[0][s][1] * scale};
    selects_bottom_[0][s] = picture_.parity();
  }
  predict_macroblock(forward_, backward_, picture_.is_field() ? Motion::field : Motion::frame);
}

void SliceDecoder::decode_macroblock() {
  const MacroblockType type = picture_.type == PictureType::i   ? read_code(i_type_table, bits_, "macroblock type")
                              : picture_.type == PictureType::p ? read_code(p_type_table, bits_, "macroblock type")
                                                                : read_code(b_type_table, bits_, "macroblock type");
  Motion motion = picture_.is_field() ? Motion::field : Motion::frame;
  if ((type.forward || type.backward) && (picture_.is_field() || !picture_.frame_only)) motion = read_motion();
  const bool field_blocks =
      !picture_.is_field() && !picture_.frame_only && (type.intra || type.pattern) && bits_.read(1);
  if (type.quant) read_scale();

  if (type.forward || (type.intra && picture_.concealment_vectors)) read_vectors(forward, motion);
  if (type.backward) read_vectors(backward, motion);
  forward_ = type.forward;
  backward_ = type.backward;
  if (type.intra) {
    if (!picture_.concealment_vectors)
      reset_vectors();
    else if (!bits_.read(1))
      damaged("no marker behind a concealment vector");
    decode_blocks(true, ~0u, field_blocks);
    return;
  }
  reset_dc();
  const unsigned pattern = type.pattern ? read_pattern() : 0;
  if (type.forward || type.backward) {
    predict_macroblock(type.forward, type.backward, motion);
  } else {
    reset_vectors();
    predict_still();
  }
  decode_blocks(false, pattern, field_blocks);
}

SliceDecoder::Motion SliceDecoder::read_motion() {
  switch (bits_.read(2)) {
    case 1:
      return Motion::field;
    case 2:
      return picture_.is_field() ? Motion::halves : Motion::frame;
    case 3:
      if (picture_.type != PictureType::p) damaged("dual prime in a B picture");
      return Motion::dual_prime;
    default:
      damaged("impossible motion type");
  }
}

void SliceDecoder::read_vectors(int s, Motion motion) {
  // Those of fields in a frame count rows of the field, their predictors rows of the frame.
  const bool halved = !picture_.is_field() && motion != Motion::frame;
  const bool two = picture_.is_field() ? motion == Motion::halves : motion == Motion::field;
  for (int r = 0; r < (two ? 2 : 1); ++r) {
    if (two || motion == Motion::field) selects_bottom_[r][s] = bits_.read(1);
    const int x = read_component(r, s, 0, false);
    if (motion == Motion::dual_prime) difference_.x = read_code(dual_prime_table, bits_, "vector");
    const int y = read_component(r, s, 1, halved);
    if (motion == Motion::dual_prime) difference_.y = read_code(dual_prime_table, bits_, "vector");
    const int scale = picture_.full_pel[s] ? 2 : 1;
    vectors_[r][s] = {x * scale, y * scale};
  }
  if (!two) std::copy_n(predictors_[0][s], 2, predictors_[1][s]);
}

int SliceDecoder::read_component(int r, int s, int t, bool halved) {
  const int shift = picture_.f_code[s][t] - 1;
  int difference = read_code(motion_table, bits_, "vector");
  if (shift > 0 && difference != 0) {
    const int magnitude = ((std::abs(difference) - 1) << shift) + int(bits_.read(shift)) + 1;
    difference = difference < 0 ? -magnitude : magnitude;
  }
  int& predictor = predictors_[r][s][t];
  int component = (halved ? predictor >> 1 : predictor) + difference;
  const int limit = 16 << shift;
  if (component < -limit)
    component += 2 * limit;
  else if (component >= limit)
    component -= 2 * limit;
  predictor = halved ? 2 * component : component;
  return component;
}

void SliceDecoder::reset_vectors() { std::fill_n(&predictors_[0][0][0], 8, 0); }

void SliceDecoder::reset_dc() { std::ranges::fill(predicted_dc_, 128 << picture_.dc_precision); }

void SliceDecoder::predict_from(int s, Rows from, Rows to, int x, int y, int rows, Vector vector, bool average) {
  const Frame* const reference = decoding_.references[s][from == Rows::bottom];
  if (!reference) damaged("a prediction from a picture that is missing");
  if (!predict(*reference, from, decoding_.to, to, {x, y, rows}, vector, average))
    damaged("a vector out of the picture");
}

/// The vector to the field of the other parity, over half the distance or one and a half.
Vector SliceDecoder::dual_prime_vector(Rows to) const {
  const bool near = picture_.is_field() || (to == Rows::top) == picture_.top_field_first;
  const auto scaled = [&](int component) {
    const int n = near ? component : 3 * component;
    return (n + (n > 0)) >> 1;  // halves away from zero
  };
  // A row of the bottom field lies half a field's row below that of the top field with the same number.
  const Vector v = vectors_[0][forward];
  return {scaled(v.x) + difference_.x, scaled(v.y) + (to == Rows::top ? -1 : 1) + difference_.y};
}

void SliceDecoder::predict_macroblock(bool by_forward, bool by_backward, Motion motion) {
  const int x = 16 * x_, y = 16 * y_;
  const Rows field = rows_of(picture_.parity());
  bool average = false;
  for (int s : {forward, backward}) {
    if (!(s == forward ? by_forward : by_backward)) continue;
    switch (motion) {
      case Motion::frame:
        predict_from(s, Rows::all, Rows::all, x, y, 16, vectors_[0][s], average);
        break;
      case Motion::field:
        if (picture_.is_field()) {
          predict_from(s, rows_of(selects_bottom_[0][s]), field, x, y, 16, vectors_[0][s], average);
        } else {
          for (int r : {0, 1})
            predict_from(s, rows_of(selects_bottom_[r][s]), rows_of(r), x, y / 2, 8, vectors_[r][s], average);
        }
        break;
      case Motion::halves:
        for (int r : {0, 1})
          predict_from(s, rows_of(selects_bottom_[r][s]), field, x, y + 8 * r, 8, vectors_[r][s], average);
        break;
      case Motion::dual_prime:
        for (const Rows to : {Rows::top, Rows::bottom}) {
          if (picture_.is_field() && to != field) continue;
          const int top = picture_.is_field() ? y : y / 2, rows = picture_.is_field() ? 16 : 8;
          predict_from(s, to, to, x, top, rows, vectors_[0][s], false);
          predict_from(s, rows_of(to == Rows::top), to, x, top, rows, dual_prime_vector(to), true);
        }
        break;
    }
    average = true;
  }
}

/// By no vector, a field from the one of its parity.
void SliceDecoder::predict_still() {
  vectors_[0][forward] = {};
  selects_bottom_[0][forward] = picture_.parity();
  predict_macroblock(true, false, picture_.is_field() ? Motion::field : Motion::frame);
}

/// Which blocks are coded, the first in the highest of six or eight bits.
unsigned SliceDecoder::read_pattern() {
  const auto pattern = unsigned(read_code(pattern_table, bits_, "block pattern"));
  if (sequence_.chroma_422) return pattern << 2 | bits_.read(2);
  if (pattern == 0) damaged("impossible block pattern");
  return pattern;
}

void SliceDecoder::decode_blocks(bool intra, unsigned pattern, bool field_blocks) {
  const int blocks = sequence_.chroma_422 ? 8 : 6;
  coding_.intra = intra;
  for (int k = 0; k < blocks; ++k) {
    if (!(pattern >> (blocks - 1 - k) & 1)) continue;
    const int component = k < 4 ? 0 : 1 + k % 2;
    const bool chroma = component > 0, halved = chroma && !sequence_.chroma_422;  // in height
    coding_.steps = sequence_.matrices[(chroma ? 2 : 0) + !intra].data();
    read_coefficients(bits_, coding_, intra ? read_dc(component) : 0, block_);

    const Frame::Plane& plane = decoding_.to.planes[size_t(component)];
    const int step = plane.columns << picture_.is_field();
    const bool interleaved = field_blocks && !halved, lower = chroma ? k >= 6 : k >= 2;
    const int column = chroma ? 8 * x_ : 16 * x_ + k % 2 * 8;
    const int row = (halved ? 8 : 16) * y_ + (lower ? interleaved ? 1 : 8 : 0);
    uint8_t* const samples = plane.row(picture_.parity()) + ptrdiff_t{step} * row + column;
    (intra ? write_intra : add_residual)(block_, samples, step << interleaved);
  }
}

/// As a coefficient.
int SliceDecoder::read_dc(int component) {
  const int size = component == 0 ? read_code(luma_dc_table, bits_, "DC") : read_code(chroma_dc_table, bits_, "DC");
  int& dc = predicted_dc_[component];
  if (size > 0) {
    const auto code = int(bits_.read(size));
    dc += code >> (size - 1) ? code : code + 1 - (1 << size);
  }
  if (dc < 0 || dc >> (8 + picture_.dc_precision)) damaged("impossible DC");
  return dc << (3 - picture_.dc_precision);
}

}  // namespace pqx_codec::mpeg
