#include "operations.h"

#include <stddef.h>
#include <xmmintrin.h>

#include "baseline.h"
#include "pqx_video.h"

// FFmpeg's own code for prediction has no interface but is part of its static library. It is written for SSE2, at 8
// columns for MMX, and wants aligned results. What averages two sources takes the second one packed.
extern "C" {
using FfmpegPredict = void(uint8_t* dst, const uint8_t* src, ptrdiff_t step, int rows);
FfmpegPredict ff_put_pixels16_sse2, ff_put_pixels16_x2_sse2, ff_put_pixels16_y2_sse2, ff_put_pixels16_xy2_sse2;
FfmpegPredict ff_avg_pixels16_sse2, ff_avg_pixels16_x2_sse2, ff_avg_pixels16_y2_sse2, ff_avg_pixels16_xy2_sse2;
FfmpegPredict ff_put_pixels8_mmx, ff_put_pixels8_x2_mmxext, ff_put_pixels8_y2_mmxext, ff_put_pixels8_xy2_mmx;
FfmpegPredict ff_avg_pixels8_mmxext, ff_avg_pixels8_x2_mmxext, ff_avg_pixels8_y2_mmxext, ff_avg_pixels8_xy2_mmxext;
using FfmpegAverage = void(uint8_t* dst, const uint8_t* a, const uint8_t* b, int dst_step, int a_step, int rows);
FfmpegAverage ff_put_pixels16_l2_mmxext, ff_avg_pixels16_l2_mmxext, ff_put_no_rnd_pixels16_l2_mmxext;
FfmpegAverage ff_put_pixels8_l2_mmxext, ff_avg_pixels8_l2_mmxext, ff_put_no_rnd_pixels8_l2_mmxext;
}

namespace prediction {
namespace {

template <class F, auto call>
void run(void* const* functions, Order order) {
  F* const f = reinterpret_cast<F*>(functions[0]);
  for (const Call* c : order) call(f, *c);
}
template <class F, auto call>
void run_by_width(void* const* functions, Order order) {
  for (const Call* c : order) call(reinterpret_cast<F*>(functions[c->width / 16]), *c);
  _mm_empty();
}

constexpr auto one_step = [](auto f, const Call& c) { f(c.a, c.d, c.a_step, c.width, c.height); };
constexpr auto two_steps = [](auto f, const Call& c) { f(c.a, c.d, c.a_step, c.a_step, c.width, c.height); };
constexpr auto words = [](auto f, const Call& c) { f(c.a, c.a_step, c.words, c.width, c.height); };
constexpr auto words_two = [](auto f, const Call& c) { f(c.a, c.a_step, c.a_step, c.words, c.width, c.height); };
constexpr auto average = [](auto f, const Call& c) {
  f(c.a, c.a_step, c.b, c.b_step, c.d, c.d_step, c.width, c.height);
};
constexpr auto three = [](auto f, const Call& c) {
  f(c.a, c.a_step, c.width, c.height, c.d, c.d + next_picture, c.d + 2 * next_picture);
};
constexpr auto cost = [](auto f, const Call& c) { *c.words = int16_t(f(c.a, c.b, c.a_step, c.width, c.height)); };
constexpr auto residual = [](auto f, const Call& c) { f(c.words, c.d, c.d_step); };
constexpr auto loop = [](auto f, const Call& c) { f(c.a, c.d, c.a_step); };
constexpr auto overlapped = [](auto f, const Call& c) {
  const int* at = c.grid->places;
  f(c.grid->reference, c.a_step, c.d, c.d_step, at[0], at[1], at[2], at[3], at[4], at[5], at[6], at[7], at[8], at[9]);
};
constexpr auto predict = [](auto f, const Call& c) { f(c.d, c.a, c.a_step, c.height); };
constexpr auto average_packed = [](auto f, const Call& c) { f(c.d, c.a, c.b, c.d_step, c.a_step, c.height); };

void* address(auto* function) { return reinterpret_cast<void*>(function); }

Operation::Peer kernels(FfmpegPredict* of_8, FfmpegPredict* of_16) {
  return {run_by_width<FfmpegPredict, predict>, address(of_8), address(of_16)};
}
Operation::Peer kernels(FfmpegAverage* of_8, FfmpegAverage* of_16) {
  return {run_by_width<FfmpegAverage, average_packed>, address(of_8), address(of_16), true};
}

const std::vector<Shape> eights = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}},
                         fours = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4}}, one = {{8, 8}},
                         heights = {{16, 16}, {16, 4}, {16, 8}, {16, 12}, {16, 18}, {16, 31},
                                    {8, 8},   {8, 4},  {8, 16}, {8, 12},  {8, 18},  {8, 31}};
const std::vector<Steps> alike = {Steps::one_picture, Steps::any}, same = {Steps::one_picture},
                         all = {Steps::one_picture, Steps::two_pictures, Steps::packed, Steps::any};
const std::vector<Place> both = {Place::grid, Place::anywhere}, grid = {Place::grid};

#define TIMED(NAME, CALL) #NAME, run < decltype(baseline::NAME), CALL>, address(baseline::NAME)

// Positions in the table: of four operations each, and of one.
constexpr size_t put = 0, averaged_in = 4, average_of_two = 8;

