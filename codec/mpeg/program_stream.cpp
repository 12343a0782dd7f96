#include "mpeg/program_stream.h"

#include <algorithm>

#include "core/failure.h"
#include "mpeg/start_code.h"

namespace pqx_codec::mpeg {
namespace {

constexpr uint8_t first_system_code = 0xB9, pack = 0xBA, first_video = 0xE0, last_video = 0xEF;
constexpr size_t start_code_size = 4;

/// Bytes of a packet's header, from behind its length on; more than there are if it is damaged.
size_t packet_header_size(std::span<const uint8_t> packet) {
  size_t at = 0;
  const auto byte = [&](size_t i) { return i < packet.size() ? packet[i] : uint8_t{0}; };
  if (byte(0) >> 6 == 2) {  // MPEG-2
    if (byte(0) & 0x30) throw Failure("not supported: encrypted MPEG program stream");
    return size_t{3} + byte(2);
  }
  while (byte(at) == 0xFF) ++at;          // stuffing
  if (byte(at) >> 6 == 1) at += 2;        // size of the buffer
  return at + (byte(at) >> 4 == 2   ? 5   // time of presentation
               : byte(at) >> 4 == 3 ? 10  // and of decoding
                                    : 1);
}

}  // namespace

void Demultiplexer::push(std::span<const uint8_t> bytes, std::vector<uint8_t>& video) {
  if (kind_ == Kind::video) {
    video.insert(video.end(), bytes.begin(), bytes.end());
    return;
  }
  kept_.insert(kept_.end(), bytes.begin(), bytes.end());
  if (kind_ == Kind::unknown) find_kind();
  if (kind_ == Kind::unknown) return;
  if (kind_ == Kind::video) {
    video.insert(video.end(), kept_.begin(), kept_.end());
    kept_ = {};
    return;
  }
  size_t taken = 0;
  while (const size_t n = take(std::span(kept_).subspan(taken), video)) taken += n;
  kept_.erase(kept_.begin(), kept_.begin() + ptrdiff_t(taken));
}

void Demultiplexer::finish(std::vector<uint8_t>& video) {
  // A last packet may be cut off.
  if (kind_ == Kind::program && !kept_.empty()) {
    kept_.resize(kept_.size() + (1 << 16) + 6, 0);
    take(kept_, video);
  }
  kept_ = {};
}

void Demultiplexer::find_kind() {
  constexpr size_t most_ahead = 1 << 16, transport_packet = 188;
  const std::span<const uint8_t> bytes(kept_);
  if (bytes.size() > transport_packet && bytes[0] == 0x47 && bytes[transport_packet] == 0x47)
    throw Failure("not supported: MPEG transport stream");
  const size_t first = find_start_code(bytes);
  if (bytes.size() - first >= start_code_size)
    kind_ = bytes[first + 3] >= first_system_code ? Kind::program : Kind::video;
  else if (bytes.size() > most_ahead)
    throw Failure("not an MPEG video or program stream");
}

size_t Demultiplexer::take(std::span<const uint8_t> rest, std::vector<uint8_t>& video) {
  const size_t first = find_start_code(rest);
  if (first > 0) return first == rest.size() ? first - std::min<size_t>(first, 2) : first;
  if (rest.size() < start_code_size) return 0;
  const uint8_t code = rest[3];
  if (code > pack) return take_packet(rest, video);
  // Behind the header of a pack stands the next start code, and so it does behind what belongs to no packet.
  return start_code_size;
}

size_t Demultiplexer::take_packet(std::span<const uint8_t> rest, std::vector<uint8_t>& video) {
  if (rest.size() < start_code_size + 2) return 0;
  const uint8_t code = rest[3];
  const size_t size = size_t(rest[4]) << 8 | rest[5];
  rest = rest.subspan(start_code_size + 2);
  if (rest.size() < size) return 0;
  const auto packet = rest.first(size);
  if (code >= first_video && code <= last_video) {
    if (stream_ == 0) stream_ = code;
    if (code == stream_) {
      const size_t header = packet_header_size(packet);
      if (header < size) video.insert(video.end(), packet.begin() + ptrdiff_t(header), packet.end());
    }
  }
  return start_code_size + 2 + size;
}

}  // namespace pqx_codec::mpeg
