#include "blocks.h"
#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;

constexpr auto halve = [](auto f, const Band& b) {
  f(b.in(0), b.in_step(0), b.out(0), b.out_step(0), b.width / 2, b.height / 2);
};

const std::vector<RowBench> rows = {
    {OPERATION(P64Decimate_8U),
     RowForm{{full}, {quartered}, all_rows, halve},
     in_rows_and_pictures,
     {libyuv_scale(Scaling::box), opencv_scale(Scaling::box)}},
};

const BlockForm to_pixels{Yields::pixels, [](auto f, const Block& b) { f(b.pixels, b.out_pixels, b.step); }};
const BlockForm to_block{Yields::blocks, [](auto f, const Block& b) { f(b.pixels, b.step, b.out); }};

const std::vector<BlockBench> blocks = {
    {{to_pixels, OPERATION(P64Loop_8U)}, Content::pixels, {}},
    {{to_block, OPERATION(P64Loop_8U_16S)}, Content::pixels, {}},
};

const bool added = add_rows("filter", "sample", rows) && add_blocks("filter", blocks);

}  // namespace
