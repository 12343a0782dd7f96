#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;
using enum peers::Scaling;

auto down_420(PlaneForm from, PlaneForm to) {
  return RowForm({from}, {to}, 2, [](auto f, const Band& b) { f(b.in(0), b.in(0, 1), b.width, b.out(0)); });
}
auto down_422(PlaneForm from, PlaneForm to) {
  return RowForm({from}, {to}, 1, [](auto f, const Band& b) { f(b.in(0), b.width, b.out(0)); });
}

const RowPeers means_8 = {libyuv_scale(box), opencv_scale(box), libjpeg_turbo_down_sample()};
const RowPeers means_16 = {libyuv_scale(box), opencv_scale(box)};

const std::vector<RowBench> table = {
    {OPERATION(DownSample420_BL_8U), down_420(full, quartered), 0.272 / 0.095, in_rows_and_pictures, means_8},
    {OPERATION(DownSample422_BL_8U), down_422(full, halved), 0.185 / 0.055, in_rows, means_8},
    {OPERATION(DownSample420_BL_16S), down_420(full_words, quartered_words), 0.521 / 0.13, in_rows, means_16},
    {OPERATION(DownSample422_BL_16S), down_422(full_words, halved_words), 0.310 / 0.08, in_rows, means_16},
};

const bool added = add_rows("resample", "sample", table);

}  // namespace
