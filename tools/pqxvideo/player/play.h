#pragma once

#include <cstdint>
#include <string>

namespace pqxvideo {

/// Plays a Y4M file or an H.261 stream in a window until it is closed, or to the end of the clip.
/// Throws Failure without a display.
void play(const std::string& path, int zoom, bool to_end, int64_t max_pixels);

}  // namespace pqxvideo
