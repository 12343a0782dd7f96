#pragma once

#include <string>

namespace pqxvideo {

/// Plays a Y4M file or an H.261 stream in a window until it is closed, or to the end of the clip.
void play(const std::string& path, int zoom, bool to_end);

}  // namespace pqxvideo
