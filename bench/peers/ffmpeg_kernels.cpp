/// FFmpeg's own code for prediction has no interface but is part of its static library. It is written for SSE2, at 8
/// columns for MMX, and wants aligned results and residuals.
#include <xmmintrin.h>

#include "peers.h"

extern "C" {
using FfmpegPredict = void(uint8_t* dst, const uint8_t* src, ptrdiff_t step, int rows);
FfmpegPredict ff_put_pixels16_sse2, ff_put_pixels16_x2_sse2, ff_put_pixels16_y2_sse2, ff_put_pixels16_xy2_sse2;
FfmpegPredict ff_avg_pixels16_sse2, ff_avg_pixels16_x2_sse2, ff_avg_pixels16_y2_sse2, ff_avg_pixels16_xy2_sse2;
FfmpegPredict ff_put_pixels8_mmx, ff_put_pixels8_x2_mmxext, ff_put_pixels8_y2_mmxext, ff_put_pixels8_xy2_mmx;
FfmpegPredict ff_avg_pixels8_mmxext, ff_avg_pixels8_x2_mmxext, ff_avg_pixels8_y2_mmxext, ff_avg_pixels8_xy2_mmxext;
void ff_add_pixels_clamped_sse2(const int16_t* residuals, uint8_t* pixels, ptrdiff_t step);
}

namespace peers {
namespace {

bench::PatchPeer kernels(FfmpegPredict* of_16, FfmpegPredict* of_8) {
  return {"FFmpeg", "", [=](bench::Shape shape) {
            return bench::repeated([predict = shape.width == 16 ? of_16 : of_8, &all = bench::patches(shape)] {
              for_each(all, [predict](const bench::Patch& p) { predict(p.out, p.a, p.step, p.height); });
              _mm_empty();
            });
          }};
}

}  // namespace

bench::PatchPeer ffmpeg_prediction(HalfSample at, bool averaged) {
  switch (at) {
    case HalfSample::none:
      return averaged ? kernels(ff_avg_pixels16_sse2, ff_avg_pixels8_mmxext)
                      : kernels(ff_put_pixels16_sse2, ff_put_pixels8_mmx);
    case HalfSample::x:
      return averaged ? kernels(ff_avg_pixels16_x2_sse2, ff_avg_pixels8_x2_mmxext)
                      : kernels(ff_put_pixels16_x2_sse2, ff_put_pixels8_x2_mmxext);
    case HalfSample::y:
      return averaged ? kernels(ff_avg_pixels16_y2_sse2, ff_avg_pixels8_y2_mmxext)
                      : kernels(ff_put_pixels16_y2_sse2, ff_put_pixels8_y2_mmxext);
    default:
      return averaged ? kernels(ff_avg_pixels16_xy2_sse2, ff_avg_pixels8_xy2_mmxext)
                      : kernels(ff_put_pixels16_xy2_sse2, ff_put_pixels8_xy2_mmx);
  }
}

bench::PatchPeer ffmpeg_residual() {
  return {"FFmpeg", "",
          bench::on_patches([](const bench::Patch& p) { ff_add_pixels_clamped_sse2(p.words, p.out, p.step); })};
}

}  // namespace peers
