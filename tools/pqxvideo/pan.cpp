#include "pan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "pqx_video.h"

namespace pqxvideo {
namespace {

/// Full range to studio range: 0..255 of luma become 16..235, of chroma 16..240 about 128.
std::array<uint8_t, 256> studio_range(double offset, double centre, double scale) {
  std::array<uint8_t, 256> table;
  for (size_t x = 0; x < 256; ++x) table[x] = uint8_t(std::lround(offset + (double(x) - centre) * scale / 255));
  return table;
}

}  // namespace

Pan::Pan(const Image& image, int width, int height)
    : width_(width), height_(height), whole_(image.width() & ~1, image.height() & ~1) {
  if (image.width() < width || image.height() < height)
    throw Failure("picture too small: the window is " + std::to_string(width) + " x " + std::to_string(height));
  auto& [y, u, v] = whole_.planes;
  std::vector<uint8_t> rgb(size_t(whole_.width()) * 3 * 2);
  for (int row = 0; row < whole_.height(); row += 2) {
    const uint8_t* rows[2] = {image.row(row), image.row(row + 1)};
    if (image.channels() == 1)
      for (size_t k = 0; k < 2; ++k) {
        uint8_t* const pixels = rgb.data() + k * size_t(whole_.width()) * 3;
        pqx_Video_ColorMerge3_8U(rows[k], rows[k], rows[k], whole_.width(), pixels);
        rows[k] = pixels;
      }
    pqx_Video_ColorRGB2YCC420_BL_8U(rows[0], rows[1], y.at(0, row), y.at(0, row + 1), u.at(0, row / 2),
                                    v.at(0, row / 2), whole_.width());
  }
  const auto luma = studio_range(16, 0, 219), chroma = studio_range(128, 128, 224);
  for (YuvPicture::Component& plane : whole_.planes) {
    const auto& table = &plane == &y ? luma : chroma;
    for (uint8_t& sample : plane.samples) sample = table[sample];
  }
}

/// The window swings about the middle of the picture, in an ellipse that takes a few seconds, by even distances so
/// that chroma moves with luma.
YuvPicture Pan::frame(int number) const {
  const double angle = 2 * std::numbers::pi * number / 150;
  const auto place = [](int room, double swing) { return int(std::lround(room / 2 * (1 + swing) / 2)) * 2; };
  const int x = std::min(place(whole_.width() - width_, std::cos(angle)), (whole_.width() - width_) & ~1);
  const int y = std::min(place(whole_.height() - height_, std::sin(angle)), (whole_.height() - height_) & ~1);
  YuvPicture frame(width_, height_);
  for (size_t k = 0; k < 3; ++k) {
    YuvPicture::Component& to = frame.planes[k];
    for (int row = 0; row < to.rows; ++row)
      std::copy_n(whole_.planes[k].at(k ? x / 2 : x, (k ? y / 2 : y) + row), to.columns, to.at(0, row));
  }
  return frame;
}

}  // namespace pqxvideo
