#include "written.h"

#include <algorithm>
#include <random>

#include "mpeg/codes.h"

namespace mpeg_test {
namespace {

using namespace pqx_codec;
using mpeg::MacroblockType;

enum { forward, backward };
enum Motion { field_motion = 1, frame_motion = 2, halves = 2, dual_prime = 3 };  // as coded

struct Vector {
  int x = 0, y = 0;
};
/// Where a vector is used: rows of a frame or of a field.
struct Place {
  int x, y, rows, all_rows;
};

class Writer {
 public:
  Writer(const WrittenKind& kind, unsigned seed, std::map<std::string, int>& used)
      : kind_(kind),
        used_(used),
        random_(seed),
        columns_((kind.width + 15) / 16),
        rows_(kind.progressive ? (kind.height + 15) / 16 : (kind.height + 31) / 32 * 2),
        two_b_(below(2)) {}

  Bytes write() {
    write_sequence();
    for (int k = 0; k < 7; ++k) {
      // I P B B P B B, or I P P ...
      const bool is_b = two_b_ && k > 1 && k % 3 != 1;
      if (k == 0) {
        start(0xB8);
        put(0, 12), put(1, 1), put(0, 12);  // time
        put(0b10, 2);                       // closed
      }
      write_frame(k == 0 ? 1 : is_b ? 3 : 2, !two_b_ || k == 0 ? k : is_b ? k - 1 : k == 1 ? 3 : 6);
    }
    start(0xB7);
    return bytes_;
  }

 private:
  int below(int n) { return int(random_() % unsigned(n)); }
  bool once_in(int n) { return below(n) == 0; }

  void put(uint32_t bits, int n) {
    for (int i = n - 1; i >= 0; --i) {
      if (count_ % 8 == 0) bytes_.push_back(0);
      bytes_.back() = uint8_t(bytes_.back() | (bits >> i & 1) << (7 - count_++ % 8));
    }
  }
  void put(Code code) { put(code.bits, code.length); }
  template <class Codes, class Value>
  void put_code(const Codes& codes, const Value& value) {
    put(std::ranges::find_if(codes, [&](const auto& c) { return c.value == value; })->code);
  }
  void start(int code) {
    count_ = 0;
    if (once_in(8)) bytes_.insert(bytes_.end(), size_t(below(5)), 0);
    bytes_.insert(bytes_.end(), {0, 0, 1, uint8_t(code)});
  }

  /// Random steps, but for the first.
  void put_matrix(int first) {
    for (int k = 0; k < 64; ++k) put(k ? uint32_t(1 + below(255)) : uint32_t(first), 8);
  }

  void write_sequence() {
    start(0xB3);
    put(uint32_t(kind_.width), 12), put(uint32_t(kind_.height), 12);
    put(1, 4), put(3, 4), put(0x3FFFF, 18), put(1, 1), put(112, 10), put(0, 1);
    for (int first : {8, 16}) {
      const bool load = below(2);
      put(load, 1);
      if (load) put_matrix(first);
    }
    if (!kind_.mpeg2) return;
    start(0xB5);
    put(1, 4), put(kind_.chroma_422 ? 0x85 : 0x48, 8), put(kind_.progressive, 1), put(kind_.chroma_422 ? 2 : 1, 2);
    put(0, 4), put(0, 12), put(1, 1), put(0, 8), put(0, 1), put(0, 7);
  }

  void write_frame(int type, int number) {
    const bool fields = !kind_.progressive && below(2);
    const bool top_first = below(2);
    for (int k = 0; k < (fields ? 2 : 1); ++k) {
      structure_ = !fields ? 3 : (k == 0) == top_first ? 1 : 2;
      // The second field of an I frame may be predicted from the first; that of the stream's first has nothing else.
      const int field_type = k == 1 && type == 1 && number > 0 && below(2) ? 2 : type;
      write_picture(field_type, number, !fields && top_first);
      if (fields) count("field pictures");
    }
  }

