#pragma once

#include <cstdint>
#include <span>

#include "jpeg/row_converter.h"
#include "picture/image.h"

namespace pqx_codec::jpeg {

/// Whether a file that begins with these bytes is a JPEG.
bool is_file(std::span<const uint8_t> bytes);

/// Decodes a baseline JPEG to a grey or RGB picture. Beside the picture, 3 bytes for each pixel, it holds the coded data
/// of a scan and, if components come in scans of their own, their samples: up to 4 bytes for each pixel.
/// Throws Failure for any other kind, for a damaged file and for a picture of more than max_pixels.
Image decode(std::span<const uint8_t> bytes, Upsampling upsampling = Upsampling::bilinear,
             int64_t max_pixels = default_max_pixels);

/// The orientation that the Exif data of a JPEG state, 1..8; 1 if there are none. It is not applied by decode().
int orientation(std::span<const uint8_t> bytes);

}  // namespace pqx_codec::jpeg
