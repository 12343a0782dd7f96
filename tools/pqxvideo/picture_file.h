#pragma once

#include <string>

#include "codec.h"
#include "picture/image.h"

namespace pqxvideo {

/// Reads a PNG, PNM or JPEG file, told apart by how it begins.
Image read_picture(const std::string& path);

/// Whether write_picture() knows the kind of file that a name asks for by its ending.
bool is_writable_kind(const std::string& path);

/// Writes a PNG or PNM file, by the ending of its name.
void write_picture(const std::string& path, const Image& image);

}  // namespace pqxvideo
