#include "baseline.h"
#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;
using enum peers::Packed;
using enum peers::Scaling;

constexpr auto one_to_three = [](auto f, const Band& b) { f(b.in(0), b.out(0), b.out(1), b.out(2), b.width); };
constexpr auto three_to_one = [](auto f, const Band& b) { f(b.in(0), b.in(1), b.in(2), b.out(0), b.width); };
constexpr auto one_to_four = [](auto f, const Band& b) {
  f(b.in(0), b.out(0), b.out(1), b.out(2), b.out(3), b.width);
};
constexpr auto four_to_one = [](auto f, const Band& b) { f(b.in(0), b.in(1), b.in(2), b.in(3), b.out(0), b.width); };
constexpr auto rows_to_420 = [](auto f, const Band& b) {
  f(b.in(0), b.in(0, 1), b.out(0), b.out(0, 1), b.out(1), b.out(2), b.width);
};
constexpr auto rows_from_420_nn = [](auto f, const Band& b) {
  f(b.in(0), b.in(0, 1), b.in(1), b.in(2), b.out(0), b.out(0, 1), b.width);
};
constexpr auto rows_from_420_bl = [](auto f, const Band& b) {
  f(b.in(0), b.in(0, 1), b.in_clamped(1, -1), b.in_clamped(2, -1), b.in(1), b.in(2), b.in_clamped(1, 1),
    b.in_clamped(2, 1), b.out(0), b.out(0, 1), b.width);
};

auto to_444(PlaneForm from) { return RowForm{{from}, {full, full, full}, 1, one_to_three}; }
auto to_422(PlaneForm from) { return RowForm{{from}, {full, halved, halved}, 1, one_to_three}; }
auto to_420(PlaneForm from) { return RowForm{{from}, {full, quartered, quartered}, 2, rows_to_420}; }
auto from_444(PlaneForm to) { return RowForm{{full, full, full}, {to}, 1, three_to_one}; }
auto from_422(PlaneForm to) { return RowForm{{full, halved, halved}, {to}, 1, three_to_one}; }
auto from_420_nn(PlaneForm to) { return RowForm{{full, quartered, quartered}, {to}, 2, rows_from_420_nn}; }
auto from_420_bl(PlaneForm to) { return RowForm{{full, quartered, quartered}, {to}, 2, rows_from_420_bl}; }

const RowForm cmyk_to_ycck{{four_bytes}, {full, full, full, full}, 1, one_to_four};
const RowForm ycck_to_cmyk{{full, full, full, full}, {four_bytes}, 1, four_to_one};
const RowForm to_444_words{{three_words}, {full_words, full_words, full_words}, 1, one_to_three};
const RowForm from_444_words{{full_words, full_words, full_words}, {three_words}, 1, three_to_one};

// Peers that know the layout: libjpeg-turbo always, libyuv where named.
constexpr const char *studio_range = "studio range", *means_of_rgb = "chroma from the mean of RGB";
RowPeers to_ycc(Packed packed) { return {libjpeg_turbo_to_ycc(packed)}; }
RowPeers to_ycc(Packed packed, decltype(libyuv::RAWToJ420)* convert, const char* difference) {
  return {libjpeg_turbo_to_ycc(packed), libyuv_planes<1, 3>(convert, 12, difference)};
}
RowPeers from_ycc(Packed packed) { return {libjpeg_turbo_from_ycc(packed)}; }
RowPeers from_ycc(Packed packed, decltype(libyuv::I444ToARGBMatrix)* convert) {
  return {libjpeg_turbo_from_ycc(packed), libyuv_from_ycc(packed, convert)};
}
RowPeers from_fewer_ycc(Packed packed, decltype(libyuv::I444ToARGBMatrix)* convert) {
  return {libjpeg_turbo_from_ycc(packed), libyuv_from_ycc(packed, convert), swscale_from_ycc(packed)};
}
RowPeers from_smooth_ycc(Packed packed, decltype(libyuv::I420ToARGBMatrixFilter)* convert) {
  return {libjpeg_turbo_from_ycc(packed, bilinear), libyuv_from_ycc(packed, convert)};
}

