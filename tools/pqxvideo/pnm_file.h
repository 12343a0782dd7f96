#pragma once

#include <cstdint>
#include <span>

#include "files.h"
#include "image.h"

namespace pqxvideo {

bool is_pnm(std::span<const uint8_t> bytes);

/// Reads a binary PGM or PPM of 8-bit samples; a maximum below 255 is scaled up to it.
Image read_pnm(std::span<const uint8_t> bytes);
/// The same, in the memory of the file where rows need no padding.
Image read_pnm(FileBytes&& file);

/// Writes P5 for a grey picture, P6 for one in colour.
void write_pnm(const Image& image, OutputFile& file);

}  // namespace pqxvideo
