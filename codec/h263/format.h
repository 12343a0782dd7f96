/// What a stream of ITU-T H.263 is made of.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "bits/zig_zag.h"
#include "core/failure.h"

namespace pqx_codec::h263 {

[[noreturn]] inline void damaged(const std::string& what) { throw Failure("damaged H.263 stream: " + what); }

/// Type and chroma pattern: four places for each of the types, then stuffing. Intra pictures have the types from
/// `intra` on.
enum class Type { inter, inter_with_quant, four_vectors, intra, intra_with_quant, four_vectors_with_quant };
inline constexpr int types_in_intra_pictures = 2, types_in_predicted_pictures = 6;
inline constexpr std::string_view intra_type_codes = "1 001 010 011 0001 000001 000010 000011 000000001";
inline constexpr std::string_view predicted_type_codes =
    "1 0011 0010 000101 011 0000111 0000110 000000101 010 0000101 0000100 00000101 "
    "00011 00000100 00000011 0000011 000100 000000100 000000011 000000010 "
    "00000000010 0000000001100 0000000001110 0000000001111 000000001";

/// Luma pattern of intra macroblocks: 8 for the first block, 1 for the last. Others have its complement.
inline constexpr std::string_view pattern_codes =
    "0011 00101 00100 1001 00011 0111 000010 1011 00010 000011 0101 1010 0100 1000 0110 11";

/// Magnitude of a vector component's difference from its prediction. Its sign follows unless it is zero.
inline constexpr std::string_view vector_codes =
    "1 01 001 0001 000011 0000101 0000100 0000011 000001011 000001010 000001001 0000010001 0000010000 "
    "0000001111 0000001110 0000001101 0000001100 0000001011 0000001010 0000001001 0000001000 0000000111 "
    "0000000110 0000000101 0000000100 00000000111 00000000110 00000000101 00000000100 00000000011 00000000010 "
    "000000000011 000000000010";

/// Coefficients: the codes of the levels 1, 2, ... behind no zero, behind one zero, ...; first those that others
/// follow in the block, then those that end it. The sign follows each code.
struct CoefficientCodes {
  std::string_view inner, last;
};
inline constexpr std::string_view escape_code = "0000011";  // then one bit for the last, six of run, eight of level
inline constexpr CoefficientCodes coefficient_codes{
    "10 1111 010101 0010111 00011111 000100101 000100100 0000100001 0000100000 00000000111 00000000110 00000100000/"
    "110 010100 00011110 0000001111 00000100001 000001010000/1110 00011101 0000001110 000001010001/"
    "01101 000100011 0000001101/01100 000100010 000001010010/01011 0000001100 000001010011/"
    "010011 0000001011 000001010100/010010 0000001010/010001 0000001001/010000 0000001000/0010110 000001010101/"
    "0010101/0010100/00011100/00011011/000100001/000100000/000011111/000011110/000011101/000011100/000011011/"
    "000011010/00000100010/00000100011/000001010110/000001010111",
    "0111 000011001 00000000101/001111 00000000100/001110/001101/001100/0010011/0010010/0010001/0010000/00011010/"
    "00011001/00011000/00010111/00010110/00010101/00010100/00010011/000011000/000010111/000010110/000010101/"
    "000010100/000010011/000010010/000010001/0000000111/0000000110/0000000101/0000000100/00000100100/00000100101/"
    "00000100110/00000100111/000001011000/000001011001/000001011010/000001011011/000001011100/000001011101/"
    "000001011110/000001011111"};
/// The same codes as Annex I gives them other meanings, in intra macroblocks.
inline constexpr CoefficientCodes advanced_intra_codes{
    "10 110 1110 01100 01101 010000 010001 010010 0010110 00011011 000100000 000100001 000011010 000011011 "
    "000011100 000011101 000011110 000011111 00000100011 00000100010 000001010111 000001010110 000001010101 "
    "000001010100 000001010011/1111 010100 0010100 00011110 0000001111 00000100001 000001010000/"
    "01011 0010101 0000001110 0000001001/010101 00011101 0000001101 000001010001/010011 000100011 00000000111/"
    "0010111 000100010 000001010010/00011100 0000001100/00011111 0000001011/000100101 0000001010/"
    "000100100 00000000110/0000100001/0000100000/0000001000/00000100000",
    "0111 001100 0010000 00010011 000010001 000010010 0000000100 00000100111 00000100110 000001011111/"
    "001111 000010011 0000000101 00000100101/001110 000010100 00000100100/001101 0000000110 000001011110/"
    "0010001 0000000111/0010011 000001011101/0010010 000001011100/00010100 000001011011/00010101/00011010/"
    "00011001/00011000/00010111/00010110/000011001/000010101/000010110/000011000/000010111/00000000100/"
    "00000000101/000001011000/000001011001/000001011010"};

/// Positions of coefficients in scan order, in reading order of a block: zig-zag, and the two of Annex I.
enum class Scan : size_t { zigzag, horizontal, vertical };
inline constexpr auto scans = [] {
  constexpr std::array<uint8_t, 64> vertical_places{0,  4,  6,  20, 22, 36, 38, 52, 1,  5,  7,  21, 23, 37, 39, 53,
                                                    2,  8,  19, 24, 34, 40, 50, 54, 3,  9,  18, 25, 35, 41, 51, 55,
                                                    10, 17, 26, 30, 42, 46, 56, 60, 11, 16, 27, 31, 43, 47, 57, 61,
                                                    12, 15, 28, 32, 44, 48, 58, 62, 13, 14, 29, 33, 45, 49, 59, 63};
  std::array<std::array<uint8_t, 64>, 3> positions{};
  std::copy_n(natural_position.begin(), 64, positions[0].begin());
  for (unsigned i = 0; i < 64; ++i) {
    positions[2][vertical_places[i]] = uint8_t(i);
    positions[1][vertical_places[i]] = uint8_t(i % 8 * 8 + i / 8);
  }
  return positions;
}();

inline constexpr int max_quant = 31;

/// Annex T: the change of a quantizer by its two small steps, and the quantizer of chroma.
constexpr int small_step(int quant, bool second) {
  if (quant == 1) return second ? 1 : 2;
  if (quant == 29) return second ? 2 : -3;
  if (quant == 30) return second ? 1 : -3;
  if (quant == 31) return second ? -5 : -3;
  const int size = quant <= 10 ? 1 : quant <= 20 ? 2 : 3;
  return second ? size : -size;
}
inline constexpr std::array<uint8_t, max_quant + 1> chroma_quants{0,  1,  2,  3,  4,  5,  6,  6,  7,  8,  9,
                                                                  9,  10, 10, 11, 11, 12, 12, 12, 13, 13, 13,
                                                                  14, 14, 14, 14, 14, 15, 15, 15, 15, 15};

/// Annex J: strength of the deblocking filter.
inline constexpr std::array<uint8_t, max_quant + 1> filter_strength{
    0, 1, 1, 2, 2, 3, 3, 4, 4, 4, 5, 5, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10, 10, 11, 11, 11, 12, 12, 12};

}  // namespace pqx_codec::h263
