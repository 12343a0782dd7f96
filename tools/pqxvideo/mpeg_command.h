#pragma once

#include "video_commands.h"

namespace pqxvideo {

/// Adds the command that decodes MPEG-1 and MPEG-2 video.
Command add_mpeg_command(CLI::App& app);

}  // namespace pqxvideo
