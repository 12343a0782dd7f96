/// What a stream of ITU-T H.261 is made of, for the encoder and the decoder.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "bits/code.h"

namespace pqx_codec::h261 {

inline constexpr int start_code_bits = 16;  // 0000 0000 0000 0001, then four bits of group number, 0 for a picture
inline constexpr uint32_t start_code = 1;

/// Distance from the last macroblock of the group that was sent; 0 stuffs.
inline constexpr std::array<Coded<int>, 34> address_codes{{
    {code("1"), 1},
    {code("011"), 2},
    {code("010"), 3},
    {code("0011"), 4},
    {code("0010"), 5},
    {code("0001 1"), 6},
    {code("0001 0"), 7},
    {code("0000 111"), 8},
    {code("0000 110"), 9},
    {code("0000 1011"), 10},
    {code("0000 1010"), 11},
    {code("0000 1001"), 12},
    {code("0000 1000"), 13},
    {code("0000 0111"), 14},
    {code("0000 0110"), 15},
    {code("0000 0101 11"), 16},
    {code("0000 0101 10"), 17},
    {code("0000 0101 01"), 18},
    {code("0000 0101 00"), 19},
    {code("0000 0100 11"), 20},
    {code("0000 0100 10"), 21},
    {code("0000 0100 011"), 22},
    {code("0000 0100 010"), 23},
    {code("0000 0100 001"), 24},
    {code("0000 0100 000"), 25},
    {code("0000 0011 111"), 26},
    {code("0000 0011 110"), 27},
    {code("0000 0011 101"), 28},
    {code("0000 0011 100"), 29},
    {code("0000 0011 011"), 30},
    {code("0000 0011 010"), 31},
    {code("0000 0011 001"), 32},
    {code("0000 0011 000"), 33},
    {code("0000 0001 111"), 0},
}};

/// How a macroblock is coded. Predicted ones without a vector are predicted from their own place.
struct MacroblockType {
  bool intra = false, new_quant = false, vector = false, filter = false, coefficients = false;

