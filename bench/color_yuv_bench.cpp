#include "baseline.h"
#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;
using enum peers::Packed;

constexpr auto picture = [](auto f, const Band& b) {
  f(b.in(0), b.in_step(0), b.in(1), b.in(2), b.in_step(1), b.out(0), b.out_step(0), b.width, b.height);
};
constexpr auto picture_of_one_step = [](auto f, const Band& b) {
  f(b.in(0), b.in(1), b.in(2), b.in_step(0), b.out(0), b.out_step(0), b.width, b.height);
};
constexpr auto window = [](auto f, const Band& b) {
  f(b.in(0), b.in_step(0), b.in(1), b.in(2), b.in_step(1), b.out(0), b.out_step(0), b.width, b.height, 0, 0, b.width,
    b.height);
};

constexpr PlaneForm quarter_of_row{1, 2, 0};

auto from_411(PlaneForm to) { return RowForm{{full, quarter_of_row, quarter_of_row}, {to}, all_rows, picture}; }
auto from_420(PlaneForm to) { return RowForm{{full, quartered, quartered}, {to}, all_rows, picture}; }
auto from_422(PlaneForm to) { return RowForm{{full, halved, halved}, {to}, all_rows, picture}; }
auto from_444(PlaneForm to) { return RowForm{{full, full, full}, {to}, all_rows, picture_of_one_step}; }
auto window_420(PlaneForm to) { return RowForm{{full, quartered, quartered}, {to}, all_rows, window}; }

// Our alpha is 0, that of libyuv 255.
RowPeers yuv(Packed packed) { return {swscale_from_yuv(packed)}; }
RowPeers yuv(Packed packed, decltype(libyuv::I420ToARGB)* convert) {
  return {libyuv_planes<3, 1>(convert, packed == rgb ? 2 : 66), swscale_from_yuv(packed)};
}
// Without swscale, which gives two rows of 4:2:2 the chroma of the first where alpha comes first.
RowPeers yuv_without_swscale(decltype(libyuv::I420ToARGB)* convert) { return {libyuv_planes<3, 1>(convert, 66)}; }
RowPeers yuv_of_other_order(Packed packed, decltype(libyuv::I420ToARGB)* convert) {
  return {libyuv_planes<3, 1>(convert, 255, "other order of bytes"), swscale_from_yuv(packed)};
}
RowPeers yuv420(Packed packed, decltype(libyuv::I420ToARGB)* convert) {
  return {libyuv_planes<3, 1>(convert, packed == rgb ? 2 : 66), swscale_from_yuv(packed), opencv_from_yuv420(packed)};
}

const std::vector<RowBench> table = {
    {OPERATION(ColorYUV2RGB411_8U), from_411(three_bytes), in_rows, yuv(rgb)},
    {OPERATION(ColorYUV2ARGB411_8U), from_411(four_bytes), in_rows, yuv(argb)},
    {OPERATION(ColorYUV2ABGR411_8U), from_411(four_bytes), in_rows, yuv(abgr)},
    {OPERATION(ColorYUV2RGB420_8U), from_420(three_bytes), in_rows_and_pictures, yuv420(rgb, libyuv::I420ToRAW)},
    {OPERATION(ColorYUV2ARGB420_8U), from_420(four_bytes), in_rows, yuv(argb, libyuv::I420ToBGRA)},
    {OPERATION(ColorYUV2ABGR420_8U), from_420(four_bytes), in_rows_and_pictures, yuv(abgr, libyuv::I420ToRGBA)},
    {OPERATION(ColorYUV2RGBA420_8U), from_420(four_bytes), in_rows, yuv420(rgba, libyuv::I420ToABGR)},
    {OPERATION(ColorYUV2RGB422_8U), from_422(three_bytes), in_rows, yuv(rgb, libyuv::I422ToRAW)},
    {OPERATION(ColorYUV2ARGB422_8U), from_422(four_bytes), in_rows, yuv_without_swscale(libyuv::I422ToBGRA)},
    {OPERATION(ColorYUV2ABGR422_8U), from_422(four_bytes), in_rows, yuv_without_swscale(libyuv::I422ToRGBA)},
    {OPERATION(ColorYUV2RGB444_8U), from_444(three_bytes), in_rows_and_pictures, yuv(rgb, libyuv::I444ToRAW)},
    {OPERATION(ColorYUV2ARGB444_8U), from_444(four_bytes), in_rows, yuv_of_other_order(argb, libyuv::I444ToARGB)},
    {OPERATION(ColorYUV2ABGR444_8U), from_444(four_bytes), in_rows_and_pictures,
     yuv_of_other_order(abgr, libyuv::I444ToARGB)},
    {OPERATION(ColorYUV2ABGR420_X2_8U), from_420(zoomed(2)), in_rows_and_pictures, yuv(abgr)},
    {OPERATION(ColorYUV2ABGR420_X3_8U), from_420(zoomed(3)), in_rows, yuv(abgr)},
    {TUNED(ColorYUV2ABGR420_W_8U), window_420(four_bytes), in_rows, yuv(abgr, libyuv::I420ToRGBA)},
    {TUNED(ColorYUV2ABGR420_WX2_8U), window_420(zoomed(2)), in_rows, {}},
    {TUNED(ColorYUV2ABGR420_WX3_8U), window_420(zoomed(3)), in_rows, {}},
};

const bool added = add_rows("color", "pixel", table);

}  // namespace
