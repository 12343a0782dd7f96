#include "baseline.h"
#include "patches.h"
#include "peers/peers.h"
#include "rows.h"

namespace {

using namespace bench;
using namespace peers;
using enum HalfSample;

constexpr auto copy = [](auto f, const Patch& p) { f(p.a, p.out, p.step, p.width, p.height); };
constexpr auto copy_words = [](auto f, const Patch& p) { f(p.a, p.step, p.words, p.width, p.height); };
constexpr auto interpolate = [](auto f, const Patch& p) { f(p.a, p.out, p.step, p.step, p.width, p.height); };
constexpr auto interpolate_words = [](auto f, const Patch& p) { f(p.a, p.step, p.step, p.words, p.width, p.height); };
constexpr auto average = [](auto f, const Patch& p) {
  f(p.a, p.step, p.b, p.step, p.out, p.step, p.width, p.height);
};
constexpr auto three = [](auto f, const Patch& p) { f(p.a, p.step, p.width, p.height, p.out, p.out2, p.out3); };
constexpr auto three_wide = [](auto f, const Patch& p) { f(p.a, p.out, p.out2, p.out3, p.step, p.height); };
constexpr auto three_any = [](auto f, const Patch& p) { f(p.a, p.out, p.out2, p.out3, p.step, p.width, p.height); };
constexpr auto cost = [](auto f, const Patch& p) { *p.sum = f(p.a, p.b, p.step, p.width, p.height); };
constexpr auto residual = [](auto f, const Patch& p) { f(p.words, p.out, p.step); };
constexpr auto overlapped = [](auto f, const Patch& p) {
  const int* at = p.places;
  f(p.reference, p.step, p.out, p.step, at[0], at[1], at[2], at[3], at[4], at[5], at[6], at[7], at[8], at[9]);
};
constexpr auto overlapped_words = [](auto f, const Patch& p) {
  const int* at = p.places;
  f(p.reference, p.step, p.words, at[0], at[1], at[2], at[3], at[4], at[5], at[6], at[7], at[8], at[9]);
};

const PatchPeer libyuv_copy{"libyuv", "", on_patches([](const Patch& p) {
                              libyuv::CopyPlane(p.a, p.step, p.out, p.step, p.width, p.height);
                            })};
const PatchPeer libyuv_average{"libyuv", "", on_patches([](const Patch& p) {
                                 libyuv::InterpolatePlane(p.a, p.step, p.b, p.step, p.out, p.step, p.width, p.height,
                                                          128);
                               })};

const Sides<decltype(baseline::InterpX_Y_XY_8U_w16)> worker_w16{"InterpX_Y_XY_8U_w16", pqx_VideoInterpX_Y_XY_8U_w16,
                                                                baseline::InterpX_Y_XY_8U_w16};
const Sides<decltype(baseline::InterpX_Y_XY_8U_comm)> worker_comm{
    "InterpX_Y_XY_8U_comm", pqx_VideoInterpX_Y_XY_8U_comm, baseline::InterpX_Y_XY_8U_comm};

const std::vector<PatchBench> table = {
    {TUNED(SumAbsDiff_8U), cost, 16, {ffmpeg_cost()}},
    {TUNED(SumAbsDiff_8U), cost, 8, {ffmpeg_cost()}},
    {TUNED(CopyRef_8U), copy, 16, {libyuv_copy, ffmpeg_prediction(none, false)}},
    {TUNED(CopyRef_8U), copy, 8, {libyuv_copy, ffmpeg_prediction(none, false)}},
    {TUNED(CopyRefAve_8U), copy, 16, {ffmpeg_prediction(none, true)}},
    {TUNED(CopyRefAve_8U), copy, 8, {ffmpeg_prediction(none, true)}},
    {TUNED(CopyRef_8U_16S), copy_words, 16},
    {TUNED(CopyRef_8U_16S), copy_words, 8},
    {TUNED(Average2Rnd_8U), average, 16, {libyuv_average}},
    {TUNED(Average2Rnd_8U), average, 8, {libyuv_average}},
    {TUNED(Average2NoRnd_8U), average, 16},
    {TUNED(Average2NoRnd_8U), average, 8},
    {TUNED(Average3Rnd_8U), average, 16},
    {TUNED(Average3Rnd_8U), average, 8},
    {TUNED(Average3NoRnd_8U), average, 16},
    {TUNED(Average3NoRnd_8U), average, 8},
    {TUNED(AddBlock_16S_8U_I), residual, 8, {ffmpeg_residual()}},
    {TUNED(InterpX_8U), copy, 16, {ffmpeg_prediction(x, false)}},
    {TUNED(InterpX_8U), copy, 8, {ffmpeg_prediction(x, false)}},
    {TUNED(InterpAveX_8U), copy, 16, {ffmpeg_prediction(x, true)}},
    {TUNED(InterpAveX_8U), copy, 8, {ffmpeg_prediction(x, true)}},
    {TUNED(InterpY_8U), interpolate, 16, {ffmpeg_prediction(y, false)}},
    {TUNED(InterpY_8U), interpolate, 8, {ffmpeg_prediction(y, false)}},
    {TUNED(InterpAveY_8U), interpolate, 16, {ffmpeg_prediction(y, true)}},
    {TUNED(InterpAveY_8U), interpolate, 8, {ffmpeg_prediction(y, true)}},
    {TUNED(InterpXY_8U), interpolate, 16, {ffmpeg_prediction(xy, false)}},
    {TUNED(InterpXY_8U), interpolate, 8, {ffmpeg_prediction(xy, false)}},
    {TUNED(InterpAveXY_8U), interpolate, 16, {ffmpeg_prediction(xy, true)}},
    {TUNED(InterpAveXY_8U), interpolate, 8, {ffmpeg_prediction(xy, true)}},
    {TUNED(InterpX_8U_16S), copy_words, 16},
    {TUNED(InterpX_8U_16S), copy_words, 8},
    {TUNED(InterpY_8U_16S), interpolate_words, 16},
    {TUNED(InterpY_8U_16S), interpolate_words, 8},
    {TUNED(InterpXY_8U_16S), interpolate_words, 16},
    {TUNED(InterpXY_8U_16S), interpolate_words, 8},
    {TUNED(InterpX_Y_XY_8U), three, 16},
    {TUNED(InterpX_Y_XY_8U), three, 8},
    {worker_w16, three_wide, 16},
    {worker_comm, three_any, 8},
    {TUNED(H263OverlappedMC_8U), overlapped, 8},
    {TUNED(H263OverlappedMC_8U_16S), overlapped_words, 8},
};

/// Other shapes: parts of macroblocks, and what is wider than registers.
template <class F, class Call>
void add_shapes(std::vector<PatchBench>& shapes, Sides<F> sides, Call call,
                const std::vector<PatchPeer>& peers = {}) {
  for (const Shape shape : {Shape(16, 8), Shape(8, 16), Shape(8, 4)}) shapes.emplace_back(sides, call, shape, peers);
  for (const Shape shape : {Shape(24, 6), Shape(96, 2)}) shapes.emplace_back(sides, call, shape);
}

std::vector<PatchBench> shapes() {
  std::vector<PatchBench> all;
  add_shapes(all, TUNED(SumAbsDiff_8U), cost);
  add_shapes(all, TUNED(CopyRef_8U), copy, {ffmpeg_prediction(none, false)});
  add_shapes(all, TUNED(CopyRefAve_8U), copy, {ffmpeg_prediction(none, true)});
  add_shapes(all, TUNED(CopyRef_8U_16S), copy_words);
  add_shapes(all, TUNED(Average2Rnd_8U), average);
  add_shapes(all, TUNED(Average2NoRnd_8U), average);
  add_shapes(all, TUNED(Average3Rnd_8U), average);
  add_shapes(all, TUNED(Average3NoRnd_8U), average);
  add_shapes(all, TUNED(InterpX_8U), copy, {ffmpeg_prediction(x, false)});
  add_shapes(all, TUNED(InterpAveX_8U), copy, {ffmpeg_prediction(x, true)});
  add_shapes(all, TUNED(InterpY_8U), interpolate, {ffmpeg_prediction(y, false)});
  add_shapes(all, TUNED(InterpAveY_8U), interpolate, {ffmpeg_prediction(y, true)});
  add_shapes(all, TUNED(InterpXY_8U), interpolate, {ffmpeg_prediction(xy, false)});
  add_shapes(all, TUNED(InterpAveXY_8U), interpolate, {ffmpeg_prediction(xy, true)});
  add_shapes(all, TUNED(InterpX_8U_16S), copy_words);
  add_shapes(all, TUNED(InterpY_8U_16S), interpolate_words);
  add_shapes(all, TUNED(InterpXY_8U_16S), interpolate_words);
  add_shapes(all, TUNED(InterpX_Y_XY_8U), three);
  return all;
}

// Whole pictures, as global motion has them; interpolation reads a column and a row more than it writes.
constexpr auto copy_picture = [](auto f, const Band& b) { f(b.in(0), b.out(0), b.in_step(0), b.width, b.height); };
constexpr auto interpolate_picture = [](auto f, const Band& b) {
  f(b.in(0), b.out(0), b.in_step(0), b.in_step(0), b.width - 1, b.height - 1);
};
const std::vector<RowBench> pictures = {
    {TUNED(CopyRefAve_8U), RowForm{{full}, {full}, all_rows, copy_picture}, in_rows_and_pictures, {}},
    {TUNED(InterpXY_8U), RowForm{{full}, {full}, all_rows, interpolate_picture}, in_rows_and_pictures, {}},
};

const bool added = add_patches("mc", table) && add_patches("mc", shapes()) && add_rows("mc", "sample", pictures);

}  // namespace