  bool operator==(const MacroblockType&) const = default;
};

inline constexpr std::array<Coded<MacroblockType>, 10> type_codes{{
    {code("0001"), {.intra = true, .coefficients = true}},
    {code("0000 001"), {.intra = true, .new_quant = true, .coefficients = true}},
    {code("1"), {.coefficients = true}},
    {code("0000 1"), {.new_quant = true, .coefficients = true}},
    {code("0000 0000 1"), {.vector = true}},
    {code("0000 0001"), {.vector = true, .coefficients = true}},
    {code("0000 0000 01"), {.new_quant = true, .vector = true, .coefficients = true}},
    {code("001"), {.vector = true, .filter = true}},
    {code("01"), {.vector = true, .filter = true, .coefficients = true}},
    {code("0000 01"), {.new_quant = true, .vector = true, .filter = true, .coefficients = true}},
}};

/// Difference of a vector's component from the one before, modulo 32.
inline constexpr std::array<Coded<int>, 32> vector_codes{{
    {code("0000 0011 001"), -16},
    {code("0000 0011 011"), -15},
    {code("0000 0011 101"), -14},
    {code("0000 0011 111"), -13},
    {code("0000 0100 001"), -12},
    {code("0000 0100 011"), -11},
    {code("0000 0100 11"), -10},
    {code("0000 0101 01"), -9},
    {code("0000 0101 11"), -8},
    {code("0000 0111"), -7},
    {code("0000 1001"), -6},
    {code("0000 1011"), -5},
    {code("0000 111"), -4},
    {code("0001 1"), -3},
    {code("0011"), -2},
    {code("011"), -1},
    {code("1"), 0},
    {code("010"), 1},
    {code("0010"), 2},
    {code("0001 0"), 3},
    {code("0000 110"), 4},
    {code("0000 1010"), 5},
    {code("0000 1000"), 6},
    {code("0000 0110"), 7},
    {code("0000 0101 10"), 8},
    {code("0000 0101 00"), 9},
    {code("0000 0100 10"), 10},
    {code("0000 0100 010"), 11},
    {code("0000 0100 000"), 12},
    {code("0000 0011 110"), 13},
    {code("0000 0011 100"), 14},
    {code("0000 0011 010"), 15},
}};

/// Which of the six blocks have coefficients: 32 for the first of luma, 1 for the last of chroma.
inline constexpr std::array<Coded<int>, 63> pattern_codes{{
    {code("111"), 60},         {code("1101"), 4},         {code("1100"), 8},         {code("1011"), 16},
    {code("1010"), 32},        {code("1001 1"), 12},      {code("1001 0"), 48},      {code("1000 1"), 20},
    {code("1000 0"), 40},      {code("0111 1"), 28},      {code("0111 0"), 44},      {code("0110 1"), 52},
    {code("0110 0"), 56},      {code("0101 1"), 1},       {code("0101 0"), 61},      {code("0100 1"), 2},
    {code("0100 0"), 62},      {code("0011 11"), 24},     {code("0011 10"), 36},     {code("0011 01"), 3},
    {code("0011 00"), 63},     {code("0010 111"), 5},     {code("0010 110"), 9},     {code("0010 101"), 17},
    {code("0010 100"), 33},    {code("0010 011"), 6},     {code("0010 010"), 10},    {code("0010 001"), 18},
    {code("0010 000"), 34},    {code("0001 1111"), 7},    {code("0001 1110"), 11},   {code("0001 1101"), 19},
    {code("0001 1100"), 35},   {code("0001 1011"), 13},   {code("0001 1010"), 49},   {code("0001 1001"), 21},
    {code("0001 1000"), 41},   {code("0001 0111"), 14},   {code("0001 0110"), 50},   {code("0001 0101"), 22},
    {code("0001 0100"), 42},   {code("0001 0011"), 15},   {code("0001 0010"), 51},   {code("0001 0001"), 23},
    {code("0001 0000"), 43},   {code("0000 1111"), 25},   {code("0000 1110"), 37},   {code("0000 1101"), 26},
    {code("0000 1100"), 38},   {code("0000 1011"), 29},   {code("0000 1010"), 45},   {code("0000 1001"), 53},
    {code("0000 1000"), 57},   {code("0000 0111"), 30},   {code("0000 0110"), 46},   {code("0000 0101"), 54},
    {code("0000 0100"), 58},   {code("0000 0011 1"), 31}, {code("0000 0011 0"), 47}, {code("0000 0010 1"), 55},
    {code("0000 0010 0"), 59}, {code("0000 0001 1"), 27}, {code("0000 0001 0"), 39},
}};

/// Zeros in scan order, then a level; its sign follows the code, 1 for minus.
struct RunLevel {
  int run, level;
};

inline constexpr Code end_of_block = code("10");
inline constexpr Code escape = code("0000 01");  // then six bits of run and eight of level
/// Stands for run 0, level 1 where a block cannot end, as its first coefficient.
inline constexpr Code first_one = code("1");

inline constexpr std::array<Coded<RunLevel>, 63> coefficient_codes{{
    {code("11"), {0, 1}},
    {code("0100"), {0, 2}},
    {code("0010 1"), {0, 3}},
    {code("0000 110"), {0, 4}},
    {code("0010 0110"), {0, 5}},
    {code("0010 0001"), {0, 6}},
    {code("0000 0010 10"), {0, 7}},
    {code("0000 0001 1101"), {0, 8}},
    {code("0000 0001 1000"), {0, 9}},
    {code("0000 0001 0011"), {0, 10}},
    {code("0000 0001 0000"), {0, 11}},
    {code("0000 0000 1101 0"), {0, 12}},
    {code("0000 0000 1100 1"), {0, 13}},
    {code("0000 0000 1100 0"), {0, 14}},
    {code("0000 0000 1011 1"), {0, 15}},
    {code("011"), {1, 1}},
    {code("0001 10"), {1, 2}},
    {code("0010 0101"), {1, 3}},
    {code("0000 0011 00"), {1, 4}},
    {code("0000 0001 1011"), {1, 5}},
    {code("0000 0000 1011 0"), {1, 6}},
    {code("0000 0000 1010 1"), {1, 7}},
    {code("0101"), {2, 1}},
    {code("0000 100"), {2, 2}},
    {code("0000 0010 11"), {2, 3}},
    {code("0000 0001 0100"), {2, 4}},
    {code("0000 0000 1010 0"), {2, 5}},
    {code("0011 1"), {3, 1}},
    {code("0010 0100"), {3, 2}},
    {code("0000 0001 1100"), {3, 3}},
    {code("0000 0000 1001 1"), {3, 4}},
    {code("0011 0"), {4, 1}},
    {code("0000 0011 11"), {4, 2}},
    {code("0000 0001 0010"), {4, 3}},
    {code("0001 11"), {5, 1}},
    {code("0000 0010 01"), {5, 2}},
    {code("0000 0000 1001 0"), {5, 3}},
    {code("0001 01"), {6, 1}},
    {code("0000 0001 1110"), {6, 2}},
    {code("0001 00"), {7, 1}},
    {code("0000 0001 0101"), {7, 2}},
    {code("0000 111"), {8, 1}},
    {code("0000 0001 0001"), {8, 2}},
    {code("0000 101"), {9, 1}},
    {code("0000 0000 1000 1"), {9, 2}},
    {code("0010 0111"), {10, 1}},
    {code("0000 0000 1000 0"), {10, 2}},
    {code("0010 0011"), {11, 1}},
    {code("0010 0010"), {12, 1}},
    {code("0010 0000"), {13, 1}},
    {code("0000 0011 10"), {14, 1}},
    {code("0000 0011 01"), {15, 1}},
    {code("0000 0010 00"), {16, 1}},
    {code("0000 0001 1111"), {17, 1}},
    {code("0000 0001 1010"), {18, 1}},
    {code("0000 0001 1001"), {19, 1}},
    {code("0000 0001 0111"), {20, 1}},
    {code("0000 0001 0110"), {21, 1}},
    {code("0000 0000 1111 1"), {22, 1}},
    {code("0000 0000 1111 0"), {23, 1}},
    {code("0000 0000 1110 1"), {24, 1}},
    {code("0000 0000 1110 0"), {25, 1}},
    {code("0000 0000 1101 1"), {26, 1}},
}};

/// Groups of 11 x 3 macroblocks. A QCIF picture holds the odd numbers, one below the other.
struct PictureFormat {
  bool cif;

  constexpr int width() const { return cif ? 352 : 176; }
  constexpr int height() const { return cif ? 288 : 144; }
  constexpr int macroblocks() const { return width() / 16 * (height() / 16); }
  /// Of a coded picture.
  size_t most_bits() const { return size_t{cif ? 256u : 64u} * 1024; }
  bool has_group(int number) const { return number >= 1 && (cif ? number <= 12 : number <= 5 && number % 2 == 1); }
  int next_group(int number) const { return number + (cif ? 1 : 2); }
  int group_x(int number) const { return cif && number % 2 == 0 ? 176 : 0; }
  int group_y(int number) const { return (number - 1) / 2 * 48; }
};

inline constexpr int macroblocks_in_group = 33, macroblocks_in_row = 11;

/// The vector that a vector is coded against is that of the macroblock to the left, unless a row begins or that
/// macroblock was left out or had none.
constexpr bool starts_vector_row(int address) { return address % macroblocks_in_row == 1; }

/// A component of a vector, or a difference of two, modulo 32: -16..15.
constexpr int wrapped(int component) {
  return component < -16 ? component + 32 : component > 15 ? component - 32 : component;
}

}  // namespace pqx_codec::h261
