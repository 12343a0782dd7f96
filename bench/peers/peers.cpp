#include "peers.h"

std::vector<peers::Library> peers::libraries() {
  return {libyuv_library(), libjpeg_turbo_library(), ffmpeg_library(), opencv_library()};
}
