#pragma once

#include <cstdint>
#include <vector>

#include "picture/image.h"

namespace pqx_codec::jpeg {

enum class Sampling { s444, s422, s420 };

struct EncoderOptions {
  int quality = 75;  // 1..100
  Sampling sampling = Sampling::s420;
  bool optimize = false;  // Huffman tables made for the picture
};

/// Encodes a grey or RGB picture as a baseline JFIF file. Throws Failure for more than 65535 columns or rows.
std::vector<uint8_t> encode(const Image& image, const EncoderOptions& options);

}  // namespace pqx_codec::jpeg
