#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "codec.h"
#include "core/memory.h"
#include "player/clip.h"

namespace pqxvideo {

/// The most bytes of a file that holds a clip, which is kept in memory whole.
inline constexpr size_t most_clip_bytes = size_t{1} << 31;

/// Reads a Y4M file or an H.261 stream, told apart by how they begin.
OwnedBytes read_clip(const std::string& path);

/// A clip and the file that it is in.
class ClipFile {
 public:
  /// Opens it at its first picture. Samples that do not suit the display are reported.
  /// @param most_kept  as for open_clip()
  ClipFile(const std::string& path, int64_t max_pixels, size_t most_kept);

  Clip& clip() const { return *clip_; }

 private:
  OwnedBytes bytes_;
  std::unique_ptr<Clip> clip_;
};

}  // namespace pqxvideo
