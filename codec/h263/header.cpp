#include "h263/header.h"

#include <array>
#include <numeric>
#include <tuple>
#include <utility>

#include "h263/format.h"

namespace pqx_codec::h263 {
namespace {

constexpr int custom_format = 6, plus_format = 7;
constexpr std::array<std::pair<int, int>, 6> standard_sizes{
    {{0, 0}, {128, 96}, {176, 144}, {352, 288}, {704, 576}, {1408, 1152}}};
constexpr const char* impossible_type = "impossible picture type";

void refuse(bool found, const char* what) {
  if (found) throw Failure(std::string("not supported: H.263 with ") + what);
}

void expect(bool condition, const char* what) {
  if (!condition) damaged(what);
}

void set_size(Modes& modes, int format) {
  expect(format > 0 && format < custom_format, "impossible picture format");
  std::tie(modes.width, modes.height) = standard_sizes[size_t(format)];
}

}  // namespace

int PictureHeader::address_bits() const {
  const int macroblocks = columns() * rows();
  constexpr std::pair<int, int> most[] = {{48, 6}, {99, 7}, {396, 9}, {1584, 11}, {6336, 13}};
  for (const auto& [count, bits] : most)
    if (macroblocks <= count) return bits;
  return 14;
}

PictureHeader HeaderReader::read(BitReader& bits) {
  bits.read(8);  // temporal reference
  expect(bits.read(2) == 0b10, impossible_type);
  bits.read(3);  // split screen, document camera, freeze release: hints for a display
  const auto format = int(bits.read(3));
  const PictureHeader header = format == plus_format ? read_plus(bits) : read_plain(bits, format);
  expect(header.quant != 0, "quantizer 0");
  while (bits.read(1)) {  // supplemental information
    expect(!bits.overrun(), "it ends in a picture header");
    bits.read(8);
  }
  return header;
}

PictureHeader HeaderReader::read_plain(BitReader& bits, int format) const {
  PictureHeader header;
  set_size(header, format);
  header.predicted = bits.read(1);
  header.extended_vectors = bits.read(1);
  refuse(bits.read(1), "Annex E, arithmetic coding");
  header.overlapped = bits.read(1);
  refuse(bits.read(1), "Annex G, PB-frames");
  header.quant = int(bits.read(5));
  refuse(bits.read(1), "Annex C, continuous presence");
  return header;
}

PictureHeader HeaderReader::read_plus(BitReader& bits) {
  const uint32_t extent = bits.read(3);
  expect(extent <= 1, impossible_type);
  const bool has_modes = extent == 1;
  bool custom_size = false;
  const Modes modes = has_modes ? read_modes(bits, custom_size) : modes_;
  PictureHeader header{modes};
  expect(has_modes || header.width != 0, "a picture without modes");

  const uint32_t type = bits.read(3);
  refuse(type == 2, "Annex M, improved PB-frames");
  refuse(type >= 3 && type <= 5, "Annex O, scalability");
  expect(type <= 1, impossible_type);
  header.predicted = type == 1;
  refuse(bits.read(1), "Annex P, resampled references");
  refuse(bits.read(1), "Annex Q, reduced resolution");
  header.rounding = int(bits.read(1));
  expect(bits.read(3) == 1, impossible_type);

  refuse(bits.read(1), "Annex C, continuous presence");
  if (custom_size) {
    constexpr FrameRate shapes[] = {{12, 11}, {1, 1}, {12, 11}, {10, 11}, {16, 11}, {40, 33}};
    constexpr uint32_t extended_shape = 15;
    const uint32_t shape = bits.read(4);
    header.width = int(bits.read(9) + 1) * 4;
    expect(bits.read(1), "impossible picture size");
    header.height = int(bits.read(9)) * 4;
    expect(header.height > 0, "impossible picture size");
    if (shape < std::size(shapes)) header.aspect = shapes[shape];
    if (shape == extended_shape) header.aspect = {int(bits.read(8)), int(bits.read(8))};
  }
  if (has_modes && header.own_clock) {
    const int factor = bits.read(1) ? 1001 : 1000;
    const auto divisor = int(bits.read(7));
    expect(divisor != 0, "impossible picture clock");
    const int shared = std::gcd(1800000, divisor * factor);
    header.rate = {1800000 / shared, divisor * factor / shared};
  }
  if (header.own_clock) bits.read(2);  // extends the temporal reference
  // Whether vectors are limited makes no difference to their codes.
  if (has_modes && header.reversible_vectors && !bits.read(1)) expect(bits.read(1), "impossible vectors");
  if (has_modes && header.slices) {
    refuse(bits.read(1), "Annex K's rectangular slices");
    refuse(bits.read(1), "Annex K's slices in any order");
  }
  header.quant = int(bits.read(5));
  modes_ = header;
  return header;
}

Modes HeaderReader::read_modes(BitReader& bits, bool& custom_size) const {
  Modes modes;
  const auto format = int(bits.read(3));
  custom_size = format == custom_format;
  if (!custom_size) set_size(modes, format);
  modes.own_clock = bits.read(1);
  modes.reversible_vectors = bits.read(1);
  refuse(bits.read(1), "Annex E, arithmetic coding");
  modes.overlapped = bits.read(1);
  modes.advanced_intra = bits.read(1);
  modes.deblocking = bits.read(1);
  modes.slices = bits.read(1);
  refuse(bits.read(1), "Annex N, reference picture selection");
  refuse(bits.read(1), "Annex R, independent segments");
  refuse(bits.read(1), "Annex S, alternative inter codes");
  modes.modified_quant = bits.read(1);
  expect(bits.read(1), impossible_type);
  refuse(bits.read(1), "Annex U, enhanced reference picture selection");
  refuse(bits.read(1), "Annex V, data-partitioned slices");
  expect(bits.read(1) == 0, impossible_type);
  return modes;
}

}  // namespace pqx_codec::h263
