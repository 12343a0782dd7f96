#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;

constexpr auto one_to_one = [](auto f, const Band& b) { f(b.in(0), b.out(0), b.width); };
constexpr auto in_place = [](auto f, const Band& b) { f(b.out(0), b.width); };
constexpr auto picture = [](auto f, const Band& b) {
  f(b.in(0), b.in_step(0) / 4, b.out(0), b.out_step(0) / 4, b.width, b.height);
};
constexpr auto merge_2 = [](auto f, const Band& b) { f(b.in(0), b.in(1), b.width, b.out(0)); };
constexpr auto merge_3 = [](auto f, const Band& b) { f(b.in(0), b.in(1), b.in(2), b.width, b.out(0)); };
constexpr auto merge_4 = [](auto f, const Band& b) { f(b.in(0), b.in(1), b.in(2), b.in(3), b.width, b.out(0)); };
constexpr auto split_2 = [](auto f, const Band& b) { f(b.in(0), b.out(0), b.out(1), b.width); };
constexpr auto split_3 = [](auto f, const Band& b) { f(b.in(0), b.out(0), b.out(1), b.out(2), b.width); };
constexpr auto split_4 = [](auto f, const Band& b) { f(b.in(0), b.out(0), b.out(1), b.out(2), b.out(3), b.width); };

auto drop() { return RowForm{{four_bytes}, {three_bytes}, 1, one_to_one}; }
auto extend() { return RowForm{{three_bytes}, {four_bytes}, 1, one_to_one}; }
auto exchange(PlaneForm pixels) { return RowForm{{}, {pixels}, 1, in_place}; }
template <class Call>
auto merge(PlaneForm part, size_t parts, PlaneForm whole, Call call) {
  return RowForm{std::vector(parts, part), {whole}, 1, call};
}
template <class Call>
auto split(PlaneForm whole, PlaneForm part, size_t parts, Call call) {
  return RowForm{{whole}, std::vector(parts, part), 1, call};
}

const char* const other_byte = "alpha at the other end";

const std::vector<RowBench> table = {
    {OPERATION(ColorARGB2RGB_8U),
     drop(),
     in_rows_and_pictures,
     {libyuv_planes<1, 1>(libyuv::ARGBToRGB24, 255, other_byte)}},
    {OPERATION(ColorABGR2RGB_8U), drop(), in_rows, {libyuv_planes<1, 1>(libyuv::ARGBToRAW, 255, other_byte)}},
    {OPERATION(ColorRGB2ARGB_8U),
     extend(),
     in_rows_and_pictures,
     {libyuv_planes<1, 1>(libyuv::RGB24ToARGB, 255, other_byte)}},
    {OPERATION(ColorRGB2ABGR_8U), extend(), in_rows, {libyuv_planes<1, 1>(libyuv::RAWToRGBA, 66)}},
    {OPERATION(ColorRGB2BGR_8U_I), exchange(three_bytes), in_rows, {}},
    {OPERATION(ColorARGB2ABGR_8U_I), exchange(four_bytes), in_rows, {}},
    {OPERATION(ColorRGBA2ABGR_32U),
     RowForm{{four_bytes}, {four_bytes}, all_rows, picture},
     in_rows,
     {libyuv_planes<1, 1>(libyuv::ARGBToBGRA, 0)}},
    {OPERATION(ColorMerge2_8U),
     merge(full, 2, two_bytes, merge_2),
     in_rows,
     {libyuv_planes<2, 1>(libyuv::MergeUVPlane, 0), opencv_merge()}},
    {OPERATION(ColorMerge3_8U),
     merge(full, 3, three_bytes, merge_3),
     in_rows_and_pictures,
     {libyuv_planes<3, 1>(libyuv::MergeRGBPlane, 0), opencv_merge()}},
    {OPERATION(ColorMerge4_8U), merge(full, 4, four_bytes, merge_4), in_rows, {opencv_merge()}},
    {OPERATION(ColorSplit2_8U),
     split(two_bytes, full, 2, split_2),
     in_rows,
     {libyuv_planes<1, 2>(libyuv::SplitUVPlane, 0), opencv_split()}},
    {OPERATION(ColorSplit3_8U),
     split(three_bytes, full, 3, split_3),
     in_rows_and_pictures,
     {libyuv_planes<1, 3>(libyuv::SplitRGBPlane, 0), opencv_split()}},
    {OPERATION(ColorSplit4_8U), split(four_bytes, full, 4, split_4), in_rows, {opencv_split()}},
    {OPERATION(ColorMerge2_16S), merge(full_words, 2, two_words, merge_2), in_rows, {opencv_merge()}},
    {OPERATION(ColorMerge3_16S), merge(full_words, 3, three_words, merge_3), in_rows, {opencv_merge()}},
    {OPERATION(ColorMerge4_16S), merge(full_words, 4, four_words, merge_4), in_rows, {opencv_merge()}},
    {OPERATION(ColorSplit2_16S), split(two_words, full_words, 2, split_2), in_rows, {opencv_split()}},
    {OPERATION(ColorSplit3_16S), split(three_words, full_words, 3, split_3), in_rows, {opencv_split()}},
    {OPERATION(ColorSplit4_16S), split(four_words, full_words, 4, split_4), in_rows, {opencv_split()}},
};

const bool added = add_rows("color", "pixel", table);

}  // namespace
