#pragma once

#include <cstdint>
#include <span>

#include "core/byte_sink.h"
#include "picture/image.h"

namespace pqx_codec {

bool is_png(std::span<const uint8_t> bytes);

/// Reads a PNG as 8-bit grey or RGB samples: palettes are resolved, deeper samples scaled, alpha is dropped.
Image read_png(std::span<const uint8_t> bytes);

void write_png(const Image& image, ByteSink& out);

}  // namespace pqx_codec
