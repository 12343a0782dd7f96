#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "picture/image.h"
#include "picture/plane.h"

namespace pqx_codec::jpeg {

enum class Upsampling { nearest, bilinear };

/// What the components of a picture stand for. CMYK is kept inverted: 255 is no ink.
enum class ColorModel { grey, ycc, rgb, cmyk, ycck };

/// How many columns and rows of the picture a sample of the second and of the third component spans.
struct ChromaRatio {
  int columns, rows;
  bool operator==(const ChromaRatio&) const = default;
};

/// Turns the components of a picture into its grey or RGB rows.
class RowConverter {
 public:
  /// @param ratio  1 x 1, 2 x 1 or 2 x 2
  /// @param planes, image  must outlive the converter
  RowConverter(ColorModel model, ChromaRatio ratio, Upsampling upsampling, const std::vector<Plane>& planes,
               Image& image);

  /// Converts, from where the last call stopped, what the first `rows` rows of the picture allow, given with the
  /// chroma that belongs to them: an even number, or all.
  void convert_through(int rows);

 private:
  using RowPair = std::array<uint8_t*, 2>;

  void convert_pair(int pair);
  void convert_ycc(int pair, RowPair out) const;
  void convert_upsampled(int pair, RowPair out);
  RowPair full_rows(size_t component, int pair);
  uint8_t* chroma_row(size_t component, int row) const;

  ColorModel model_;
  ChromaRatio ratio_;
  bool bilinear_;
  const std::vector<Plane>& planes_;
  Image& image_;
  int even_width_;
  int next_pair_ = 0;
  std::vector<uint8_t> last_row_;  // the row below a picture of odd height
  std::array<std::vector<uint8_t>, 4> upsampled_;
  std::vector<uint8_t> cmyk_;
};

}  // namespace pqx_codec::jpeg
