#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;
using enum peers::Scaling;

constexpr auto two_to_one = [](auto f, const Band& b) { f(b.in(0), b.in(0, 1), b.width, b.out(0)); };
constexpr auto one_to_one = [](auto f, const Band& b) { f(b.in(0), b.width, b.out(0)); };
constexpr auto half_to_two = [](auto f, const Band& b) { f(b.in(0), b.width / 2, b.out(0), b.out(0, 1)); };
constexpr auto half_to_one = [](auto f, const Band& b) { f(b.in(0), b.width / 2, b.out(0)); };
constexpr auto half_and_neighbours_to_two = [](auto f, const Band& b) {
  f(b.in_clamped(0, -1), b.in(0), b.in_clamped(0, 1), b.width / 2, b.out(0), b.out(0, 1));
};

auto down_420(PlaneForm from, PlaneForm to) { return RowForm{{from}, {to}, 2, two_to_one}; }
auto down_422(PlaneForm from, PlaneForm to) { return RowForm{{from}, {to}, 1, one_to_one}; }
auto up_420_nn(PlaneForm from, PlaneForm to) { return RowForm{{from}, {to}, 2, half_to_two}; }
auto up_420_bl(PlaneForm from, PlaneForm to) { return RowForm{{from}, {to}, 2, half_and_neighbours_to_two}; }
auto up_422(PlaneForm from, PlaneForm to) { return RowForm{{from}, {to}, 1, half_to_one}; }

RowPeers down_8() { return {libyuv_scale(box), opencv_scale(box), libjpeg_turbo_down_sample()}; }
RowPeers down_16() { return {libyuv_scale(box), opencv_scale(box)}; }
RowPeers up_8(Scaling s) { return {libyuv_scale(s), opencv_scale(s), libjpeg_turbo_up_sample(s)}; }
RowPeers up_16(Scaling s) { return {libyuv_scale(s), opencv_scale(s)}; }

const std::vector<RowBench> table = {
    {OPERATION(DownSample420_BL_8U), down_420(full, quartered), in_rows_and_pictures, down_8()},
    {OPERATION(DownSample422_BL_8U), down_422(full, halved), in_rows, down_8()},
    {OPERATION(DownSample420_BL_16S), down_420(full_words, quartered_words), in_rows, down_16()},
    {OPERATION(DownSample422_BL_16S), down_422(full_words, halved_words), in_rows, down_16()},
    {OPERATION(UpSample420_NN_8U), up_420_nn(quartered, full), in_rows, up_8(nearest)},
    {OPERATION(UpSample422_NN_8U), up_422(halved, full), in_rows, up_8(nearest)},
    {OPERATION(UpSample420_BL_8U), up_420_bl(quartered, full), in_rows_and_pictures, up_8(bilinear)},
    {OPERATION(UpSample422_BL_8U), up_422(halved, full), in_rows, up_8(linear)},
    {OPERATION(UpSample420_NN_16S), up_420_nn(quartered_words, full_words), in_rows, up_16(nearest)},
    {OPERATION(UpSample422_NN_16S), up_422(halved_words, full_words), in_rows, up_16(nearest)},
    {OPERATION(UpSample420_BL_16S), up_420_bl(quartered_words, full_words), in_rows, up_16(bilinear)},
    {OPERATION(UpSample422_BL_16S), up_422(halved_words, full_words), in_rows, up_16(linear)},
};

const bool added = add_rows("resample", "sample", table);

}  // namespace
