#include "h261/decoder.h"

#include <algorithm>
#include <utility>

#include "bits/zig_zag.h"
#include "core/failure.h"
#include "h261/format.h"

namespace pqx_codec::h261 {
namespace {

constexpr CodeTable<int, 11> address_table(address_codes);
constexpr CodeTable<MacroblockType, 10> type_table(type_codes);
constexpr CodeTable<int, 11> vector_table(vector_codes);
constexpr CodeTable<int, 9> pattern_table(pattern_codes);

/// A coefficient with its sign, or the end of the block (level 0), or an escape (no bits).
struct Coefficient {
  int8_t run = 0, level = 0, bits = 0;
};

/// Codes that begin with six zeros are looked up by the eight bits behind them, the others by the first nine.
struct CoefficientTables {
  std::array<Coefficient, 512> common{};
  std::array<Coefficient, 256> rare{};

  constexpr CoefficientTables() {
    add(end_of_block, {0, 0, 2});
    for (const auto& c : coefficient_codes)
      for (uint32_t minus : {0u, 1u}) {
        const int level = minus ? -c.value.level : c.value.level;
        add({c.code.bits << 1 | minus, c.code.length + 1},
            {int8_t(c.value.run), int8_t(level), int8_t(c.code.length + 1)});
      }
  }