const std::vector<RowBench> table = {
    {OPERATION(ColorRGB2YCC444_8U), to_444(three_bytes), in_rows_and_pictures, to_ycc(rgb)},
    {OPERATION(ColorBGRA2YCC444_8U), to_444(four_bytes), in_rows_and_pictures,
     to_ycc(bgra, libyuv::ARGBToI444, studio_range)},
    {OPERATION(ColorARGB2YCC444_8U), to_444(four_bytes), in_rows, to_ycc(argb)},
    {OPERATION(ColorABGR2YCC444_8U), to_444(four_bytes), in_rows, to_ycc(abgr)},
    {OPERATION(ColorRGB2YCC422_BL_8U), to_422(three_bytes), in_rows_and_pictures, to_ycc(rgb)},
    {OPERATION(ColorBGRA2YCC422_BL_8U), to_422(four_bytes), in_rows, to_ycc(bgra, libyuv::ARGBToJ422, means_of_rgb)},
    {OPERATION(ColorARGB2YCC422_BL_8U), to_422(four_bytes), in_rows, to_ycc(argb)},
    {OPERATION(ColorABGR2YCC422_BL_8U), to_422(four_bytes), in_rows, to_ycc(abgr)},
    {TUNED(ColorRGB2YCC420_BL_8U), to_420(three_bytes), in_rows_and_pictures,
     to_ycc(rgb, libyuv::RAWToJ420, means_of_rgb)},
    {TUNED(ColorBGRA2YCC420_BL_8U), to_420(four_bytes), in_rows_and_pictures,
     to_ycc(bgra, libyuv::ARGBToJ420, means_of_rgb)},
    {TUNED(ColorARGB2YCC420_BL_8U), to_420(four_bytes), in_rows, to_ycc(argb)},
    {TUNED(ColorABGR2YCC420_BL_8U), to_420(four_bytes), in_rows, to_ycc(abgr)},
    {OPERATION(ColorCMYK2YCCK444_8U), cmyk_to_ycck, in_rows, to_ycc(cmyk)},
    {OPERATION(ColorRGB2YCC444_16S), to_444_words, in_rows, {}},

    {OPERATION(ColorYCC2RGB444_8U), from_444(three_bytes), in_rows_and_pictures,
     from_ycc(rgb, libyuv::I444ToRGB24Matrix)},
    {OPERATION(ColorYCC2BGRA444_8U), from_444(four_bytes), in_rows_and_pictures,
     from_ycc(bgra, libyuv::I444ToARGBMatrix)},
    {OPERATION(ColorYCC2ARGB444_8U), from_444(four_bytes), in_rows, from_ycc(argb)},
    {OPERATION(ColorYCC2RGB422_NN_8U), from_422(three_bytes), in_rows,
     from_fewer_ycc(rgb, libyuv::I422ToRGB24Matrix)},
    {OPERATION(ColorYCC2BGRA422_NN_8U), from_422(four_bytes), in_rows,
     from_fewer_ycc(bgra, libyuv::I422ToARGBMatrix)},
    {OPERATION(ColorYCC2RGB422_BL_8U), from_422(three_bytes), in_rows,
     from_smooth_ycc(rgb, libyuv::I422ToRGB24MatrixFilter)},
    {OPERATION(ColorYCC2BGRA422_BL_8U), from_422(four_bytes), in_rows,
     from_smooth_ycc(bgra, libyuv::I422ToARGBMatrixFilter)},
    {OPERATION(ColorYCC2RGB420_NN_8U), from_420_nn(three_bytes), in_rows_and_pictures,
     from_fewer_ycc(rgb, libyuv::I420ToRGB24Matrix)},
    {OPERATION(ColorYCC2BGRA420_NN_8U), from_420_nn(four_bytes), in_rows_and_pictures,
     from_fewer_ycc(bgra, libyuv::I420ToARGBMatrix)},
    {TUNED(ColorYCC2RGB420_BL_8U), from_420_bl(three_bytes), in_rows_and_pictures,
     from_smooth_ycc(rgb, libyuv::I420ToRGB24MatrixFilter)},
    {TUNED(ColorYCC2BGRA420_BL_8U), from_420_bl(four_bytes), in_rows_and_pictures,
     from_smooth_ycc(bgra, libyuv::I420ToARGBMatrixFilter)},
    {OPERATION(ColorYCCK2CMYK444_8U), ycck_to_cmyk, in_rows, from_ycc(cmyk)},
    {OPERATION(ColorYCC2RGB444_16S), from_444_words, in_rows, {}},
};

const bool added = add_rows("color", "pixel", table);

}  // namespace
