/// Other libraries at tasks of ours, each through its public interface.
#pragma once

#include <libyuv.h>

#include "blocks.h"
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

enum class Packed { rgb, argb, abgr, bgra, cmyk };

bench::RowPeer libyuv_to_ycc(decltype(libyuv::RAWToJ420)*, const char* difference);
bench::RowPeer libyuv_from_ycc(Packed, decltype(libyuv::I444ToARGBMatrix)*);
bench::RowPeer libyuv_from_ycc(Packed, decltype(libyuv::I420ToARGBMatrixFilter)*);
/// Chroma as the planes of the result ask for it.
bench::RowPeer libjpeg_turbo_to_ycc(Packed);
bench::RowPeer libjpeg_turbo_from_ycc(Packed, Scaling = Scaling::nearest);
bench::RowPeer swscale_from_ycc(Packed);

bench::BlockPeer ffmpeg_forward();
bench::BlockPeer ffmpeg_forward_pixels();
bench::BlockPeer ffmpeg_inverse();
/// Transform and quantizer at once, with the steps of bench::steps(), in integers and in floating point.
bench::BlockPeers libjpeg_turbo_encode();
bench::BlockPeers libjpeg_turbo_decode();
/// The same with steps of 1, for the transform alone.
bench::BlockPeers libjpeg_turbo_inverse();

}  // namespace peers
