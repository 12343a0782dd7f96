#include "mpeg/headers.h"

#include <algorithm>
#include <numeric>

#include "bits/zig_zag.h"
#include "mpeg/codes.h"

namespace pqx_codec::mpeg {
namespace {

Ratio reduced(int64_t numerator, int64_t denominator) {
  const int64_t common = std::gcd(numerator, denominator);
  return {int(numerator / common), int(denominator / common)};
}

/// Matrices stand in zig-zag order, whatever the scan of the pictures.
void read_matrix(BitReader& bits, QuantMatrix& matrix) {
  for (size_t k = 0; k < 64; ++k) {
    const auto step = uint8_t(bits.read(8));
    if (step == 0) damaged("a quantizer step of 0");
    matrix[natural_position[k]] = step;
  }
}

/// A matrix for luma is for chroma, too, until chroma gets its own.
void read_luma_matrix(BitReader& bits, QuantMatrices& matrices, size_t which) {
  read_matrix(bits, matrices[which]);
  matrices[which + 2] = matrices[which];
}

int read_f_code(BitReader& bits, int length) {
  const auto f_code = int(bits.read(length));
  if (f_code == 0) damaged("a vector range of 0");
  return f_code;
}

}  // namespace

Sequence read_sequence_header(BitReader& bits) {
  Sequence s;
  s.width = int(bits.read(12));
  s.height = int(bits.read(12));
  s.aspect = int(bits.read(4));
  const auto rate = size_t(bits.read(4));
  if (rate == 0 || rate >= frame_rates.size()) damaged("impossible frame rate");
  s.rate = frame_rates[rate];
  bits.read(18 + 1);
  bits.read(10 + 1);
  s.matrices[0] = default_intra_matrix;
  s.matrices[1].fill(16);
  for (size_t k : {0, 1}) {
    if (bits.read(1)) read_matrix(bits, s.matrices[k]);
    s.matrices[k + 2] = s.matrices[k];
  }
  return s;
}

Ratio Sequence::sample_aspect() const {
  const auto code = size_t(aspect);
  if (!mpeg2) return code > 0 && code < sample_heights.size() ? reduced(10000, sample_heights[code]) : Ratio{0, 0};
  switch (code) {
    case 1:
      return {1, 1};
    // The others are those of the whole picture.
    case 2:
      return reduced(int64_t{4} * height, int64_t{3} * width);
    case 3:
      return reduced(int64_t{16} * height, int64_t{9} * width);
    case 4:
      return reduced(int64_t{221} * height, int64_t{100} * width);
    default:
      return {0, 0};
  }
}

void read_sequence_extension(BitReader& bits, Sequence& s) {
  s.mpeg2 = true;
  bits.read(8);
  s.progressive = bits.read(1);
  const auto chroma = bits.read(2);
  if (chroma == 3) throw Failure("not supported: MPEG-2 with chroma 4:4:4");
  if (chroma == 0) damaged("impossible chroma format");
  s.chroma_422 = chroma == 2;
  s.width |= int(bits.read(2)) << 12;
  s.height |= int(bits.read(2)) << 12;
  bits.read(12 + 1);
  bits.read(8 + 1);
  const auto n = int(bits.read(2)), d = int(bits.read(5));
  s.rate = reduced(int64_t{s.rate.numerator} * (n + 1), int64_t{s.rate.denominator} * (d + 1));
}

void read_quant_matrix_extension(BitReader& bits, QuantMatrices& matrices) {
  for (size_t k : {0, 1})
    if (bits.read(1)) read_luma_matrix(bits, matrices, k);
  for (size_t k : {2, 3})
    if (bits.read(1)) read_matrix(bits, matrices[k]);
}

Picture read_picture_header(BitReader& bits) {
  Picture p;
  bits.read(10);  // temporal reference
  const auto type = bits.read(3);
  if (type < 1 || type > 4) damaged("impossible picture type");
  p.type = PictureType(type);
  bits.read(16);
  for (int s = 0; s < (p.type == PictureType::p ? 1 : p.type == PictureType::b ? 2 : 0); ++s) {
    p.full_pel[s] = bits.read(1);
    p.f_code[s][0] = p.f_code[s][1] = read_f_code(bits, 3);
  }
  return p;
}

void read_picture_coding_extension(BitReader& bits, Picture& p) {
  for (int s : {0, 1}) {
    p.full_pel[s] = false;
    for (int& f_code : p.f_code[s]) f_code = read_f_code(bits, 4);
  }
  p.dc_precision = int(bits.read(2));
  const auto structure = bits.read(2);
  if (structure == 0) damaged("impossible picture structure");
  p.structure = Structure(structure);
  p.top_field_first = bits.read(1);
  p.frame_only = bits.read(1);
  p.concealment_vectors = bits.read(1);
  p.nonlinear_scale = bits.read(1);
  p.intra_codes = bits.read(1);
  p.alternate_scan = bits.read(1);
  p.repeat_first_field = bits.read(1);
  bits.read(1);  // chroma 4:2:0 type
  p.progressive = bits.read(1);
}

}  // namespace pqx_codec::mpeg
