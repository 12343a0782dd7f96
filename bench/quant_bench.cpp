#include <string.h>

#include "baseline.h"
#include "blocks.h"
#include "peers/peers.h"

namespace {

using namespace bench;
using namespace peers;
using enum bench::Content;

struct Tables {
  int16_t ones[64];
  float reciprocals[64], reciprocals_of_ones[64];
  double products[64], products_of_ones[64];
};

const Tables tables = [] {
  Tables t;
  for (int16_t& one : t.ones) one = 1;
  plain::QuantizeInit_16S(steps(), t.reciprocals);
  plain::QuantizeInit_16S(t.ones, t.reciprocals_of_ones);
  plain::DeQuantizeInit_16S(steps(), t.products);
  plain::DeQuantizeInit_16S(t.ones, t.products_of_ones);
  return t;
}();

const auto make_reciprocals =
    BlockForm{Yields::blocks, [](auto f, const Block& b) { f(steps(), reinterpret_cast<float*>(b.out)); }};
const auto make_products =
    BlockForm{Yields::blocks, [](auto f, const Block& b) { f(steps(), reinterpret_cast<double*>(b.out)); }};
// In place and again and again, a block keeps its values only with steps of 1.
const auto quantize = BlockForm{Yields::blocks, [](auto f, const Block& b) { f(tables.reciprocals_of_ones, b.out); }};
const auto dequantize = BlockForm{Yields::blocks, [](auto f, const Block& b) { f(tables.products_of_ones, b.out); }};

const auto encode = BlockForm{Yields::blocks, [](auto transform, auto quantize, const Block& b) {
                                transform(b.pixels, b.step, b.out);
                                quantize(tables.reciprocals, b.out);
                              }};
const auto decode = BlockForm{Yields::pixels, [](auto dequantize, auto transform, const Block& b) {
                                memcpy(b.out, b.in, 128);
                                dequantize(tables.products, b.out);
                                transform(b.out, b.out_pixels, b.step);
                              }};

// With these states everything fits 32 bits.
const Sides<decltype(plain::Quantize_16S_I)> quantizer{"Quantize_16S_I", pqx_Video_Quantize_16S_I,
                                                       baseline::Quantize_16S_I};
const Sides<decltype(plain::DeQuantize_16S_I)> dequantizer{"DeQuantize_16S_I", pqx_Video_DeQuantize_16S_I,
                                                           baseline::DeQuantize_16S_I};

const std::vector<BlockBench> table = {
    {{make_reciprocals, OPERATION(QuantizeInit_16S)}, matrix, {}},
    {{make_products, OPERATION(DeQuantizeInit_16S)}, matrix, {}},
    {{quantize, quantizer}, dense, {}},
    {{dequantize, dequantizer}, dense, {}},
    {{encode, OPERATION(DCT8x8Fwd_8U_16S), quantizer}, Content::pixels, libjpeg_turbo_encode()},
    {{decode, dequantizer, OPERATION(DCT8x8Inv_16S_8U)}, levels, libjpeg_turbo_decode()},
    {{decode, dequantizer, OPERATION(DCT8x8Inv_16S_8U)}, ten_levels, libjpeg_turbo_decode()},
};

const bool added = add_blocks("quant", table);

}  // namespace
