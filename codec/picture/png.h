#pragma once

#include <cstdint>
#include <span>

#include "core/byte_sink.h"
#include "picture/image.h"

namespace pqx_codec {

/// Whether a file that begins with these bytes is a PNG.
bool is_png(std::span<const uint8_t> bytes);

/// Reads a PNG as 8-bit grey or RGB samples: palettes are resolved, deeper samples scaled, alpha is dropped. Texts,
/// profiles and whatever else does not change samples is passed over.
/// Throws Failure for a damaged file and for a picture of more than max_pixels.
Image read_png(std::span<const uint8_t> bytes, int64_t max_pixels = default_max_pixels);

/// The orientation that the Exif data of a PNG state, 1..8; 1 if there are none. It is not applied by read_png().
int png_orientation(std::span<const uint8_t> bytes);

/// Writes a grey or RGB picture.
void write_png(const Image& image, ByteSink& out);

}  // namespace pqx_codec
