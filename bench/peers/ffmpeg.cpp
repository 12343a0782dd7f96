extern "C" {
#include <libavcodec/avdct.h>
#include <libavutil/avutil.h>
#include <libavutil/cpu.h>
}

#include "peers.h"

namespace peers {

Library ffmpeg_library() {
  return {"FFmpeg", av_version_info(), [](bool limited) {
            constexpr int sse2 =
                AV_CPU_FLAG_MMX | AV_CPU_FLAG_MMXEXT | AV_CPU_FLAG_CMOV | AV_CPU_FLAG_SSE | AV_CPU_FLAG_SSE2;
            av_force_cpu_flags(limited ? sse2 : -1);
          }};
}

}  // namespace peers
