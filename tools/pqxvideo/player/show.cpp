#include "player/show.h"

#include <algorithm>
#include <vector>

#include "pqx_video.h"

namespace pqxvideo {
namespace {

/// The conversions work on squares of four pixels: an odd last column or row is repeated.
YuvPicture even(const YuvPicture& picture) {
  YuvPicture result(picture.width() + picture.width() % 2, picture.height() + picture.height() % 2);
  for (size_t k = 0; k < 3; ++k) {
    const YuvPicture::Component& from = picture.planes[k];
    YuvPicture::Component& to = result.planes[k];
    for (int y = 0; y < to.rows; ++y) {
      const uint8_t* const row = from.at(0, std::min(y, from.rows - 1));
      std::copy_n(row, from.columns, to.at(0, y));
      std::fill_n(to.at(0, y) + from.columns, to.columns - from.columns, row[from.columns - 1]);
    }
  }
  return result;
}

}  // namespace

Image show(const YuvPicture& picture, int zoom) {
  Image image(picture.width() * zoom, picture.height() * zoom, 3);
  const YuvPicture whole = even(picture);
  const auto& [y, u, v] = whole.planes;
  const auto convert = zoom == 1   ? pqx_Video_ColorYUV2ABGR420_8U
                       : zoom == 2 ? pqx_Video_ColorYUV2ABGR420_X2_8U
                                   : pqx_Video_ColorYUV2ABGR420_X3_8U;
  const int row_bytes = 4 * zoom * whole.width();
  std::vector<uint8_t> abgr(size_t(row_bytes) * size_t(2 * zoom));
  for (int row = 0; row < whole.height(); row += 2) {
    convert(y.at(0, row), y.columns, u.at(0, row / 2), v.at(0, row / 2), u.columns, abgr.data(), row_bytes,
            whole.width(), 2);
    for (int k = 0; k < 2 * zoom && zoom * row + k < image.height(); ++k)
      pqx_Video_ColorABGR2RGB_8U(abgr.data() + size_t(row_bytes) * size_t(k), image.row(zoom * row + k),
                                 image.width());
  }
  return image;
}

void show_part(const YuvPicture& picture, const Rectangle& part, int zoom, Image& abgr) {
  const auto& [y, u, v] = picture.planes;
  const auto convert = zoom == 1   ? pqx_Video_ColorYUV2ABGR420_W_8U
                       : zoom == 2 ? pqx_Video_ColorYUV2ABGR420_WX2_8U
                                   : pqx_Video_ColorYUV2ABGR420_WX3_8U;
  convert(y.at(0, 0), y.columns, u.at(0, 0), v.at(0, 0), u.columns, abgr.row(0), int(abgr.step()), picture.width(),
          picture.height(), part.x0, part.y0, part.x1, part.y1);
}

}  // namespace pqxvideo
