#pragma once

#include <cstdint>
#include <span>

#include "core/byte_sink.h"
#include "core/memory.h"
#include "picture/image.h"

namespace pqx_codec {

bool is_pnm(std::span<const uint8_t> bytes);

/// Reads a binary PGM or PPM of 8-bit samples; a maximum below 255 is scaled up to it.
Image read_pnm(std::span<const uint8_t> bytes);
/// The same, in the memory of the file where rows need no padding.
Image read_pnm(OwnedBytes&& file);

/// Writes P5 for a grey picture, P6 for one in colour.
void write_pnm(const Image& image, ByteSink& out);

}  // namespace pqx_codec
