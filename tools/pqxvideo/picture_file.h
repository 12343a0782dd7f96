#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "codec.h"
#include "core/memory.h"
#include "formats.h"
#include "picture/image.h"

namespace pqxvideo {

/// The most bytes of a file that holds a picture: uncompressed samples of four times 16 bits, and what goes with them.
constexpr size_t most_picture_bytes(int64_t max_pixels) { return 8 * size_t(max_pixels) + (size_t{1} << 26); }
/// That for a file that begins so. Throws Failure unless it is a PNG, PNM or JPEG file.
size_t picture_limit(std::span<const uint8_t> head, int64_t max_pixels);

/// Reads a PNG, PNM or JPEG file, told apart by how it begins. A picture that is to be shown turned is reported.
Image read_picture(const std::string& path, int64_t max_pixels = default_max_pixels);
/// The same from the bytes of the file.
Image decode_picture(const std::string& path, OwnedBytes bytes, int64_t max_pixels);

/// Reports that Exif data ask for another orientation than upright.
void report_orientation(const std::string& path, int orientation);

/// Writes a picture as PNG or PNM.
void write_picture(const std::string& path, const Image& image, Format::Kind format);
/// The same by the ending of the name.
void write_picture(const std::string& path, const Image& image);

}  // namespace pqxvideo
