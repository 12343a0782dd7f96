#include "h261/encoder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "bits/zig_zag.h"
#include "core/failure.h"
#include "h261/format.h"
#include "pqx_video.h"

namespace pqx_codec::h261 {
namespace {

/// The standard wants an intra macroblock after 132 predicted ones at the latest, so that the errors of different
/// inverse transforms do not add up without end.
constexpr int most_predictions = 132;

// Address, type, quantizer, vector and pattern take at most 57 bits, a block a DC, 64 escapes and its end.
constexpr int most_macroblock_bits = 57 + 6 * (8 + 64 * 20 + 2);

constexpr auto address_words = codes_by_value<34>(address_codes, 0);
constexpr auto vector_words = codes_by_value<32>(vector_codes, -16);
constexpr auto pattern_words = codes_by_value<64>(pattern_codes, 0);

/// Codes by run and level; without bits where only the escape will do.
constexpr auto coefficient_words = [] {
  std::array<std::array<Code, 16>, 64> table{};
  for (const auto& c : coefficient_codes) table[size_t(c.value.run)][size_t(c.value.level)] = c.code;
  return table;
}();

constexpr int vector_bits(Vector v) {
  return vector_words[size_t(v.x + 16)].length + vector_words[size_t(v.y + 16)].length;
}

Code type_word(const MacroblockType& type) {
  return std::ranges::find(type_codes, type, &Coded<MacroblockType>::value)->code;
}

uint32_t cost(const YuvPicture& a, const uint8_t* b, int x, int y) {
  return pqx_Video_SumAbsDiff_8U(a.planes[0].at(x, y), b, a.planes[0].columns, 16, 16);
}

int mean_luma(const YuvPicture& picture, int x, int y) {
  int sum = 0;
  for (int row = 0; row < 16; ++row)
    for (int column = 0; column < 16; ++column) sum += *picture.planes[0].at(x + column, y + row);
  return (sum + 128) / 256;
}

}  // namespace

Encoder::Encoder(int width, int height, const EncoderOptions& options)
    : format_{width == 352},
      options_(options),
      picture_(width, height),
      before_(width, height),
      trial_(width, height),
      // Headers of the picture and of its groups take less than a macroblock.
      bits_(size_t(format_.macroblocks() + 1) * most_macroblock_bits / 8) {
  if (width != format_.width() || height != format_.height())
    throw Failure("not supported: H.261 holds 352 x 288 or 176 x 144 pixels, not " + std::to_string(width) + " x " +
                  std::to_string(height));
  for (int quant = 1; quant <= max_quant; ++quant) {
    std::array<int16_t, 64> steps;
    steps.fill(int16_t(2 * quant));
    pqx_Video_QuantizeInit_16S(steps.data(), quantizers_[size_t(quant)].data());
  }
  // The intra macroblocks that keep errors from adding up are spread over the pictures.
  for (int i = 0; i < width / 16 * (height / 16); ++i) predictions_since_intra_.push_back(i * 37 % most_predictions);
}

std::vector<uint8_t> Encoder::encode(const YuvPicture& source) {
  std::swap(before_, picture_);
  const std::vector<int> predictions_before = predictions_since_intra_;
  quant_ = options_.quant;
  scan_end_ = 64;
  std::vector<uint8_t> coded = encode_picture(source);
  while (coded.size() * 8 > format_.most_bits()) {
    // With one level in each block everything fits: a macroblock then takes at most 190 bits.
    if (quant_ < max_quant)
      ++quant_;
    else
      scan_end_ = scan_end_ * 3 / 4;
    predictions_since_intra_ = predictions_before;
    coded = encode_picture(source);
  }
  ++pictures_;
  return coded;
}

std::vector<uint8_t> Encoder::encode_picture(const YuvPicture& source) {
  put(start_code, start_code_bits);
  put(0, 4);
  put(uint32_t(pictures_ & 31), 5);
  // No split screen, no document camera, no freeze release, the format, no still picture, a spare bit; no more.
  put(format_.cif ? 0b000111 : 0b000011, 6);
  put(0, 1);
  for (int number = 1; format_.has_group(number); number = format_.next_group(number)) encode_group(source, number);
  bits_.cursor().finish(false);
  std::vector<uint8_t> coded(bits_.bytes().begin(), bits_.bytes().end());
  bits_.clear();
  return coded;
}

void Encoder::encode_group(const YuvPicture& source, int number) {
  put(start_code, start_code_bits);
  put(uint32_t(number), 4);
  put(uint32_t(quant_), 5);
  put(0, 1);
  int quant = quant_, last_sent = 0;
  Vector vector_before;
  for (int address = 1; address <= macroblocks_in_group; ++address) {
    const int x = format_.group_x(number) + (address - 1) % macroblocks_in_row * 16;
    const int y = format_.group_y(number) + (address - 1) / macroblocks_in_row * 16;
    Macroblock m;
    choose_prediction(source, x, y, y / 16 * (format_.width() / 16) + x / 16, m);
    transform(source, x, y, m);
    if (m.type.coefficients) {
      m.type.new_quant = m.quant != quant;
      quant = m.quant;
    } else if (!m.type.vector) {
      continue;  // the picture before stays
    }
    const bool starts = starts_vector_row(address) || address != last_sent + 1;
    write(m, address - last_sent, starts ? Vector{} : vector_before);
    reconstruct(x, y, m);
    vector_before = m.type.vector ? m.vector : Vector{};
    last_sent = address;
  }
}

/// Searches all vectors for the best match, tries the loop filter on it, and leaves the macroblock predicted in the
/// picture, or decides that it is intra.
void Encoder::choose_prediction(const YuvPicture& source, int x, int y, int macroblock, Macroblock& m) {
  int& predictions = predictions_since_intra_[size_t(macroblock)];
  const int range = options_.search;
  const YuvPicture::Component& reference = before_.planes[0];
  // What a bit of side information is worth in differences.
  const uint32_t bit = uint32_t(quant_) / 2 + 1;
  Vector best;
  uint32_t lowest = pictures_ ? cost(source, reference.at(x, y), x, y) : UINT32_MAX;
  const uint32_t stay = lowest;
  const int left = std::max(-range, -x), right = std::min(range, before_.width() - 16 - x);
  const int top = std::max(-range, -y), bottom = std::min(range, before_.height() - 16 - y);
  if (pictures_)
    for (int dy = top; dy <= bottom; ++dy)
      for (int dx = left; dx <= right; ++dx) {
        const uint32_t c = cost(source, reference.at(x + dx, y + dy), x, y) + bit * uint32_t(vector_bits({dx, dy}));
        if (c < lowest) lowest = c, best = {dx, dy};
      }
  bool filter = false;
  if (pictures_ && options_.loop_filter) {
    for (const Vector v : {best, Vector{}}) {
      predict(before_, trial_, x, y, v, true);
      const uint32_t c = cost(source, trial_.planes[0].at(x, y), x, y) + bit * uint32_t(vector_bits(v));
      if (c < lowest) lowest = c, best = v, filter = true;
    }
  }
  const bool moved = best != Vector{} || filter;
  if (moved && lowest + 2 * bit >= stay) best = {}, filter = false, lowest = stay;

  const int mean = mean_luma(source, x, y);
  for (int row = 0; row < 16; ++row) std::memset(trial_.planes[0].at(x, y + row), mean, 16);
  const uint32_t deviation = cost(source, trial_.planes[0].at(x, y), x, y);
  m.type.intra = !pictures_ || predictions >= most_predictions - 1 || deviation + 64 * bit < lowest;
  if (m.type.intra) {
    if (pictures_) predictions = 0;
    return;
  }
  ++predictions;
  m.vector = best;
  m.type.filter = filter;
  m.type.vector = filter || best != Vector{};
  predict(before_, picture_, x, y, best, filter);
}

void Encoder::transform(const YuvPicture& source, int x, int y, Macroblock& m) {
  int largest = 0;
  for (int k = 0; k < 6; ++k) {
    auto& block = m.levels[size_t(k)];
    const BlockPlace place = block_place(k, x, y);
    const YuvPicture::Component &from = source.planes[place.plane], &prediction = picture_.planes[place.plane];
    if (m.type.intra) {
      pqx_Video_DCT8x8Fwd_8U_16S(from.at(place.x, place.y), from.columns, block.data());
    } else {
      for (int row = 0; row < 8; ++row) {
        const uint8_t *a = from.at(place.x, place.y + row), *b = prediction.at(place.x, place.y + row);
        for (int column = 0; column < 8; ++column) block[size_t(8 * row + column)] = int16_t(a[column] - b[column]);
      }
      pqx_Video_DCT8x8Fwd_16S(block.data(), block.data());
    }
    for (size_t i = m.type.intra; i < 64; ++i) largest = std::max(largest, std::abs(block[i]));
  }
  // Levels reach to 127 only, which a low quantizer may not be enough for.
  m.quant = std::max(quant_, (largest + 2 * max_level) / (2 * max_level + 1));
  for (int k = 0; k < 6; ++k) {
    auto& block = m.levels[size_t(k)];
    const int dc = block[0];
    // The level L stands for the range from 2 L quant to 2 (L + 1) quant. The quantizer rounds to the nearest
    // multiple of 2 quant: taking one quant off first makes it the multiple below.
    for (int16_t& c : block) c = int16_t(c > 0 ? std::max(c - m.quant, 0) : std::min(c + m.quant, 0));
    pqx_Video_Quantize_16S_I(quantizers_[size_t(m.quant)].data(), block.data());
    for (int16_t& c : block) c = std::clamp<int16_t>(c, -max_level, max_level);
    for (size_t i = scan_end_; i < 64; ++i) block[natural_position[i]] = 0;
    if (m.type.intra) block[0] = int16_t(std::clamp((dc + 4) / 8, 1, 254));
    const bool coded = m.type.intra || std::ranges::any_of(block, [](int16_t level) { return level != 0; });
    if (coded) m.pattern |= 32 >> k;
  }
  m.type.coefficients = m.pattern != 0;
}

void Encoder::reconstruct(int x, int y, const Macroblock& m) {
  LevelBlock block;
  for (int k = 0; k < 6; ++k) {
    if (!(m.pattern & 32 >> k)) continue;
    const auto& levels = m.levels[size_t(k)];
    if (m.type.intra) block.levels[0] = int16_t(8 * levels[0]);
    for (unsigned i = m.type.intra; i < 64; ++i)
      if (levels[i] != 0) set_level(block, i, levels[i]);
    const BlockPlace place = block_place(k, x, y);
    YuvPicture::Component& plane = picture_.planes[place.plane];
    (m.type.intra ? write_intra : add_residual)(block, m.quant, plane.at(place.x, place.y), plane.columns);
  }
}

void Encoder::write(const Macroblock& m, int address_increment, Vector vector_before) {
  put(address_words[size_t(address_increment)]);
  put(type_word(m.type));
  if (m.type.new_quant) put(uint32_t(m.quant), 5);
  if (m.type.vector) {
    put(vector_words[size_t(wrapped(m.vector.x - vector_before.x) + 16)]);
    put(vector_words[size_t(wrapped(m.vector.y - vector_before.y) + 16)]);
  }
  if (!m.type.coefficients) return;
  if (!m.type.intra) put(pattern_words[size_t(m.pattern)]);
  for (int k = 0; k < 6; ++k)
    if (m.pattern & 32 >> k) write_block(m.levels[size_t(k)], m.type.intra);
}

void Encoder::write_block(const std::array<int16_t, 64>& levels, bool intra) {
  // 128 is not sent, lest start codes appear.
  if (intra) put(levels[0] == 128 ? 255 : uint32_t(levels[0]), 8);
  unsigned run = 0;
  for (size_t k = intra; k < 64; ++k) {
    const int level = levels[natural_position[k]];
    if (level == 0) {
      ++run;
      continue;
    }
    const auto magnitude = unsigned(std::abs(level));
    const Code word = magnitude < 16 ? coefficient_words[run][magnitude] : Code{};
    if (k == 0 && magnitude == 1) {
      put(first_one);
      put(level < 0, 1);
    } else if (word.length > 0) {
      put(word);
      put(level < 0, 1);
    } else {
      put(escape);
      put(run, 6);
      put(uint32_t(level) & 255, 8);
    }
    run = 0;
  }
  put(end_of_block);
}

}  // namespace pqx_codec::h261
