/// MPEG streams and what decoders make of them.
#pragma once

#include <map>
#include <string>

#include "../tool/pictures.h"
#include "mpeg/decoder.h"

namespace mpeg_test {

using tool_test::Bytes;
using tool_test::Workplace;

/// Whether the wide runs of tests are asked for, too.
bool is_thorough();

/// The samples of all frames, planes one after the other, as they are shown.
struct Decoded {
  Bytes samples;
  int frames = 0;
  pqx_codec::mpeg::Sequence sequence;
};

/// Decodes a stream that is handed over in pieces.
Decoded decode(const Bytes& stream, pqx_codec::mpeg::DecoderOptions options = {}, size_t piece = 5000);

/// What ffmpeg makes of it by one of its inverse transforms.
Bytes ffmpeg(const Bytes& stream, const std::string& idct);
/// What mpeg2dec makes of a 4:2:0 stream, cut to the size that is shown.
Bytes mpeg2dec(Bytes stream, int width, int height);

/// Encodes a clip by ffmpeg with the filters and options.
Bytes encode_by_ffmpeg(const std::string& source, const std::string& options);
/// The same by mpeg2enc.
Bytes encode_by_mpeg2enc(const std::string& source, const std::string& options);

/// How often each operation for predictions has been called since it was last asked: by name, columns and rows.
std::map<std::string, int> take_calls();

}  // namespace mpeg_test