 private:
  constexpr void add(Code code, Coefficient coefficient) {
    const bool is_rare = code.length > 9;
    const int free = (is_rare ? 14 : 9) - code.length;
    for (uint32_t i = 0; i < 1u << free; ++i) {
      const uint32_t index = code.bits << free | i;
      if (is_rare)
        rare[index] = coefficient;
      else
        common[index] = coefficient;
    }
  }
};
constexpr CoefficientTables coefficient_tables;

[[noreturn]] void damaged(const std::string& what) { throw Failure("damaged H.261 stream: " + what); }

template <class Value, int longest>
Value read(BitReader& bits, const CodeTable<Value, longest>& codes, const char* what) {
  const std::optional<Value> value = codes.read(bits);
  if (!value) damaged(std::string("impossible ") + what);
  return *value;
}

}  // namespace

bool is_stream(std::span<const uint8_t> bytes) {
  return bytes.size() >= 3 && bytes[0] == 0 && bytes[1] == 1 && (bytes[2] & 0xF0) == 0;
}

Decoder::Decoder(std::span<const uint8_t> stream) : Decoder(stream, {}) {}

Decoder::Decoder(std::span<const uint8_t> stream, Report report) : bits_(stream), report_(std::move(report)) {
  if (!is_stream(stream)) throw Failure("not an H.261 stream");
}

/// Reports damage that can be gone on from.
void Decoder::tolerate(const std::string& damage) const {
  if (!report_) damaged(damage);
  report_("picture " + std::to_string(pictures_) + ": " + damage);
}

/// Goes to the next start code; false if there is none.
bool Decoder::find_start_code() {
  while (bits_.peek(start_code_bits) != start_code) {
    if (bits_.at_end()) return false;
    // Sixteen bits that hold a one below their highest bit cannot begin a start code before that one has passed.
    const uint32_t ahead = bits_.peek(start_code_bits);
    bits_.skip(ahead == 0 ? 1 : std::max(1, start_code_bits - std::countr_zero(ahead)));
  }
  return !bits_.at_end();
}

bool Decoder::next() {
  if (!find_start_code() || !read_picture_header()) return false;
  decode_groups();
  keep_others();
  ++pictures_;
  return true;
}

/// Behind a picture stands the header of the next one.
int Decoder::frames_to_next() const {
  BitReader bits = bits_;
  const uint32_t ahead = bits.peek(start_code_bits + 4 + 5);
  if (bits.at_end() || ahead >> 5 != start_code << 4) return 1;
  return std::max((int(ahead & 31) - temporal_reference_) & 31, 1);
}

/// False if the stream ends in it.
bool Decoder::read_picture_header() {
  bits_.skip(start_code_bits + 4);
  temporal_reference_ = int(bits_.read(5));
  const PictureFormat format{(bits_.read(6) & 0b000100) != 0};
  while (bits_.read(1)) bits_.skip(8);
  if (bits_.at_end()) {
    tolerate("it ends in a picture header");
    return false;
  }
  if (!started_) {
    format_ = format;
    before_ = picture_ = YuvPicture(format.width(), format.height());
    for (size_t k : {1, 2}) std::ranges::fill(picture_.planes[k].samples, uint8_t{128});
    started_ = true;
  } else if (format.cif != format_.cif) {
    if (!report_) throw Failure("not supported: H.261 stream that changes the size of its pictures");
    tolerate("a picture of another size");
  }
  std::swap(before_, picture_);
  decoded_.reset();
  changed_ = {};
  return true;
}

void Decoder::decode_groups() {
  int expected = 1;
  while (find_start_code()) {
    const auto number = int(bits_.peek(start_code_bits + 4) & 15);
    if (number == 0) break;
    const size_t start = bits_.position();
    bits_.skip(start_code_bits + 4);
    try {
      if (!format_.has_group(number)) damaged("a group of blocks outside the picture");
      if (number != expected) tolerate("a group of blocks is missing");
      expected = format_.next_group(number);
      decode_group(number);
    } catch (const Failure& failure) {
      if (!report_) throw;
      report_("picture " + std::to_string(pictures_) + ", group " + std::to_string(number) + ": " + failure.what());
      // A damaged code may have run past the next start code.
      bits_.seek(start + start_code_bits);
    }
  }
  if (format_.has_group(expected)) tolerate("a group of blocks is missing");
}

void Decoder::decode_group(int number) {
  auto quant = int(bits_.read(5));
  if (quant == 0) damaged("quantizer 0");
  while (bits_.read(1)) {
    bits_.skip(8);
    if (bits_.at_end()) damaged("it ends in a group header");
  }
  int address = 0;
  Vector vector;
  while (bits_.peek(start_code_bits - 1) != 0 && !bits_.at_end()) {
    const int increment = read(bits_, address_table, "macroblock address");
    if (increment == 0) continue;
    address += increment;
    if (address > macroblocks_in_group) damaged("a macroblock outside its group");
    const MacroblockType type = read(bits_, type_table, "macroblock type");
    if (type.new_quant) {
      quant = int(bits_.read(5));
      if (quant == 0) damaged("quantizer 0");
    }
    if (increment != 1 || starts_vector_row(address) || !type.vector) vector = {};
    if (type.vector) {
      vector.x = wrapped(vector.x + read(bits_, vector_table, "vector"));
      vector.y = wrapped(vector.y + read(bits_, vector_table, "vector"));
    }
    const int x = format_.group_x(number) + (address - 1) % macroblocks_in_row * 16;
    const int y = format_.group_y(number) + (address - 1) / macroblocks_in_row * 16;
    decode_macroblock(x, y, type, quant, vector);
  }
}

void Decoder::decode_macroblock(int x, int y, const MacroblockType& type, int quant, Vector vector) {
  auto decoded = decoded_[size_t(y / 16 * (format_.width() / 16) + x / 16)];
  decoded = false;
  LevelBlock block;
  int pattern = 63;
  if (!type.intra) {
    pattern = type.coefficients ? read(bits_, pattern_table, "block pattern") : 0;
    if (!vector_fits(before_, x, y, vector)) damaged("a vector out of the picture");
    predict(before_, picture_, x, y, vector, type.filter);
  }
  for (int k = 0; k < 6; ++k) {
    if (!(pattern & 32 >> k)) continue;
    read_block(block, type.intra);
    const BlockPlace place = block_place(k, x, y);
    YuvPicture::Component& plane = picture_.planes[place.plane];
    (type.intra ? write_intra : add_residual)(block, quant, plane.at(place.x, place.y), plane.columns);
  }
  decoded = true;
  changed_.add({x, y, x + 16, y + 16});
}

/// Macroblocks that were skipped, or lost to damage, stay as they were.
void Decoder::keep_others() {
  const int width = format_.width() / 16;
  for (int i = 0; i < format_.macroblocks(); ++i)
    if (!decoded_[size_t(i)]) predict(before_, picture_, i % width * 16, i / width * 16, {}, false);
}

void Decoder::read_block(LevelBlock& block, bool intra) {
  size_t k = 0;
  if (intra) {
    const auto dc = int(bits_.read(8));
    if (dc == 0 || dc == 128) damaged("impossible DC");
    block.levels[0] = int16_t(dc == 255 ? 1024 : 8 * dc);
    k = 1;
  } else if (bits_.peek(1)) {
    set_level(block, 0, bits_.peek(2) & 1 ? -1 : 1);
    bits_.skip(2);
    k = 1;
  }
  for (;; ++k) {
    const uint32_t ahead = bits_.peek(20);
    Coefficient c = coefficient_tables.common[ahead >> 11];
    if (ahead >> 14 == 0) c = coefficient_tables.rare[ahead >> 6 & 255];
    int run = c.run, level = c.level, length = c.bits;
    if (ahead >> 14 == escape.bits) {
      run = int(ahead >> 8 & 63);
      level = int8_t(ahead & 255);
      length = 20;
      if (level == 0 || level == -128) damaged("impossible level");
    }
    if (length == 0) damaged("impossible coefficient");
    bits_.skip(length);
    if (level == 0) return;
    k += size_t(run);
    if (k > 63) damaged("a block of more than 64 coefficients");
    set_level(block, natural_position[k], level);
  }
}

}  // namespace pqx_codec::h261
