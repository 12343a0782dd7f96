#pragma once

#include "pqx_video.h"

namespace plain {

/// Where a pixel of so many bytes keeps its channels; a = -1: no alpha.
struct Layout {
  int bytes, r, g, b, a;
};
constexpr Layout RGB{3, 0, 1, 2, -1}, ARGB{4, 1, 2, 3, 0}, ABGR{4, 3, 2, 1, 0}, BGRA{4, 2, 1, 0, 3},
    RGBA{4, 0, 1, 2, 3};

/// The bytes of a sum of half units and what is added to it, which is the index.
inline const uint8_t* clip_from(int sum) { return pqx_tClip + 576 + sum; }

}  // namespace plain