  void write_picture(int type, int number, bool top_first) {
    type_ = type;
    top_first_ = top_first;
    start(0);
    put(uint32_t(number), 10), put(uint32_t(type), 3), put(0xFFFF, 16);
    for (int s : {forward, backward}) {
      for (int t : {0, 1}) f_code_[s][t] = 1 + below(kind_.mpeg2 ? 9 : 7);
      full_pel_[s] = !kind_.mpeg2 && once_in(3);
      if (!kind_.mpeg2) f_code_[s][1] = f_code_[s][0];
      if (type > 1 + s) put(full_pel_[s], 1), put(kind_.mpeg2 ? 7 : uint32_t(f_code_[s][0]), 3);
      if (type > 1 + s && full_pel_[s]) count("full_pel");
      if (type > 1 + s && f_code_[s][0] > 5) count("large f_code");
    }
    for (int k = below(3); k > 0; --k) put(1, 1), put(uint32_t(below(256)), 8);
    put(0, 1);
    precision_ = kind_.mpeg2 ? below(4) : 0;
    frame_only_ = kind_.progressive || (structure_ == 3 && once_in(3));
    concealment_ = kind_.mpeg2 && once_in(3);
    intra_codes_ = kind_.mpeg2 && below(2);
    if (kind_.mpeg2) {
      start(0xB5);
      put(8, 4);
      for (int s : {forward, backward})
        for (int t : {0, 1}) {
          const bool used = type > 1 + s || (s == forward && concealment_);
          put(used ? uint32_t(f_code_[s][t]) : 15, 4);
        }
      put(uint32_t(precision_), 2), put(uint32_t(structure_), 2), put(top_first, 1), put(frame_only_, 1);
      put(concealment_, 1), put(0, 1), put(intra_codes_, 1), put(uint32_t(below(2)), 1), put(0, 1);
      put(kind_.progressive, 1), put(kind_.progressive, 1), put(0, 1);
      if (once_in(4)) {
        start(0xB5);
        put(3, 4);
        for (int k = 0; k < 4; ++k) {
          // Chroma has its own in 4:2:2 alone.
          const bool load = (kind_.chroma_422 || k < 2) && below(2);
          put(load, 1);
          if (load) put_matrix(k % 2 ? 16 : 8);
        }
      }
    }
    if (once_in(4)) start(0xB2), put(0x12345678, 32);
    const int rows = structure_ == 3 ? rows_ : rows_ / 2;
    for (int address = 0; address < rows * columns_;) {
      const int left = (kind_.mpeg2 || below(2) ? columns_ - address % columns_ : rows * columns_ - address);
      const int length = once_in(3) ? 1 + below(left) : left;
      write_slice(address, address + length);
      address += length;
    }
  }

  void write_slice(int first, int end) {
    start(1 + first / columns_);
    put(uint32_t(scale_ = pick_scale()), 5);
    if (once_in(4)) put(0x100, 9);
    put(0, 1);
    reset_vectors();
    reset_dc();
    previous_ = {};
    int last = first / columns_ * columns_ - 1;
    for (int address = first; address < end; ++address) {
      if (address > first && address < end - 1 && once_in(end - first > 40 ? 1 : 4) && skip(address)) continue;
      int increment = address - last;
      last = address;
      while (!kind_.mpeg2 && once_in(5)) put_code(mpeg::address_codes, 0), count("stuffing");
      for (; increment > 33; increment -= 33) put_code(mpeg::address_codes, mpeg::address_escape), count("escapes");
      put_code(mpeg::address_codes, increment);
      write_macroblock(address);
    }
  }

  /// Odd, or multiples of eight: with them, no DC is on or near an exact half.
  int pick_scale() { return once_in(4) ? 8 * (1 + below(3)) : 2 * below(16) + 1; }

  bool skip(int address) {
    if (type_ == 1 || (type_ == 3 && (previous_.intra || (!previous_.forward && !previous_.backward)))) return false;
    if (type_ == 3)
      for (int s : {forward, backward}) {
        const int scale = full_pel_[s] ? 2 : 1;
        const Vector v{predictors_[0][s][0] * scale, predictors_[0][s][1] * scale};
        if (!(s == forward ? previous_.forward : previous_.backward)) continue;
        if (!fits(v, whole(address))) return false;
        if (full_pel_[s]) count("full_pel in skipped");
      }
    else
      reset_vectors();
    reset_dc();
    count("skipped");
    return true;
  }

