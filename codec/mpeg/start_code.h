#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pqx_codec::mpeg {

/// Where the next 00 00 01 begins; bytes.size() if there is none.
inline size_t find_start_code(std::span<const uint8_t> bytes, size_t from = 0) {
  size_t i = from + 2;
  while (i < bytes.size()) {
    if (bytes[i] > 1)
      i += 3;
    else if (bytes[i] == 0)
      ++i;
    else if (bytes[i - 1] == 0 && bytes[i - 2] == 0)
      return i - 2;
    else
      i += 3;
  }
  return bytes.size();
}

}  // namespace pqx_codec::mpeg
