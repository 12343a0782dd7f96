#pragma once

#include <cstdint>
#include <span>

#include "core/byte_sink.h"
#include "core/memory.h"
#include "picture/image.h"

namespace pqx_codec {

/// Whether a file that begins with these bytes is a PNM of any type.
bool is_pnm(std::span<const uint8_t> bytes);

/// Reads a binary PGM or PPM of 8-bit samples; a maximum below 255 is scaled up to it, rounded.
/// Throws Failure for other types, for a damaged file and for a picture of more than max_pixels.
Image read_pnm(std::span<const uint8_t> bytes, int64_t max_pixels = default_max_pixels);
/// The same, in the memory of the file where rows need no padding.
Image read_pnm(OwnedBytes&& file, int64_t max_pixels = default_max_pixels);

/// Writes P5 for a grey picture, P6 for one in colour.
void write_pnm(const Image& image, ByteSink& out);

}  // namespace pqx_codec
