/// Other libraries at tasks of ours, each through its public interface.
#pragma once

#include <libyuv.h>

#include <tuple>
#include <utility>

#include "blocks.h"
#include "patches.h"
#include "rows.h"

namespace peers {

struct Library {
  const char *name, *version;
  void (*limit_to_sse2)(bool limited);  // or let it take what the machine has, in threads started later
};
Library libyuv_library();
Library libjpeg_turbo_library();
Library ffmpeg_library();
Library opencv_library();

std::vector<Library> libraries();

/// How a plane changes its size.
enum class Scaling { box, nearest, linear, bilinear };

bench::RowPeer libyuv_scale(Scaling);
bench::RowPeer opencv_scale(Scaling);
bench::RowPeer libjpeg_turbo_down_sample();
bench::RowPeer libjpeg_turbo_up_sample(Scaling);

/// A function of libyuv's usual form: every plane with its step, first those read, then width and height.
template <size_t planes_read, size_t planes_written, class F>
bench::RowPeer libyuv_planes(F* f, double tolerance, const char* difference = "") {
  return {
      .library = "libyuv", .difference = difference, .tolerance = tolerance, .make = [=](const bench::Rows& rows) {
        return bench::repeated([=] {
          const auto with_step = [](const bench::Plane& p) { return std::tuple(p.row(0), p.step); };
          [&]<size_t... in, size_t... out>(std::index_sequence<in...>, std::index_sequence<out...>) {
            std::apply(f, std::tuple_cat(with_step(rows.in[in])..., with_step(rows.out[out])...,
                                         std::tuple(rows.width, rows.height)));
          }
          (std::make_index_sequence<planes_read>(), std::make_index_sequence<planes_written>());
        });
      }};
}

enum class Packed { rgb, argb, abgr, bgra, rgba, cmyk };

bench::RowPeer libyuv_from_ycc(Packed, decltype(libyuv::I444ToARGBMatrix)*);
bench::RowPeer libyuv_from_ycc(Packed, decltype(libyuv::I420ToARGBMatrixFilter)*);
/// Chroma as the planes of the result ask for it.
bench::RowPeer libjpeg_turbo_to_ycc(Packed);
bench::RowPeer libjpeg_turbo_from_ycc(Packed, Scaling = Scaling::nearest);
bench::RowPeer swscale_from_ycc(Packed);
/// Studio range, of any sub-sampling and at any size.
bench::RowPeer swscale_from_yuv(Packed);
bench::RowPeer opencv_from_yuv420(Packed);
bench::RowPeer opencv_merge();
bench::RowPeer opencv_split();

bench::PatchPeer ffmpeg_cost();
enum class HalfSample { none, x, y, xy };
bench::PatchPeer ffmpeg_prediction(HalfSample, bool averaged);
bench::PatchPeer ffmpeg_residual();

bench::BlockPeer ffmpeg_forward();
bench::BlockPeer ffmpeg_forward_pixels();
bench::BlockPeer ffmpeg_inverse();
/// Transform and quantizer at once, with the steps of bench::steps(), in integers and in floating point.
bench::BlockPeers libjpeg_turbo_encode();
bench::BlockPeers libjpeg_turbo_decode();
/// The same with steps of 1, for the transform alone.
bench::BlockPeers libjpeg_turbo_inverse();

}  // namespace peers
