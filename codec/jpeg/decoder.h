#pragma once

#include <cstdint>
#include <span>

#include "jpeg/row_converter.h"
#include "picture/image.h"

namespace pqx_codec::jpeg {

bool is_file(std::span<const uint8_t> bytes);

/// Decodes a baseline JPEG to a grey or RGB picture. Throws Failure for any other kind and for a damaged file.
Image decode(std::span<const uint8_t> bytes, Upsampling upsampling = Upsampling::bilinear);

}  // namespace pqx_codec::jpeg
