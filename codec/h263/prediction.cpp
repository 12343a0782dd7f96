#include "h263/prediction.h"

#include <algorithm>

#include "pqx_video.h"

namespace pqx_codec::h263 {
namespace {

/// (a + b + c + d + 1) >> 2, which no operation of the library computes.
void interpolate_both_down(const uint8_t* src, uint8_t* dst, int step, int size) {
  for (int y = 0; y < size; ++y, src += step, dst += step)
    for (int x = 0; x < size; ++x)
      dst[x] = uint8_t((src[x] + src[x + 1] + src[x + step] + src[x + step + 1] + 1) >> 2);
}

}  // namespace

void predict(const BorderedPlane& from, BorderedPlane& to, int x, int y, int size, Vector vector, int rounding) {
  // Beyond the outer sample all are alike, and so are all positions between them.
  const int column = std::clamp(x + (vector.x >> 1), -size - 1, from.columns());
  const int row = std::clamp(y + (vector.y >> 1), -size - 1, from.rows());
  const uint8_t* const src = from.at(column, row);
  uint8_t* const dst = to.at(x, y);
  const int step = to.step(), phase = (vector.x & 1) | (vector.y & 1) << 1;
  if (phase == 0)
    pqx_Video_CopyRef_8U(src, dst, step, size, size);
  else if (phase == 3)
    rounding ? interpolate_both_down(src, dst, step, size)
             : void(pqx_Video_InterpXY_8U(src, dst, step, step, size, size));
  else if (rounding)
    pqx_Video_Average2NoRnd_8U(src, step, src + (phase == 1 ? 1 : step), step, dst, step, size, size);
  else if (phase == 1)
    pqx_Video_InterpX_8U(src, dst, step, size, size);
  else
    pqx_Video_InterpY_8U(src, dst, step, step, size, size);
}

void HalfSampleGrid::make(const BorderedPlane& from, int rounding) {
  columns_ = from.columns(), rows_ = from.rows();
  step_ = 2 * columns_ + 2 * border;
  samples_.resize(size_t(step_) * size_t(2 * rows_ + 2 * border));
  const int step = from.step();
  const size_t size = size_t(step) * size_t(rows_);
  interpolated_.resize(4 * size);
  uint8_t *whole = interpolated_.data(), *x = whole + size, *y = x + size, *xy = y + size;
  const uint8_t* src = from.at(0, 0);
  // Means of complements that are rounded up are complements of means that are rounded down.
  if (rounding) {
    std::transform(src, src + size - 2 * BorderedPlane::border, whole, [](uint8_t s) { return uint8_t(~s); });
    src = whole;
  }
  pqx_Video_InterpX_Y_XY_8U(src, step, columns_, rows_, x, y, xy);
  if (rounding) std::transform(whole, whole + 4 * size, whole, [](uint8_t s) { return uint8_t(~s); });
  uint8_t* const origin = samples_.data() + border * step_ + border;
  for (int row = 0; row < rows_; ++row) {
    uint8_t* const grid = origin + 2 * row * step_;
    pqx_Video_ColorMerge2_8U(src + row * step, x + row * step, columns_, grid);
    pqx_Video_ColorMerge2_8U(y + row * step, xy + row * step, columns_, grid + step_);
  }
  repeat_edges(origin, step_, 2 * columns_, 2 * rows_, border);
}

void HalfSampleGrid::predict(BorderedPlane& to, int x, int y, const Vectors& v) const {
  const auto column = [&](Vector vector) { return std::clamp(2 * x + vector.x, -border, 2 * columns_); };
  const auto row = [&](Vector vector) { return std::clamp(2 * y + vector.y, -border, 2 * rows_); };
  pqx_Video_H263OverlappedMC_8U(samples_.data() + border * step_ + border, step_, to.at(x, y), to.step(),
                                column(v.own), row(v.own), column(v.above), row(v.above), column(v.below),
                                row(v.below), column(v.left), row(v.left), column(v.right), row(v.right));
}

}  // namespace pqx_codec::h263
