extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/avdct.h>
#include <libavutil/avutil.h>
#include <libavutil/cpu.h>
#include <libavutil/opt.h>
#include <libavutil/pixelutils.h>
#include <libswscale/swscale.h>
}

#include <string.h>

#include <memory>

#include "peers.h"

namespace peers {

Library ffmpeg_library() {
  return {"FFmpeg", av_version_info(), [](bool limited) {
            constexpr int sse2 =
                AV_CPU_FLAG_MMX | AV_CPU_FLAG_MMXEXT | AV_CPU_FLAG_CMOV | AV_CPU_FLAG_SSE | AV_CPU_FLAG_SSE2;
            av_force_cpu_flags(limited ? sse2 : -1);
          }};
}

namespace {

AVPixelFormat planar_format(const bench::Rows& rows) {
  const bench::Plane &y = rows.in[0], &u = rows.in[1];
  if (u.down) return AV_PIX_FMT_YUV420P;
  return u.width == y.width ? AV_PIX_FMT_YUV444P : 2 * u.width >= y.width ? AV_PIX_FMT_YUV422P : AV_PIX_FMT_YUV411P;
}

AVPixelFormat packed_format(Packed packed) {
  switch (packed) {
    case Packed::rgb:
      return AV_PIX_FMT_RGB24;
    case Packed::argb:
      return AV_PIX_FMT_ARGB;
    case Packed::abgr:
      return AV_PIX_FMT_ABGR;
    case Packed::rgba:
      return AV_PIX_FMT_RGBA;
    default:
      return AV_PIX_FMT_BGRA;
  }
}

bench::Work swscale(const bench::Rows& rows, Packed packed, bool full_range) {
  const bench::Plane &s = rows.in[0], &d = rows.out[0];
  std::shared_ptr<SwsContext> context(sws_getContext(s.width, s.height, planar_format(rows), d.width, d.height,
                                                     packed_format(packed), SWS_POINT, nullptr, nullptr, nullptr),
                                      sws_freeContext);
  const int* matrix = sws_getCoefficients(SWS_CS_ITU601);
  sws_setColorspaceDetails(context.get(), matrix, full_range, matrix, 1, 0, 1 << 16, 1 << 16);
  return bench::repeated([=] {
    const uint8_t* in[] = {rows.in[0].row(0), rows.in[1].row(0), rows.in[2].row(0), nullptr};
    const int in_steps[] = {rows.in[0].step, rows.in[1].step, rows.in[2].step, 0};
    uint8_t* out[] = {rows.out[0].row(0), nullptr, nullptr, nullptr};
    const int out_steps[] = {rows.out[0].step, 0, 0, 0};
    sws_scale(context.get(), in, in_steps, 0, rows.height, out, out_steps);
  });
}

}  // namespace

bench::RowPeer swscale_from_ycc(Packed packed) {
  return {.library = "swscale", .difference = "", .tolerance = 2, .make = [=](const bench::Rows& rows) {
            return swscale(rows, packed, true);
          }};
}

// Our alpha is 0, that of others 255.
bench::RowPeer swscale_from_yuv(Packed packed) {
  return {.library = "swscale",
          .difference = "",
          .tolerance = packed == Packed::rgb ? 2.0 : 66.0,
          .make = [=](const bench::Rows& rows) { return swscale(rows, packed, false); }};
}

namespace {

std::shared_ptr<AVDCT> transforms(int inverse = FF_IDCT_AUTO) {
  std::shared_ptr<AVDCT> dct(avcodec_dct_alloc(), av_free);
  av_opt_set_int(dct.get(), "idct", inverse, 0);
  avcodec_dct_init(dct.get());
  return dct;
}

template <class Each>
bench::Work for_each_block(const bench::Blocks& blocks, Each each) {
  return bench::repeated([=] {
    for (int y = 0; y < blocks.down; ++y)
      for (int x = 0; x < blocks.across; ++x) each(blocks.at(x, y));
  });
}

constexpr const char* copied = "integer arithmetic; the block is copied first, being transformed in place";

}  // namespace

bench::BlockPeer ffmpeg_forward() {
  return {"FFmpeg", copied, 1,
          [](const bench::Blocks& blocks) {
            return for_each_block(blocks, [dct = transforms()](const bench::Block& b) {
              memcpy(b.out, b.in, 128);
              dct->fdct(b.out);
            });
          },
          8};
}

bench::BlockPeer ffmpeg_forward_pixels() {
  return {"FFmpeg", "integer arithmetic", 1,
          [](const bench::Blocks& blocks) {
            return for_each_block(blocks, [dct = transforms()](const bench::Block& b) {
              dct->get_pixels(b.out, b.pixels, b.step);
              dct->fdct(b.out);
            });
          },
          8};
}

bench::BlockPeer ffmpeg_inverse() {
  return {"FFmpeg", copied, 1, [](const bench::Blocks& blocks) {
            struct alignas(64) Coefficients {
              int16_t value[64];
            };
            const auto dct = transforms(FF_IDCT_XVID);
            auto permuted = std::make_shared<std::vector<Coefficients>>(size_t(blocks.across * blocks.down));
            for (size_t b = 0; b < permuted->size(); ++b)
              for (size_t i = 0; i < 64; ++i)
                (*permuted)[b].value[dct->idct_permutation[i]] = blocks.first.in[64 * b + i];
            return for_each_block(blocks, [=, in = blocks.first.in](const bench::Block& b) {
              memcpy(b.out, (*permuted)[size_t(b.in - in) / 64].value, 128);
              dct->idct(b.out);
            });
          }};
}

bench::PatchPeer ffmpeg_cost() {
  return {
      "FFmpeg", "", [](bench::Shape shape) {
        const int bits = shape.width == 16 ? 4 : 3;
        return bench::on_patches([cost = av_pixelutils_get_sad_fn(bits, bits, 0, nullptr)](const bench::Patch& p) {
          *p.sum = uint32_t(cost(p.a, p.step, p.b, p.step));
        })(shape);
      }};
}

}  // namespace peers
