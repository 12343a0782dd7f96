#include "picture/exif.h"

#include <cstddef>

namespace pqx_codec {

int exif_orientation(std::span<const uint8_t> tiff) {
  constexpr uint32_t orientation = 0x0112;
  if (tiff.size() < 8 || tiff[0] != tiff[1] || (tiff[0] != 'I' && tiff[0] != 'M')) return 1;
  const bool little_endian = tiff[0] == 'I';
  const auto number = [&](size_t at, size_t bytes) {
    uint32_t value = 0;
    for (size_t i = 0; i < bytes && at + i < tiff.size(); ++i)
      value |= uint32_t{tiff[at + i]} << 8 * (little_endian ? i : bytes - 1 - i);
    return value;
  };
  // A directory: the number of its entries, and each of those a tag, a type, a count and a value.
  const size_t directory = number(4, 4), entries = number(directory, 2);
  for (size_t entry = directory + 2, k = 0; k < entries && entry + 12 <= tiff.size(); ++k, entry += 12)
    if (number(entry, 2) == orientation) {
      const uint32_t value = number(entry + 8, 2);
      return value >= 1 && value <= 8 ? int(value) : 1;
    }
  return 1;
}

}  // namespace pqx_codec
