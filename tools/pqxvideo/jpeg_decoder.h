#pragma once

#include <cstdint>
#include <span>

#include "image.h"
#include "row_converter.h"

namespace pqxvideo {

bool is_jpeg(std::span<const uint8_t> bytes);

/// Decodes a baseline JPEG to a grey or RGB picture. Throws Failure for any other kind and for a damaged file.
Image decode_jpeg(std::span<const uint8_t> bytes, Upsampling upsampling = Upsampling::bilinear);

}  // namespace pqxvideo
