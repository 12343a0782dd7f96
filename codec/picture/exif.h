#pragma once

#include <cstdint>
#include <span>

namespace pqx_codec {

/// The orientation that Exif data (a TIFF header with its first directory) state, 1..8. It is 1, upright, if they state
/// none or are damaged.
int exif_orientation(std::span<const uint8_t> tiff);

}  // namespace pqx_codec
