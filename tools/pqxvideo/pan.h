#pragma once

#include "codec.h"
#include "picture/image.h"
#include "picture/yuv_picture.h"

namespace pqxvideo {

/// A clip of studio-range pictures made by moving a window over a picture: real texture with known motion.
class Pan {
 public:
  /// The picture must not be smaller than the window.
  Pan(const Image& image, int width, int height);

  YuvPicture frame(int number) const;

 private:
  int width_, height_;
  YuvPicture whole_;
};

}  // namespace pqxvideo
