#include "h263/decoder.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "bits/code.h"
#include "h263/format.h"
#include "pqx_video.h"

namespace pqx_codec::h263 {
namespace {

constexpr int start_code_bits = 17, end_of_stream = 31, frame_number_bits = 2;
constexpr int macroblocks_of_4cif = 44 * 36;
/// Of the largest picture, three times over, in half samples.
constexpr int max_vector = 1 << 13;

constexpr size_t start_code_bytes = 3;
/// More than the largest picture takes as samples, four times over.
constexpr size_t most_bytes = size_t{1} << 24;

constexpr CodeTable<uint8_t, 9> intra_type_table(codes_in_order<9>(intra_type_codes));
constexpr CodeTable<uint8_t, 13> predicted_type_table(codes_in_order<25>(predicted_type_codes));
constexpr CodeTable<uint8_t, 6> pattern_table(codes_in_order<16>(pattern_codes));
constexpr CodeTable<uint8_t, 12> vector_table(codes_in_order<33>(vector_codes));

/// Of a picture, at whole bytes. Its last byte is the rarest.
bool is_start_code(const uint8_t* bytes) { return bytes[2] >> 2 == 0b100000 && bytes[0] == 0 && bytes[1] == 0; }

int median(int a, int b, int c) { return std::max(std::min(a, b), std::min(std::max(a, b), c)); }
Vector median(Vector a, Vector b, Vector c) { return {median(a.x, b.x, c.x), median(a.y, b.y, c.y)}; }

template <int longest>
int read(BitReader& bits, const CodeTable<uint8_t, longest>& codes, const char* what) {
  const std::optional<uint8_t> place = codes.read(bits);
  if (!place) damaged(std::string("impossible ") + what);
  return *place;
}

int read_difference(BitReader& bits) {
  const int size = read(bits, vector_table, "vector");
  return size && bits.read(1) ? -size : size;
}

/// Of the codes that can be read backwards: pairs of a bit of the magnitude and a one, then the sign and a zero.
int read_reversible_difference(BitReader& bits) {
  if (bits.read(1)) return 0;
  int size = 1;
  for (;;) {
    const uint32_t pair = bits.read(2);
    if (pair % 2 == 0) return pair / 2 ? -size : size;
    size = 2 * size + int(pair / 2);
    if (size > 2 * max_vector) damaged("impossible vector");
  }
}

int wrapped(int component) { return ((component + 32) & 63) - 32; }

/// With a prediction beyond the plain range, vectors extend to twice that range on its side.
int extended(int prediction, int component) {
  if (prediction < -31 && component < -63) return component + 64;
  if (prediction > 32 && component > 63) return component - 64;
  return component;
}

/// A chroma vector from the sum of four luma vectors, which is in sixteenths of a sample.
int chroma_component(int sum) {
  const int fraction = sum & 15;
  return 2 * (sum >> 4) + (fraction < 3 ? 0 : fraction < 14 ? 1 : 2);
}

}  // namespace

bool is_stream(std::span<const uint8_t> bytes) {
  return bytes.size() >= start_code_bytes && is_start_code(bytes.data());
}

void Decoder::push(std::span<const uint8_t> bytes) {
  bytes_.erase(bytes_.begin(), bytes_.begin() + ptrdiff_t(next_picture_));
  searched_ = std::max(searched_, next_picture_) - next_picture_;
  next_picture_ = 0;
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

/// The next picture, from its start code on, once it is complete; nothing if it is not, or if there are no more.
std::span<const uint8_t> Decoder::take_picture() {
  const std::span<const uint8_t> bytes(bytes_);
  if (bytes.size() < next_picture_ + start_code_bytes && !finished_) return {};
  if (!started_ && !is_stream(bytes)) throw Failure("not an H.263 stream");
  size_t end = std::max(searched_, next_picture_ + start_code_bytes);
  while (end + start_code_bytes <= bytes.size() && !is_start_code(&bytes[end])) ++end;
  if (end + start_code_bytes > bytes.size()) {
    searched_ = end;
    end = bytes.size();
    if (end - next_picture_ > most_bytes) damaged("a picture without end");
    if (!finished_) return {};
  }
  const auto picture = bytes.subspan(next_picture_, end - next_picture_);
  next_picture_ = end;
  return picture;
}

/// Reports damage that can be gone on from, if it is to be concealed.
void Decoder::conceal(const Failure& failure) const {
  if (!report_ || !started_) throw failure;
  report_("picture " + std::to_string(pictures_) + ", macroblock " + std::to_string(address_) + ": " +
          failure.what());
}

bool Decoder::next() {
  for (;;) {
    const auto bytes = take_picture();
    if (bytes.empty()) return false;
    try {
      decode_picture(bytes);
      ++pictures_;
      return true;
    } catch (const Failure& failure) {
      conceal(failure);
    }
  }
}

void Decoder::decode_picture(std::span<const uint8_t> bytes) {
  BitReader bits(bytes);
  bits.read(start_code_bits + 5);
  const PictureHeader header = header_reader_.read(bits);
  if (started_ && (header.width != header_.width || header.height != header_.height))
    throw Failure("not supported: H.263 stream that changes the size of its pictures");
  if (!started_ && header.predicted) damaged("no picture to predict from");
  header_ = header;
  begin_picture();
  decode_segments(bits);
  skip_to(int(macroblocks_.size()));
  finish_picture();
}

void Decoder::begin_picture() {
  const int columns = header_.columns(), rows = header_.rows();
  if (!std::exchange(started_, true)) {
    picture_ = YuvPicture(header_.width, header_.height);
    for (Frame* frame : {&frame_, &before_})
      for (const int size : {16, 8, 8}) frame->emplace_back(columns * size, rows * size);
  }
  std::swap(frame_, before_);
  if (header_.predicted) {
    for (BorderedPlane& plane : before_) plane.extend();
    if (header_.overlapped) grid_.make(before_[0], header_.rounding);
  }
  if (header_.advanced_intra && intra_prediction_.empty())
    for (const int blocks : {2, 1, 1}) intra_prediction_.emplace_back(blocks * columns, blocks * rows);
  macroblocks_.assign(size_t(columns * rows), {});
  address_ = segment_ = 0;
  quant_ = header_.quant;
}

void Decoder::decode_segments(BitReader& bits) {
  const int end = int(macroblocks_.size());
  if (header_.slices) {
    skip_to(std::min(read_slice_address(bits), end));
    bits.read(1);
  }
  do {
    const BitReader start = bits;
    try {
      while (address_ < end) {
        if (bits.peek(start_code_bits - 1) == 0) break;
        decode_macroblock(bits);
      }
    } catch (const Failure& failure) {
      conceal(failure);
      residuals_[size_t(address_ % 2)] = {};
      macroblocks_[size_t(address_)] = {};
      bits = start;  // a damaged code may have run past the next start code
    }
  } while (address_ < end && find_segment(bits));
}

/// Goes to the next group of blocks or slice; false if there is none.
bool Decoder::find_segment(BitReader& bits) {
  for (;; bits.skip(1)) {
    if (bits.bits_left() < start_code_bits + 5) return false;
    if (bits.peek(start_code_bits) != 1) continue;
    bits.skip(start_code_bits);
    if (bits.peek(5) == end_of_stream) return false;
    try {
      read_segment_header(bits);
      return true;
    } catch (const Failure& failure) {
      conceal(failure);
    }
  }
}

void Decoder::read_segment_header(BitReader& bits) {
  const int address =
      header_.slices ? read_slice_address(bits) : int(bits.read(5)) * header_.rows_of_group() * header_.columns();
  // A bit keeps long addresses from looking like a start code; encoders set it in all pictures from 4CIF on.
  if (header_.slices && int(macroblocks_.size()) >= macroblocks_of_4cif) bits.read(1);
  if (!header_.slices) bits.read(frame_number_bits);
  const auto quant = int(bits.read(5));
  if (header_.slices) bits.read(1 + frame_number_bits);
  if (quant == 0) damaged("quantizer 0");
  if (address < address_ || address >= int(macroblocks_.size()))
    damaged("a group of blocks or slice out of its place");
  skip_to(address);
  quant_ = quant;
  ++segment_;
}

int Decoder::read_slice_address(BitReader& bits) const {
  if (!bits.read(1)) damaged("impossible slice header");
  return int(bits.read(header_.address_bits()));
}

/// Lets macroblocks that are missing be as they were in the picture before.
void Decoder::skip_to(int address) {
  if (address_ < address) conceal(Failure("damaged H.263 stream: macroblocks are missing"));
  while (address_ < address) finish_macroblock();
}

void Decoder::decode_macroblock(BitReader& bits) {
  Macroblock& m = macroblocks_[size_t(address_)];
  m.segment = segment_;
  int type = 0, chroma_pattern = 0;
  if (!read_type(bits, type, chroma_pattern)) return finish_macroblock();
  const auto is = [&](Type t, Type with_quant) { return type == int(t) || type == int(with_quant); };
  const bool intra = is(Type::intra, Type::intra_with_quant);
  m.kind = intra ? Macroblock::Kind::intra : Macroblock::Kind::inter;
  auto scan = Scan::zigzag;
  if (intra && header_.advanced_intra && bits.read(1)) scan = bits.read(1) ? Scan::vertical : Scan::horizontal;
  const int luma_pattern = read(bits, pattern_table, "block pattern") ^ (intra ? 0 : 15);
  if (is(Type::inter_with_quant, Type::intra_with_quant) || type == int(Type::four_vectors_with_quant))
    read_quant(bits);
  m.quant = quant_;
  if (!intra) read_vectors(bits, m, is(Type::four_vectors, Type::four_vectors_with_quant));
  Residual& residual = residuals_[size_t(address_ % 2)];
  residual.pattern = luma_pattern << 2 | chroma_pattern;
  read_blocks(bits, intra, scan, residual);
  finish_macroblock();
}

/// False if the macroblock is not coded.
bool Decoder::read_type(BitReader& bits, int& type, int& chroma_pattern) const {
  const bool predicted = header_.predicted;
  const int stuffing = 4 * (predicted ? types_in_predicted_pictures : types_in_intra_pictures);
  int place;
  do {
    if (bits.overrun()) damaged("it ends in a picture");
    if (predicted && bits.read(1)) return false;
    place = predicted ? read(bits, predicted_type_table, "macroblock type")
                      : read(bits, intra_type_table, "macroblock type");
  } while (place == stuffing);
  type = place / 4 + (predicted ? 0 : int(Type::intra));
  chroma_pattern = place % 4;
  return true;
}

void Decoder::read_quant(BitReader& bits) {
  if (!header_.modified_quant) {
    constexpr int changes[] = {-1, -2, 1, 2};
    quant_ = std::clamp(quant_ + changes[bits.read(2)], 1, max_quant);
  } else if (bits.read(1)) {
    quant_ += small_step(quant_, bits.read(1));
  } else {
    quant_ = int(bits.read(5));
    if (quant_ == 0) damaged("quantizer 0");
  }
}

void Decoder::read_vectors(BitReader& bits, Macroblock& m, bool four) const {
  for (size_t block = 0; block < (four ? 4 : 1); ++block) {
    const Vector prediction = predicted_vector(block);
    Vector& v = m.vectors[block];
    if (header_.reversible_vectors) {
      const int x = read_reversible_difference(bits), y = read_reversible_difference(bits);
      if (x == 1 && y == 1) bits.read(1);  // six zeros are followed by a one
      v = {prediction.x + x, prediction.y + y};
      if (std::max(std::abs(v.x), std::abs(v.y)) > max_vector) damaged("impossible vector");
    } else {
      v.x = prediction.x + read_difference(bits);
      v.y = prediction.y + read_difference(bits);
      v = header_.extended_vectors ? Vector{extended(prediction.x, v.x), extended(prediction.y, v.y)}
                                   : Vector{wrapped(v.x), wrapped(v.y)};
    }
  }
  if (!four) m.vectors.fill(m.vectors[0]);
}

/// Of the macroblock that is being read: the median of the vectors to the left, above, and above to the right.
Vector Decoder::predicted_vector(size_t block) const {
  const int x = address_ % header_.columns(), y = address_ / header_.columns();
  const auto& own = macroblocks_[size_t(address_)].vectors;
  if (block == 3) return median(own[2], own[0], own[1]);
  const Macroblock* const left = macroblock(x - 1, y);
  const Vector a = block == 1 ? own[0] : in_segment(left) ? left->vectors[block + 1] : Vector{};
  if (block == 2) return median(a, own[0], own[1]);
  const Macroblock *const above = macroblock(x, y - 1), *const right = macroblock(x + 1, y - 1);
  const Vector b = in_segment(above) ? above->vectors[block + 2] : a;
  const Vector c = x + 1 == header_.columns() ? Vector{} : in_segment(right) ? right->vectors[2] : a;
  return median(a, b, c);
}

void Decoder::read_blocks(BitReader& bits, bool intra, Scan scan, Residual& residual) {
  const bool advanced = intra && header_.advanced_intra;
  const int x = address_ % header_.columns(), y = address_ / header_.columns();
  const auto is_intra = [&](const Macroblock* m) { return in_segment(m) && m->kind == Macroblock::Kind::intra; };
  const bool above = advanced && is_intra(macroblock(x, y - 1)), left = advanced && is_intra(macroblock(x - 1, y));
  for (int k = 0; k < 6; ++k) {
    LevelBlock& block = residual.blocks[size_t(k)];
    const bool coded = residual.pattern & 32 >> k;
    if (intra && !advanced) {
      const auto dc = int(bits.read(8));
      if (dc == 0 || dc == 128) damaged("impossible DC");
      block.levels[0] = int16_t(dc == 255 ? 1024 : 8 * dc);
    }
    if (coded) {
      const int quant = k < 4 ? quant_ : chroma_quant(quant_);
      read_coefficients(bits, {advanced, scan, header_.modified_quant, quant}, intra && !advanced, block);
    }
    if (advanced && k < 4)
      intra_prediction_[0].apply(scan, above || k >= 2, left || k % 2, 2 * x + k % 2, 2 * y + k / 2, block);
    else if (advanced)
      intra_prediction_[size_t(k - 3)].apply(scan, above, left, x, y, block);
  }
  if (intra) residual.pattern = 63;
}

int Decoder::chroma_quant(int quant) const { return header_.modified_quant ? chroma_quants[size_t(quant)] : quant; }

/// The macroblock to the right must be known where predictions overlap, so reconstruction is one behind.
void Decoder::finish_macroblock() {
  const bool late = header_.predicted && header_.overlapped;
  if (!late)
    reconstruct(address_);
  else if (address_ > 0)
    reconstruct(address_ - 1);
  ++address_;
  if (late && address_ == int(macroblocks_.size())) reconstruct(address_ - 1);
}

void Decoder::reconstruct(int address) {
  const Macroblock& m = macroblocks_[size_t(address)];
  const bool intra = m.kind == Macroblock::Kind::intra;
  if (!intra) predict(address);
  Residual& residual = residuals_[size_t(address % 2)];
  const int x = address % header_.columns(), y = address / header_.columns();
  for (int k = 0; residual.pattern; ++k) {
    const int bit = 32 >> k;
    if (!(residual.pattern & bit)) continue;
    residual.pattern -= bit;
    BorderedPlane& plane = frame_[size_t(std::max(0, k - 3))];
    uint8_t* const samples = k < 4 ? plane.at(16 * x + k % 2 * 8, 16 * y + k / 2 * 8) : plane.at(8 * x, 8 * y);
    LevelBlock& block = residual.blocks[size_t(k)];
    if (intra) {
      inverse_transform(block, samples, plane.step());
    } else {
      alignas(16) int16_t added[64];
      inverse_transform(block, added);
      pqx_Video_AddBlock_16S_8U_I(added, samples, plane.step());
    }
    block.clear();
  }
}

void Decoder::predict(int address) {
  const Macroblock& m = macroblocks_[size_t(address)];
  const int x = address % header_.columns(), y = address / header_.columns();
  const auto& v = m.vectors;
  const int rounding = header_.rounding;
  const bool alike = v[1] == v[0] && v[2] == v[0] && v[3] == v[0];
  if (header_.predicted && header_.overlapped)
    predict_overlapped(x, y, m);
  else if (alike)
    h263::predict(before_[0], frame_[0], 16 * x, 16 * y, 16, v[0], rounding);
  else
    for (int k = 0; k < 4; ++k)
      h263::predict(before_[0], frame_[0], 16 * x + k % 2 * 8, 16 * y + k / 2 * 8, 8, v[size_t(k)], rounding);
  const Vector chroma{chroma_component(v[0].x + v[1].x + v[2].x + v[3].x),
                      chroma_component(v[0].y + v[1].y + v[2].y + v[3].y)};
  for (size_t k : {1, 2}) h263::predict(before_[k], frame_[k], 8 * x, 8 * y, 8, chroma, rounding);
}

/// Blocks outside of the picture and in intra macroblocks lend a block its own vector, and so does what lies below a
/// macroblock, which is not known yet.
void Decoder::predict_overlapped(int x, int y, const Macroblock& m) {
  const auto vector = [&](int column, int row, size_t block, Vector own) {
    const Macroblock* const neighbour = macroblock(column, row);
    return neighbour && neighbour->kind != Macroblock::Kind::intra ? neighbour->vectors[block] : own;
  };
  for (size_t k = 0; k < 4; ++k) {
    const Vector own = m.vectors[k];
    const bool lower = k >= 2, right = k % 2;
    const HalfSampleGrid::Vectors vectors{.own = own,
                                          .above = lower ? m.vectors[k - 2] : vector(x, y - 1, k + 2, own),
                                          .below = lower ? own : m.vectors[k + 2],
                                          .left = right ? m.vectors[k - 1] : vector(x - 1, y, k + 1, own),
                                          .right = right ? vector(x + 1, y, k - 1, own) : m.vectors[k + 1]};
    grid_.predict(frame_[0], 16 * x + right * 8, 16 * y + lower * 8, vectors);
  }
}

void Decoder::finish_picture() {
  if (header_.deblocking) {
    std::vector<uint8_t> quants(macroblocks_.size());
    for (size_t k = 0; k < 3; ++k) {
      std::ranges::transform(macroblocks_, quants.begin(),
                             [&](const Macroblock& m) { return uint8_t(k ? chroma_quant(m.quant) : m.quant); });
      deblock(frame_[k], quants, k ? 8 : 16);
    }
  }
  for (size_t k = 0; k < 3; ++k) {
    YuvPicture::Component& to = picture_.planes[k];
    for (int y = 0; y < to.rows; ++y) std::copy_n(frame_[k].at(0, y), to.columns, to.at(0, y));
  }
}

/// Null outside of the picture.
const Decoder::Macroblock* Decoder::macroblock(int x, int y) const {
  const int columns = header_.columns();
  if (x < 0 || y < 0 || x >= columns) return nullptr;
  return &macroblocks_[size_t(y * columns + x)];
}

}  // namespace pqx_codec::h263
