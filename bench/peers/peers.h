/// Other libraries at tasks of ours, each through its public interface.
#pragma once

#include "rows.h"

namespace peers {

struct Library {
  const char *name, *version;
  void (*limit_to_sse2)(bool limited);  // or let it take what the machine has, in threads started later
};
Library libyuv_library();
Library libjpeg_turbo_library();
Library ffmpeg_library();
Library opencv_library();

std::vector<Library> libraries();

/// How a plane changes its size.
enum class Scaling { box, nearest, linear, bilinear };

bench::RowPeer libyuv_scale(Scaling);
bench::RowPeer opencv_scale(Scaling);
/// One chroma plane out of the row loops of a coder: halved across, and also down where the scaling is so.
bench::RowPeer libjpeg_turbo_down_sample();
bench::RowPeer libjpeg_turbo_up_sample(Scaling);

}  // namespace peers
