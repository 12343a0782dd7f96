/// Writes H.263 streams that no encoder here makes: random, but valid, with blocks of a DC alone, which all inverse
/// transforms turn into the same samples.
#pragma once

#include <random>
#include <string>
#include <string_view>

#include "h263/format.h"
#include "pictures.h"

namespace tool_test {

struct H263Options {
  int width = 176, height = 144;
  bool plus = false;  // PLUSPTYPE, which all annexes but D and F need
  bool unrestricted = false, overlapped = false, advanced_intra = false, deblocking = false, slices = false,
       modified_quant = false;
  int pictures = 6;
};

class H263Writer {
 public:
  H263Writer(const H263Options& options, unsigned seed) : o_(options), random_(seed) {}

  Bytes write() {
    for (int k = 0; k < o_.pictures; ++k) put_picture(k % 4 != 0);
    align();
    put(0b111111, 22);  // end of the stream
    align();
    Bytes bytes;
    for (size_t i = 0; i < bits_.size(); i += 8) bytes.push_back(uint8_t(std::stoi(bits_.substr(i, 8), nullptr, 2)));
    return bytes;
  }

 private:
  int below(int n) { return int(random_() % unsigned(n)); }
  bool one_in(int n) { return below(n) == 0; }
  void put(int value, int n) {
    for (; n > 0; --n) bits_ += value >> (n - 1) & 1 ? '1' : '0';
  }
  void align() { bits_.resize((bits_.size() + 7) / 8 * 8, '0'); }
  /// The code at a place of a list.
  void put_code(std::string_view list, int place) {
    for (; place > 0; --place) list.remove_prefix(list.find_first_of(" /") + 1);
    bits_ += list.substr(0, list.find_first_of(" /"));
  }

  void put_picture(bool predicted) {
    predicted_ = predicted;
    const int format = o_.width == 128 ? 1 : o_.width == 176 ? 2 : o_.width == 352 ? 3 : 6;
    quant_ = 1 + below(31);
    align();
    put(0b100000, 22);
    put(below(256), 8);
    put(0b10, 2);
    put(below(8), 3);
    if (o_.plus) {
      put_plus_type(format);
    } else {
      put(format, 3);
      for (const bool flag : {predicted, o_.unrestricted, false, o_.overlapped, false}) put(flag, 1);
      put(quant_, 5);
      put(0, 1);
    }
    for (; one_in(3);) put(1 << 8 | below(256), 9);  // supplemental information
    put(0, 1);
    if (o_.slices) {
      put(1, 1);
      put(0, address_bits());
      put(1, 1);
    }
    const int columns = (o_.width + 15) / 16, rows = (o_.height + 15) / 16;
    four_before_ = false;
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < columns; ++x) {
        if (x + y > 0 && (x == 0 || (o_.slices && !o_.overlapped)) && one_in(o_.slices ? 9 : 3)) {
          if (!o_.slices || !one_in(3)) align();
          put_segment_header(y * columns + x, y);
        }
        put_macroblock(x);
      }
  }

  void put_plus_type(int format) {
    const bool all = !predicted_ || one_in(2);
    put(7, 3);
    put(all, 3);
    if (all) {
      put(format, 3);
      for (const bool flag : {true, o_.unrestricted, false, o_.overlapped, o_.advanced_intra, o_.deblocking,
                              o_.slices, false, false, false, o_.modified_quant, true, false, false, false})
        put(flag, 1);
    }
    put(predicted_, 3);
    put(0, 2);
    put(below(2), 1);  // rounding
    put(1, 3);
    put(0, 1);
    if (all && format == 6) {
      put(2, 4);
      put(o_.width / 4 - 1, 9);
      put(1, 1);
      put(o_.height / 4, 9);
    }
    if (all) put(72, 8);  // a clock of its own: 25 pictures a second
    put(0, 2);
    if (all && o_.unrestricted) put(1, one_in(2) ? 1 : 2);
    if (all && o_.slices) put(0, 2);
    put(quant_, 5);
  }

  int address_bits() const {
    const int count = (o_.width + 15) / 16 * ((o_.height + 15) / 16);
    return count <= 48 ? 6 : count <= 99 ? 7 : count <= 396 ? 9 : 11;
  }

  void put_segment_header(int address, int row) {
    put(1, 17);
    quant_ = 1 + below(31);
    if (o_.slices) {
      put(1, 1);
      put(address, address_bits());
      put(quant_, 5);
      put(1, 1);
      put(0, 2);
    } else {
      put(row, 5);
      put(0, 2);
      put(quant_, 5);
    }
  }

