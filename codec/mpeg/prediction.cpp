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
  const bool fields = to_rows != Rows::all;
  const Plane& luma = to.planes[0];
  // Chroma vectors are never longer: where luma fits, so does chroma.
  const int left = 2 * area.x + v.x, top = 2 * area.y + v.y;
  if (left < 0 || top < 0 || left > 2 * (luma.columns() - 16) ||
      top > 2 * (luma.rows() / (fields ? 2 : 1) - area.rows))
    return false;
  for (size_t k = 0; k < 3; ++k) {
    const Plane &source = from.planes[k], &destination = to.planes[k];
    const int step = destination.step() * (fields ? 2 : 1);
    const int across = k ? 2 : 1, down = luma.rows() / destination.rows();
    // Halves of vectors are cut off toward zero.
    const int x = v.x / across, y = v.y / down;
    const uint8_t* const first = source.row(from_rows == Rows::bottom) +
                                 ptrdiff_t{step} * (area.y / down + (y >> 1)) + area.x / across + (x >> 1);
    uint8_t* const target =
        destination.row(to_rows == Rows::bottom) + ptrdiff_t{step} * (area.y / down) + area.x / across;
    (average ? average_block : predict_block)(first, target, step, 16 / across, area.rows / down, x & 1, y & 1);
  }
  return true;
}

}  // namespace pqx_codec::mpeg
