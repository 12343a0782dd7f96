#pragma once

#include "codec.h"
#include "picture/image.h"
#include "picture/rectangle.h"
#include "picture/yuv_picture.h"

namespace pqxvideo {

/// A studio-range picture as RGB, enlarged by 1, 2 or 3.
Image show(const YuvPicture& picture, int zoom);

/// Converts a part of a studio-range picture, and nothing else, in its place of an enlarged picture of bytes A, B, G, R.
void show_part(const YuvPicture& picture, const Rectangle& part, int zoom, Image& abgr);

}  // namespace pqxvideo
