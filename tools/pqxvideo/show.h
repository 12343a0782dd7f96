#pragma once

#include "image.h"
#include "yuv_picture.h"

namespace pqxvideo {

/// A studio-range picture as RGB, enlarged by 1, 2 or 3.
Image show(const YuvPicture& picture, int zoom);

}  // namespace pqxvideo
