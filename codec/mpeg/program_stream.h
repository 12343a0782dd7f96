#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace pqx_codec::mpeg {

/// Takes the video out of a program stream, of MPEG-1 or MPEG-2. What is no program stream it hands on as it is.
class Demultiplexer {
 public:
  /// Appends to `video` what the next bytes of the stream hold of it. Throws Failure for streams that are no such.
  void push(std::span<const uint8_t> bytes, std::vector<uint8_t>& video);
  /// At the end of the stream.
  void finish(std::vector<uint8_t>& video);

 private:
  enum class Kind { unknown, video, program };

  void find_kind();
  /// Handles what begins at the front of `rest`: how many bytes that are, or 0 if more are needed.
  size_t take(std::span<const uint8_t> rest, std::vector<uint8_t>& video);
  size_t take_packet(std::span<const uint8_t> rest, std::vector<uint8_t>& video);

  Kind kind_ = Kind::unknown;
  std::vector<uint8_t> kept_;  // an incomplete packet
  uint8_t stream_ = 0;         // the first one of video
};

}  // namespace pqx_codec::mpeg
