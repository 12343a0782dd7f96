#include "streams.h"

#include <cstdlib>

#include "core/failure.h"

namespace mpeg_test {

using namespace tool_test;
using namespace pqx_codec;

bool is_thorough() { return std::getenv("PQX_THOROUGH") != nullptr; }

Decoded decode(const Bytes& stream, mpeg::DecoderOptions options, size_t piece) {
  mpeg::Decoder decoder(std::move(options));
  Decoded result;
  for (size_t at = 0;; at += piece) {
    while (const mpeg::Frame* const frame = decoder.next()) {
      const mpeg::Sequence& s = result.sequence = decoder.sequence();
      ++result.frames;
      for (const mpeg::Frame::Plane& plane : frame->planes) {
        const bool luma = &plane == &frame->planes[0];
        for (int y = 0; y < (luma || s.chroma_422 ? s.height : (s.height + 1) / 2); ++y)
          result.samples.insert(result.samples.end(), plane.row(y),
                                plane.row(y) + (luma ? s.width : (s.width + 1) / 2));
      }
    }
    if (at >= stream.size() + piece) return result;
    if (at >= stream.size())
      decoder.finish();
    else
      decoder.push(std::span(stream).subspan(at, std::min(piece, stream.size() - at)));
  }
}

Bytes ffmpeg(const Bytes& stream, const std::string& idct) {
  const Workplace place;
  write_bytes(place / "in.mpg", stream);
  must_run(place, "ffmpeg -v error -idct " + idct + " -i {in.mpg} -vsync passthrough -f rawvideo {out}");
  return read_bytes(place / "out");
}

Bytes mpeg2dec(Bytes stream, int width, int height) {
  const Workplace place;
  // Without an end it keeps the last two pictures to itself.
  stream.insert(stream.end(), {0, 0, 1, 0xB7});
  write_bytes(place / "in.mpg", stream);
  must_run(place, "(mpeg2dec -o pgmpipe {in.mpg} >{out})");
  const Bytes pictures = read_bytes(place / "out");
  Bytes samples;
  for (size_t at = 0; at < pictures.size();) {
    int columns = 0, rows = 0, header = 0;
    if (std::sscanf(reinterpret_cast<const char*>(&pictures[at]), "P5 %d %d 255%n", &columns, &rows, &header) != 2)
      throw std::runtime_error("not a PGM");
    // Below Y, U and V lie side by side.
    const uint8_t* const y = &pictures[at + size_t(header) + 1];
    const int chroma_x[] = {0, 0, columns / 2};
    for (int k = 0; k < 3; ++k)
      for (int row = 0; row < (k ? (height + 1) / 2 : height); ++row) {
        const uint8_t* const first = y + columns * (row + (k ? rows / 3 * 2 : 0)) + chroma_x[k];
        samples.insert(samples.end(), first, first + (k ? (width + 1) / 2 : width));
      }
    at += size_t(header) + 1 + size_t(columns) * size_t(rows);
  }
  return samples;
}

Bytes encode_by_ffmpeg(const std::string& source, const std::string& options) {
  const Workplace place;
  must_run(place, "ffmpeg -v error -f lavfi -i '" + source + "' " + options + " {out}");
  return read_bytes(place / "out");
}

Bytes encode_by_mpeg2enc(const std::string& source, const std::string& options) {
  const Workplace place;
  std::string matrices;  // eight steps in a line
  for (int k = 0; k < 128; ++k) matrices += k == 0 ? "8," : k % 8 == 7 ? "255\n" : "255,";
  write_bytes(place / "steps.txt", text(matrices));
  must_run(place, "ffmpeg -v error -f lavfi -i '" + source + "' -pix_fmt yuv420p -f yuv4mpegpipe - | mpeg2enc -v 0 " +
                      options + " -o {out}");
  return read_bytes(place / "out");
}

}  // namespace mpeg_test
