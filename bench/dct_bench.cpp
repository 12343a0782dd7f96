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
    {{pixels_to_block, OPERATION(DCT8x8Fwd_8U_16S)}, Content::pixels, {ffmpeg_forward_pixels()}},
    {{block_to_block, OPERATION(DCT8x8Fwd_16S)}, residuals, {ffmpeg_forward()}},
    {{block_to_block, OPERATION(DCT8x8Fwd_16S)}, wide, {}},
    {{block_to_block, OPERATION(DCT8x8Fwd_12S_16S)}, wide, {}},
    {{block_to_block, OPERATION(DCT2x2Fwd_16S)}, residuals, {}},
    {{block_to_block, OPERATION(DCT4x4Fwd_16S)}, residuals, {}},
    {{block_to_block, OPERATION(DCT16x16Fwd_16S)}, residuals, {}},
    {{block_to_block, OPERATION(DCT8x8Inv_16S)}, dense, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_16S)}, ten, {ffmpeg_inverse()}},
    {{block_to_pixels, OPERATION(DCT8x8Inv_16S_8U)}, dense, libjpeg_turbo_inverse()},
    {{block_to_pixels, OPERATION(DCT8x8Inv_16S_8U)}, ten, libjpeg_turbo_inverse()},
    {{block_to_block, OPERATION(DCT8x8Inv_1Q_16S)}, ten, {ffmpeg_inverse()}},
    {{block_to_pixels, OPERATION(DCT8x8Inv_1Q_16S_8U)}, ten, libjpeg_turbo_inverse()},
    {{block_to_block, OPERATION(DCT8x8Inv_1Q_Mismatch_16S)}, ten, {}},
    {{block_to_block, OPERATION(DCT8x8Inv_IEEE_16S)}, dense, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_IEEE_16S)}, ten, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_IEEE_16S)}, dc, {ffmpeg_inverse()}},
    {{block_to_block, OPERATION(DCT8x8Inv_DC_16S)}, dc, {ffmpeg_inverse()}},
    {{block_to_pixels, OPERATION(DCT8x8Inv_DC_16S_8U)}, dc, libjpeg_turbo_inverse()},
};

const bool added = add_blocks("dct", table);

}  // namespace
