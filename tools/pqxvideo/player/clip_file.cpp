#include "player/clip_file.h"

#include "files.h"
#include "h261/decoder.h"
#include "naming.h"
#include "picture/y4m.h"
#include "report.h"

namespace pqxvideo {

OwnedBytes read_clip(const std::string& path) {
  return read_file(path, [](std::span<const uint8_t> head) {
    if (!is_y4m(head) && !h261::is_stream(head)) throw Failure("neither a Y4M file nor an H.261 stream");
    return most_clip_bytes;
  });
}

ClipFile::ClipFile(const std::string& path, int64_t max_pixels, size_t most_kept) : bytes_(read_clip(path)) {
  clip_ = naming(path, [&] { return open_clip(bytes_, most_kept, max_pixels); });
  if (clip_->is_full_range()) report(path + ": full-range samples are shown as if they were of studio range");
}

}  // namespace pqxvideo
