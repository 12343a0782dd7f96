#include "blocks.h"

#include <math.h>
#include <string.h>

#include <random>

namespace bench {
namespace {

constexpr int across = 240, down = 8, step = 8 * across;

// Some operations take four blocks' worth of memory.
struct Memory {
  alignas(64) int16_t in[across * down + 3][64];
  alignas(64) int16_t out[across * down + 3][64];
  alignas(64) uint8_t pixels[8 * down][step];
  alignas(64) uint8_t out_pixels[8 * down][step];
};
Memory memory;

Blocks blocks_of(Content content) {
  // What takes a nanosecond must find its blocks in the first-level cache.
  const bool few = content == Content::dc || content == Content::matrix;
  return {
      few ? 96 : across, few ? 1 : down, {memory.in[0], memory.out[0], memory.pixels[0], memory.out_pixels[0], step}};
}

const char* name_of(Content content) {
  switch (content) {
    case Content::pixels:
      return "pixels";
    case Content::residuals:
      return "9-bit";
    case Content::wide:
      return "12-bit";
    case Content::dense:
    case Content::levels:
      return "dense";
    case Content::ten:
    case Content::ten_levels:
      return "10 coefficients";
    case Content::dc:
      return "DC only";
    case Content::matrix:
      return "64 steps";
  }
  return "";
}

using Random = std::mt19937;

int texture(Random& random, int x, int y) {
  const double shade = 128 + 50 * sin(x / 37.0) + 40 * cos(y / 23.0 + x / 91.0);
  return int(shade) + int(random() % 41) - 20;
}

bool among_first_ten(int i) { return i / 8 + i % 8 < 4; }

void fill(Content content) {
  Random random(1);
  for (int y = 0; y < 8 * down; ++y)
    for (int x = 0; x < step; ++x) memory.pixels[y][x] = uint8_t(texture(random, x, y));

  for (int b = 0; b < across * down; ++b) {
    int16_t(&block)[64] = memory.in[b];
    if (content <= Content::residuals)
      for (int i = 0; i < 64; ++i) block[i] = int16_t(texture(random, b + i % 8, i / 8) - texture(random, 3 * b, 40));
    else if (content == Content::wide)
      for (int16_t& sample : block) sample = int16_t(random() % 4096 - 2048);
    else
      plain::DCT8x8Fwd_8U_16S(&memory.pixels[b / across * 8][b % across * 8], step, block);

    const bool divided = content == Content::levels || content == Content::ten_levels;
    const bool few = content == Content::ten || content == Content::ten_levels, lone = content == Content::dc;
    if (content >= Content::dense)
      for (int i = 0; i < 64; ++i) {
        const int level = int(lround(double(block[i]) / steps()[i]));
        const bool kept = lone ? i == 0 : !few || among_first_ten(i);
        block[i] = int16_t(!kept ? 0 : divided ? level : level * steps()[i]);
      }
  }
  memcpy(memory.out, memory.in, sizeof memory.out);
}

Setting setting(const BlockBench& bench, const Blocks& blocks) {
  const Blocks few{16, 1, blocks.first};
  const bool pixels = bench.job.yields == Yields::pixels;
  const auto on_blocks = [&](const BlockWork& make) {
    return make ? [=] { return make(blocks); } : std::function<Work()>();
  };
  return {
      .units = double(blocks.across) * blocks.down,
      .prepare = [content = bench.content] { fill(content); },
      .clear = [] { memset(memory.out_pixels, 0x5a, sizeof memory.out_pixels); },
      .result =
          [=] {
            Result result{{}, !pixels};
            for (int b = 0; b < blocks.down; ++b)
              for (int row = 0; row < 8; ++row) {
                const Block first = blocks.at(0, b);
                const uint8_t* bytes = pixels ? first.out_pixels + row * step
                                              : reinterpret_cast<const uint8_t*>(first.out + 8 * row * blocks.across);
                result.bytes.insert(result.bytes.end(), bytes, bytes + (pixels ? 8 : 16) * blocks.across);
              }
            return result;
          },
      .ours = on_blocks(bench.job.ours),
      .plain = on_blocks(bench.job.plain),
      .last_release = on_blocks(bench.job.last_release),
      .part = [=, make = bench.job.ours] { return make(few); },
      .units_of_part = double(few.across),
  };
}

}  // namespace

const int16_t* steps() {
  static int16_t table[64];
  for (int i = 0; i < 64; ++i) table[i] = int16_t(2 + (i / 8 + i % 8) / 4);
  return table;
}

bool add_blocks(const std::string& family, const std::vector<BlockBench>& table) {
  for (const BlockBench& bench : table) {
    const Blocks blocks = blocks_of(bench.content);
    Line line{.name = bench.job.name + "/" + name_of(bench.content),
              .unit = "block",
              .charted = true,
              .setting = setting(bench, blocks),
              .rivals = {}};
    for (const BlockPeer& peer : bench.peers)
      line.rivals.push_back({.library = peer.library,
                             .difference = peer.difference,
                             .tolerance = peer.tolerance,
                             .setting = line.setting,
                             .make = [blocks, make = peer.make] { return make(blocks); },
                             .scale = peer.scale});
    add(family, line);
  }
  return true;
}

}  // namespace bench