pqx_Status nothing_at_all() { return PQX_OK; }

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> table = {
      {TIMED(CopyRef_8U, one_step), eights, alike, both, kernels(ff_put_pixels8_mmx, ff_put_pixels16_sse2)},
      {TIMED(InterpX_8U, one_step), eights, alike, both, kernels(ff_put_pixels8_x2_mmxext, ff_put_pixels16_x2_sse2)},
      {TIMED(InterpY_8U, two_steps), fours, alike, both, kernels(ff_put_pixels8_y2_mmxext, ff_put_pixels16_y2_sse2)},
      {TIMED(InterpXY_8U, two_steps), fours, alike, both, kernels(ff_put_pixels8_xy2_mmx, ff_put_pixels16_xy2_sse2)},
      {TIMED(CopyRefAve_8U, one_step), eights, alike, both, kernels(ff_avg_pixels8_mmxext, ff_avg_pixels16_sse2)},
      {TIMED(InterpAveX_8U, one_step), fours, alike, both,
       kernels(ff_avg_pixels8_x2_mmxext, ff_avg_pixels16_x2_sse2)},
      {TIMED(InterpAveY_8U, two_steps), fours, alike, both,
       kernels(ff_avg_pixels8_y2_mmxext, ff_avg_pixels16_y2_sse2)},
      {TIMED(InterpAveXY_8U, two_steps), fours, alike, both,
       kernels(ff_avg_pixels8_xy2_mmxext, ff_avg_pixels16_xy2_sse2)},
      {TIMED(Average2Rnd_8U, average), fours, all, both,
       kernels(ff_put_pixels8_l2_mmxext, ff_put_pixels16_l2_mmxext)},
      {TIMED(Average2NoRnd_8U, average), fours, all, both,
       kernels(ff_put_no_rnd_pixels8_l2_mmxext, ff_put_no_rnd_pixels16_l2_mmxext)},
      {TIMED(Average3Rnd_8U, average), fours, all, both,
       kernels(ff_avg_pixels8_l2_mmxext, ff_avg_pixels16_l2_mmxext)},
      {TIMED(Average3NoRnd_8U, average), fours, all, both},
      {TIMED(CopyRef_8U_16S, words), fours, same, both},
      {TIMED(InterpX_8U_16S, words), eights, same, both},
      {TIMED(InterpY_8U_16S, words_two), eights, same, both},
      {TIMED(InterpXY_8U_16S, words_two), eights, same, both},
      {TIMED(InterpX_Y_XY_8U, three), fours, same, both},
      {TIMED(SumAbsDiff_8U, cost), heights, same, grid},
      {TIMED(AddBlock_16S_8U_I, residual), one, same, both},
      {TIMED(H263OverlappedMC_8U, overlapped), one, same, both},
      {TIMED(P64Loop_8U, loop), one, same, both},
  };
  return table;
}

const char* name_of(Picture picture) {
  return picture == Picture::P   ? "P macroblocks"
         : picture == Picture::B ? "B macroblocks, averaged in"
                                 : "B macroblocks, Average2Rnd";
}

std::vector<Macroblock> random_macroblocks(Random& random, Picture picture, Place place, int turn) {
  std::vector<Macroblock> macroblocks;
  const auto blocks = [&](int width, int height) {
    const Steps steps = picture == Picture::B_by_averages ? Steps::packed : Steps::one_picture;
    return random_calls(random, {{width, height}}, steps, place, turn + (width == 8));
  };
  const std::vector<Call> luma = blocks(16, 16), quarters = blocks(8, 8), chroma = blocks(8, 8);
  for (size_t i = 0; i < 64; ++i) {
    Macroblock& m = macroblocks.emplace_back();
    const auto predict = [&](const Call& c) {
      m.push_back({put + random() % 4, c});
      if (picture == Picture::B) m.push_back({averaged_in + random() % 4, c}), m.back().call.a = c.b;
      if (picture == Picture::B_by_averages) m.push_back({average_of_two, c});
    };
    if (random() % 4 == 0)
      for (size_t k = 0; k < 4; ++k) predict(quarters[4 * i + k]);
    else
      predict(luma[i]);
    for (size_t k = 0; k < 2; ++k) predict(chroma[2 * i + k]);
  }
  return macroblocks;
}

void run_macroblocks(void* const* functions, std::span<const Macroblock* const> all) {
  for (const Macroblock* macroblock : all)
    for (const auto& [operation, call] : *macroblock) {
      void* const f = functions[operation];
      if (operation == average_of_two)
        average(reinterpret_cast<decltype(pqx_Video_Average2Rnd_8U)*>(f), call);
      else if (operation % 4 < 2)
        one_step(reinterpret_cast<decltype(pqx_Video_CopyRef_8U)*>(f), call);
      else
        two_steps(reinterpret_cast<decltype(pqx_Video_InterpY_8U)*>(f), call);
    }
}

void run_macroblocks_of_peers(std::span<const Macroblock* const> all) {
  static const std::vector<Operation>& table = operations();
  for (const Macroblock* macroblock : all)
    for (const auto& [operation, call] : *macroblock) {
      const Operation::Peer& peer = table[operation].peer;
      void* const f = call.width == 16 ? peer.of_16 : peer.of_8;
      if (operation == average_of_two)
        average_packed(reinterpret_cast<FfmpegAverage*>(f), call);
      else
        predict(reinterpret_cast<FfmpegPredict*>(f), call);
    }
  _mm_empty();
}

void* nothing() { return address(nothing_at_all); }

}  // namespace prediction
