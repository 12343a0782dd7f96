/// What stands before the coded data of a JPEG file: marker segments, tables, and the kind of picture.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jpeg/format.h"
#include "jpeg/row_converter.h"

namespace pqx_codec::jpeg {

[[noreturn]] void damaged(const std::string& what);
[[noreturn]] void not_supported(const std::string& what);

constexpr int divide_up(int a, int b) { return (a + b - 1) / b; }

/// The bytes of a marker segment, taken from its front. Throws Failure if there are too few.
class Segment {
 public:
  explicit Segment(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }
  int byte() { return take(1)[0]; }
  int word();
  std::span<const uint8_t> take(size_t count);
  bool starts_with(std::string_view text) const;
  std::span<const uint8_t> rest() const { return bytes_; }

 private:
  std::span<const uint8_t> bytes_;
};

/// Goes through a file from marker to marker. Throws Failure where none stands or the file ends.
class MarkerReader {
 public:
  explicit MarkerReader(std::span<const uint8_t> file) : rest_(file) {}

  uint8_t next_marker();
  Segment next_segment();
  /// What has not been read yet.
  std::span<const uint8_t> rest() const { return rest_; }
  void skip(size_t bytes) { rest_ = rest_.subspan(bytes); }

 private:
  std::span<const uint8_t> rest_;
};

/// The tables that are in force.
struct Tables {
  std::array<std::optional<QuantTable>, 4> steps;
  // Frames of motion JPEG leave the customary tables out.
  std::array<HuffmanSpec, 4> dc{standard_luma_dc, standard_chroma_dc};
  std::array<HuffmanSpec, 4> ac{standard_luma_ac, standard_chroma_ac};

  void read_quantization(Segment segment);
  void read_huffman(Segment segment);
};

struct Component {
  int id;
  int horizontal, vertical;  // blocks in an MCU of all components
  int steps_index;
  int columns = 0, rows = 0;  // samples
  bool decoded = false;
};

/// The picture as its header describes it.
struct Frame {
  int width, height;
  int horizontal = 1, vertical = 1;  // the largest of the components
  ChromaRatio ratio{1, 1};
  std::vector<Component> components;

  /// Throws Failure for a kind of picture that is not decoded.
  explicit Frame(Segment segment);

  int mcu_columns() const { return divide_up(width, 8 * horizontal); }
  int mcu_rows() const { return divide_up(height, 8 * vertical); }
  int64_t blocks() const;

 private:
  void check_sampling();
};

/// What segments for applications say of the colours.
struct ColorHints {
  bool jfif = false;
  std::optional<int> adobe_transform;

  void read_jfif(Segment segment);
  void read_adobe(Segment segment);
  ColorModel model_of(const Frame& frame) const;
};

}  // namespace pqx_codec::jpeg