  Place whole(int address) const {
    return {address % columns_ * 16, address / columns_ * 16, 16, structure_ == 3 ? rows_ * 16 : rows_ * 8};
  }
  /// Part r of a macroblock with two vectors: a field's rows, or the upper or lower half.
  Place part(int address, int r) const {
    const Place p = whole(address);
    return structure_ == 3 ? Place{p.x, p.y / 2, 8, p.all_rows / 2} : Place{p.x, p.y + 8 * r, 8, p.all_rows};
  }
  bool fits(Vector v, const Place& p) const {
    const int x = 2 * p.x + v.x, y = 2 * p.y + v.y;
    return x >= 0 && y >= 0 && x <= 32 * (columns_ - 1) && y <= 2 * (p.all_rows - p.rows);
  }

  void write_macroblock(int address) {
    MacroblockType type;
    do {
      const bool coded = below(2), b = type_ == 3;
      type = {.quant = once_in(4), .forward = below(2) == 1, .backward = b && below(2), .pattern = coded};
      if (type_ == 1 || once_in(6)) type = {.quant = type.quant, .intra = true};
    } while (!is_possible(type));
    if (type_ == 1)
      put_code(mpeg::i_type_codes, type);
    else if (type_ == 2)
      put_code(mpeg::p_type_codes, type);
    else
      put_code(mpeg::b_type_codes, type);
    previous_ = type;

    const bool free_motion = structure_ != 3 || !frame_only_;
    int motion = structure_ == 3 ? frame_motion : field_motion;
    Vector difference;
    const bool moves = type.forward || type.backward;
    if (moves && free_motion) {
      motion = 1 + below(type_ == 2 && !two_b_ ? 3 : 2);
      if (motion == dual_prime && !pick_dual_prime(address, difference)) motion = field_motion;
      put(uint32_t(motion), 2);
      static const char* const names[2][4] = {{"", "field in frame", "frame", "dual prime in frame"},
                                              {"", "field", "16x8", "dual prime in field"}};
      count(names[structure_ != 3][motion]);
    }
    if (structure_ == 3 && !frame_only_ && (type.intra || type.pattern)) put(uint32_t(below(2)), 1);
    if (type.quant) put(uint32_t(scale_ = pick_scale()), 5);
    if (type.forward || (type.intra && concealment_)) put_vectors(forward, motion, address, difference);
    if (type.backward) put_vectors(backward, motion, address, difference);
    if (type.intra && concealment_) put(1, 1), count("concealment vectors");
    if (!moves && !(type.intra && concealment_)) reset_vectors();
    if (!type.intra) reset_dc();

    const int blocks = kind_.chroma_422 ? 8 : 6;
    int pattern = (1 << blocks) - 1;
    if (type.pattern) {
      pattern = 1 + below(pattern);
      put_code(mpeg::pattern_codes, kind_.chroma_422 ? pattern >> 2 : pattern);
      if (kind_.chroma_422) put(uint32_t(pattern & 3), 2);
    } else if (!type.intra) {
      return;
    }
    for (int k = 0; k < blocks; ++k)
      if (pattern >> (blocks - 1 - k) & 1) type.intra ? put_intra(k < 4 ? 0 : 1 + k % 2) : put_residual();
  }

  bool is_possible(const MacroblockType& type) const {
    if (type.intra) return true;
    if (!type.pattern && (type.quant || (!type.forward && !type.backward))) return false;
    return type.forward || type.backward || type_ == 2;
  }

  Vector pick_vector(int s, const Place& p, bool halved) {
    for (;;) {
      const int scale = full_pel_[s] ? 2 : 1, reach = 40 / scale;
      const Vector v{below(2 * reach) - reach, below(2 * reach) - reach};
      const int x_limit = 16 << (f_code_[s][0] - 1), y_limit = 16 << (f_code_[s][1] - 1);
      if (v.x < -x_limit || v.x >= x_limit || v.y < -y_limit || v.y >= y_limit) continue;
      // Vectors of fields in a frame have half the range.
      if (halved && (2 * v.y < -y_limit || 2 * v.y >= y_limit)) continue;
      if (fits({v.x * scale, v.y * scale}, p)) return v;
    }
  }

