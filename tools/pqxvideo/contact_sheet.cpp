#include "contact_sheet.h"

#include <algorithm>
#include <cstdlib>

namespace pqxvideo {

Image contact_sheet(const Image& original, const std::vector<Image>& decoded) {
  for (const Image& picture : decoded)
    if (picture.width() != original.width() || picture.height() != original.height() ||
        picture.channels() != original.channels())
      throw Failure("the pictures differ in size or kind");
  const int64_t width = int64_t{3} * original.width(), height = int64_t(decoded.size()) * original.height();
  check_dimensions(width, height);

  Image sheet{int(width), int(height), original.channels()};
  const size_t bytes = original.row_bytes();
  for (int y = 0; y < sheet.height(); ++y) {
    const uint8_t* const a = original.row(y % original.height());
    const uint8_t* const b = decoded[size_t(y / original.height())].row(y % original.height());
    uint8_t* const out = sheet.row(y);
    std::copy_n(a, bytes, out);
    std::copy_n(b, bytes, out + bytes);
    for (size_t i = 0; i < bytes; ++i) out[2 * bytes + i] = uint8_t(std::min(8 * std::abs(a[i] - b[i]), 255));
  }
  return sheet;
}

}  // namespace pqxvideo
