#include "mpeg/prediction.h"

#include "pqx_video.h"

namespace pqx_codec::mpeg {
namespace {

void predict_block(const uint8_t* from, uint8_t* to, int step, int columns, int rows, bool half_x, bool half_y) {
  if (half_x && half_y)
    pqx_Video_InterpXY_8U(from, to, step, step, columns, rows);
  else if (half_x)
    pqx_Video_InterpX_8U(from, to, step, columns, rows);
  else if (half_y)
    pqx_Video_InterpY_8U(from, to, step, step, columns, rows);
  else
    pqx_Video_CopyRef_8U(from, to, step, columns, rows);
}

/// The mean of two predictions, each rounded by itself, halves upward: these operations round once, to the same.
void average_block(const uint8_t* from, uint8_t* to, int step, int columns, int rows, bool half_x, bool half_y) {
  if (half_x && half_y)
    pqx_Video_InterpAveXY_8U(from, to, step, step, columns, rows);
  else if (half_x)
    pqx_Video_InterpAveX_8U(from, to, step, columns, rows);
  else if (half_y)
    pqx_Video_InterpAveY_8U(from, to, step, step, columns, rows);
  else
    pqx_Video_CopyRefAve_8U(from, to, step, columns, rows);
}

}  // namespace

bool predict(const Frame& from, Rows from_rows, Frame& to, Rows to_rows, const Area& area, Vector v, bool average) {
  const int fields = to_rows != Rows::all;
  // Chroma vectors are never longer: where luma fits, so does chroma.
  const int left = 2 * area.x + v.x, top = 2 * area.y + v.y;
  if (left < 0 || top < 0 || left > 2 * (to.planes[0].columns - 16) ||
      top > 2 * ((to.planes[0].rows >> fields) - area.rows))
    return false;
  const auto operation = average ? average_block : predict_block;
  for (size_t k = 0; k < 3; ++k) {
    const Frame::Plane &source = from.planes[k], &destination = to.planes[k];
    const ptrdiff_t step = ptrdiff_t{destination.columns} << fields;
    const int across = k != 0, down = k != 0 && to.halved_rows;
    // Halves of vectors are cut off toward zero.
    const int x = across ? v.x / 2 : v.x, y = down ? v.y / 2 : v.y;
    const ptrdiff_t place = step * (area.y >> down) + (area.x >> across);
    operation(source.row(from_rows == Rows::bottom) + place + step * (y >> 1) + (x >> 1),
              destination.row(to_rows == Rows::bottom) + place, int(step), 16 >> across, area.rows >> down, x & 1,
              y & 1);
  }
  return true;
}

}  // namespace pqx_codec::mpeg