  bool pick_dual_prime(int address, Vector& difference) {
    const Place p = structure_ == 3 ? part(address, 0) : whole(address);
    const auto halves_away = [](int n) { return n < 0 ? -((1 - n) / 2) : (n + 1) / 2; };
    for (int tries = 0; tries < 50; ++tries) {
      dual_ = pick_vector(forward, p, structure_ == 3);
      difference = {below(3) - 1, below(3) - 1};
      bool all_fit = true;
      for (int bottom : {0, 1}) {
        if (structure_ != 3 && bottom != structure_ - 1) continue;
        const int m = structure_ != 3 || (bottom == 0) == top_first_ ? 1 : 3;
        all_fit &= fits(
            {halves_away(m * dual_.x) + difference.x, halves_away(m * dual_.y) + (bottom ? 1 : -1) + difference.y},
            p);
      }
      if (all_fit) return true;
    }
    return false;
  }

  void put_vectors(int s, int motion, int address, Vector difference) {
    const bool dual = motion == dual_prime, frame = structure_ == 3;
    const bool two = frame ? motion == field_motion : motion == halves, halved = frame && motion != frame_motion;
    for (int r = 0; r < (two ? 2 : 1); ++r) {
      if (two || (motion == field_motion && !dual)) put(uint32_t(below(2)), 1);
      const Vector v = dual ? dual_ : pick_vector(s, two ? part(address, r) : whole(address), halved);
      for (int t : {0, 1}) {
        int& predictor = predictors_[r][s][t];
        const bool half = halved && t == 1;
        put_component(t ? v.y : v.x, half ? predictor >> 1 : predictor, f_code_[s][t]);
        predictor = (t ? v.y : v.x) * (half ? 2 : 1);
        if (dual) put_code(mpeg::dual_prime_codes, t ? difference.y : difference.x);
      }
    }
    if (!two) std::copy_n(predictors_[0][s], 2, predictors_[1][s]);
  }

  void put_component(int component, int predictor, int f_code) {
    const int f = 1 << (f_code - 1), range = 32 * f;
    const int difference = ((component - predictor + range / 2) % range + range) % range - range / 2;
    const int magnitude = std::abs(difference) - 1;
    const int motion = difference == 0 ? 0 : magnitude / f + 1;
    put_code(mpeg::motion_codes, difference < 0 ? -motion : motion);
    if (motion && f > 1) put(uint32_t(magnitude % f), f_code - 1);
  }

  void put_intra(int component) {
    // As a coefficient, odd or a multiple of eight.
    int dc;
    do dc = below(256 << precision_);
    while ((dc << (3 - precision_)) % 2 == 0 && (dc << (3 - precision_)) % 8 != 0);
    const int difference = dc - std::exchange(dc_[component], dc);
    int size = 0;
    while (std::abs(difference) >> size) ++size;
    put_code(component ? mpeg::chroma_dc_codes : mpeg::luma_dc_codes, size);
    put(uint32_t(difference < 0 ? difference + (1 << size) - 1 : difference), size);
    put(intra_codes_ ? code("0110") : h261::end_of_block);
  }

  void put_residual() {
    const int level = below(3) - 1 ? 1 + below(4) : 1, sign = below(2);
    if (level == 1) {
      put(0b10 | uint32_t(sign), 2);
    } else {
      put(h261::escape), put(0, 6);
      const int signed_level = sign ? -level : level;
      put(uint32_t(signed_level) & (kind_.mpeg2 ? 0xFFF : 0xFF), kind_.mpeg2 ? 12 : 8);
    }
    put(h261::end_of_block);
  }

  void reset_vectors() { std::fill_n(&predictors_[0][0][0], 8, 0); }
  void reset_dc() { std::fill_n(dc_, 3, 128 << precision_); }
  void count(const std::string& what) { ++used_[what]; }

  const WrittenKind kind_;
  std::map<std::string, int>& used_;
  std::mt19937 random_;
  const int columns_, rows_;
  const bool two_b_;
  Bytes bytes_;
  int count_ = 0;
  // Of the picture, the slice, the macroblock:
  int type_ = 0, structure_ = 3, f_code_[2][2] = {}, precision_ = 0;
  bool full_pel_[2] = {}, frame_only_ = true, concealment_ = false, intra_codes_ = false, top_first_ = false;
  int scale_ = 0, predictors_[2][2][2] = {}, dc_[3] = {};
  MacroblockType previous_;
  Vector dual_;
};

}  // namespace

Bytes write_stream(const WrittenKind& kind, unsigned seed, std::map<std::string, int>& used) {
  return Writer(kind, seed, used).write();
}

}  // namespace mpeg_test