  void put_macroblock(int column) {
    using namespace pqx_codec::h263;
    // Where ffmpeg overlaps predictions, it knows the macroblock to the right only behind one with four vectors: behind
    // an intra one it gets none with vectors, and behind one that is not coded the row must end.
    const bool without_vectors = o_.overlapped && column > 0 && !four_before_;
    const bool may_skip = !o_.overlapped || column == (o_.width - 1) / 16;
    four_before_ = false;
    const auto stuff = [&](std::string_view codes, int place) {
      for (; one_in(20);) {
        if (predicted_) put(0, 1);
        put_code(codes, place);
      }
    };
    auto type = Type(int(Type::intra) + below(2));
    if (predicted_) {
      stuff(predicted_type_codes, 24);
      const bool skipped = may_skip && one_in(5);
      put(skipped, 1);
      if (skipped) return;
      if (!without_vectors && !one_in(o_.overlapped ? 12 : 6)) {
        constexpr Type types[] = {Type::four_vectors, Type::four_vectors_with_quant, Type::inter,
                                  Type::inter_with_quant};
        type = types[below(o_.overlapped ? o_.plus ? 2 : 1 : 4)];
        if (type == Type::four_vectors_with_quant && !o_.plus) type = Type::four_vectors;
      }
    } else {
      stuff(intra_type_codes, 8);
    }
    const bool intra = type == Type::intra || type == Type::intra_with_quant;
    const bool four = type == Type::four_vectors || type == Type::four_vectors_with_quant;
    const bool new_quant =
        type == Type::intra_with_quant || type == Type::inter_with_quant || type == Type::four_vectors_with_quant;
    four_before_ = four;
    const bool coefficients = !intra || o_.advanced_intra;
    const int chroma = coefficients ? below(4) : 0, luma = coefficients ? below(16) : 0;
    if (predicted_)
      put_code(predicted_type_codes, int(type) * 4 + chroma);
    else
      put_code(intra_type_codes, (int(type) - int(Type::intra)) * 4 + chroma);
    if (intra && o_.advanced_intra) put_code("0 10 11", below(3));
    put_code(pattern_codes, intra ? luma : 15 - luma);
    if (new_quant) put_quant();
    if (!intra)
      for (int k = 0; k < (four ? 4 : 1); ++k) put_vector();
    for (int k = 0; k < 6; ++k) {
      if (intra && !o_.advanced_intra) {
        const int dc = 1 + below(255);
        put(dc == 128 ? 255 : dc, 8);
      }
      if ((luma << 2 | chroma) & 32 >> k) put_level(intra && o_.advanced_intra);
    }
  }

  void put_quant() {
    using namespace pqx_codec::h263;
    const int choice = below(4);
    if (!o_.modified_quant) {
      constexpr int changes[] = {-1, -2, 1, 2};
      put(choice, 2);
      quant_ = std::clamp(quant_ + changes[choice], 1, 31);
    } else if (choice < 2) {
      put(2 | choice, 2);
      quant_ += small_step(quant_, choice);
    } else {
      quant_ = 1 + below(31);
      put(quant_, 6);
    }
  }

  void put_vector() {
    using namespace pqx_codec::h263;
    int difference[2];
    for (int& d : difference) {
      const int size = below(one_in(4) ? 33 : 5);
      d = one_in(2) || size == 32 ? -size : size;
      if (o_.plus && o_.unrestricted) {
        put_reversible(d);
      } else {
        put_code(vector_codes, size);
        if (size) put(d < 0, 1);
      }
    }
    if (o_.plus && o_.unrestricted && difference[0] == 1 && difference[1] == 1) put(1, 1);
  }

  void put_reversible(int d) {
    if (d == 0) return put(1, 1);
    const int size = std::abs(d);
    int digits = 0;
    while (size >> (digits + 1)) ++digits;
    put(0, 1);
    for (; digits > 0; --digits) put((size >> (digits - 1) & 1) << 1 | 1, 2);
    put((d < 0) << 1, 2);
  }

  /// One coefficient, the first.
  void put_level(bool advanced_intra) {
    using namespace pqx_codec::h263;
    // ffmpeg does not clip coefficients: they stay within 11 bits, and the sums that Annex I makes of them likely so.
    const int most = (advanced_intra ? 150 : 2040) / (2 * quant_) - 1;
    if (most < 3 || !one_in(4)) {
      put_code((advanced_intra ? advanced_intra_codes : coefficient_codes).last, below(std::clamp(most, 1, 3)));
      return put(below(2), 1);
    }
    bits_ += escape_code;
    put(1 << 6, 7);
    const int level = (1 + below(most)) * (one_in(2) ? 1 : -1);
    if (std::abs(level) < 128) return put(level & 255, 8);
    if (!o_.modified_quant) return put(level < 0 ? 129 : 127, 8);
    put(128, 8);
    put(level & 31, 5);
    put(level >> 5 & 63, 6);
  }

  H263Options o_;
  std::mt19937 random_;
  std::string bits_;
  int quant_ = 0;
  bool predicted_ = false, four_before_ = false;
};

}  // namespace tool_test
