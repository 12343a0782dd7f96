#include "blocks.h"
#include "peers/peers.h"

namespace {

using namespace bench;
using namespace peers;
using enum bench::Content;

const auto block_to_block = BlockForm{Yields::blocks, [](auto f, const Block& b) { f(b.in, b.out); }};
const auto pixels_to_block = BlockForm{Yields::blocks, [](auto f, const Block& b) { f(b.pixels, b.step, b.out); }};
const auto block_to_pixels = BlockForm{Yields::pixels, [](auto f, const Block& b) { f(b.in, b.out_pixels, b.step); }};

const std::vector<BlockBench> table = {
    {{pixels_to_block, OPERATION(DCT8x8Fwd_8U_16S)}, Content::pixels, 146.0 / 40, {ffmpeg_forward_pixels()}},
    {{block_to_block, OPERATION(DCT8x8Fwd_16S)}, residuals, 124.0 / 45, {ffmpeg_forward()}},
    {{block_to_block, OPERATION(DCT8x8Fwd_16S)}, wide, 124.0 / 95, {}},
    {{block_to_block, OPERATION(DCT8x8Fwd_12S_16S)}, wide, 124.0 / 95, {}},
    {{block_to_block, OPERATION(DCT2x2Fwd_16S)}, residuals, 1, {}},
    {{block_to_block, OPERATION(DCT4x4Fwd_16S)}, residuals, 19.6 / 8, {}},
    {{block_to_block, OPERATION(DCT16x16Fwd_16S)}, residuals, 1167.0 / 150, {}},
    {{block_to_block, OPERATION(DCT8x8Inv_16S)}, dense, 75.8 / 46, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_16S)}, ten, 44.8 / 34, {ffmpeg_inverse()}},
    {{block_to_pixels, OPERATION(DCT8x8Inv_16S_8U)}, dense, 112.0 / 52, libjpeg_turbo_inverse()},
    {{block_to_pixels, OPERATION(DCT8x8Inv_16S_8U)}, ten, 75.6 / 37, libjpeg_turbo_inverse()},
    {{block_to_block, OPERATION(DCT8x8Inv_1Q_16S)}, ten, 44.8 / 34, {ffmpeg_inverse()}},
    {{block_to_pixels, OPERATION(DCT8x8Inv_1Q_16S_8U)}, ten, 75.6 / 37, libjpeg_turbo_inverse()},
    {{block_to_block, OPERATION(DCT8x8Inv_1Q_Mismatch_16S)}, ten, 44.8 / 34, {}},
    {{block_to_block, OPERATION(DCT8x8Inv_IEEE_16S)}, dense, 72.8 / 40, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_IEEE_16S)}, ten, 72.8 / 22, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_IEEE_16S)}, dc, 72.8 / 5, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_DC_16S)}, dc, 1.31 / 1.3, {ffmpeg_inverse()}},
    {{block_to_pixels, OPERATION(DCT8x8Inv_DC_16S_8U)}, dc, 3.76 / 2.2, libjpeg_turbo_inverse()},
};

const bool added = add_blocks("dct", table);

}  // namespace
