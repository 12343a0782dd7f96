#include "patches.h"

#include <string.h>

#include <map>
#include <random>

namespace bench {
namespace {

constexpr int step = 416, reference_rows = 40, most_rows = 16, most_patches = step / 8;

struct Results {
  alignas(64) uint8_t planes[3][most_rows][step];
  int16_t words[most_patches][256];
  uint32_t sums[most_patches];
};

alignas(64) uint8_t reference[reference_rows][step];
Results results_of_all;
int places[most_patches][10];

std::vector<Patch> patches_of(Shape shape) {
  std::mt19937 random(1);
  const auto place = [&](int spare) { return int(random() % unsigned(spare)); };
  memcpy(reference, varied_bytes(sizeof reference), sizeof reference);
  std::vector<Patch> all;
  for (int i = 0; i < step / shape.width; ++i) {
    const auto anywhere = [&] { return &reference[place(reference_rows - 25)][place(step - 25)]; };
    for (int k = 0; k < 10; ++k) places[i][k] = k % 2 ? place(reference_rows - 15) : place(step - 15);
    Results& r = results_of_all;
    all.push_back({anywhere(), anywhere(), step, shape.width, shape.height, &r.planes[0][0][shape.width * i],
                   &r.planes[1][0][shape.width * i], &r.planes[2][0][shape.width * i], r.words[i], &r.sums[i],
                   reference[0], places[i]});
  }
  return all;
}

Setting setting(const PatchBench& bench) {
  const auto of_shape = [&](const PatchWork& make) {
    return make ? [=, shape = bench.shape] { return make(shape); } : std::function<Work()>();
  };
  return {
      .units = double(patches(bench.shape).size()),
      .prepare =
          [] {
            for (auto& block : results_of_all.words)
              for (int i = 0; i < 256; ++i) block[i] = int16_t(i * 37 % 101 - 50);
          },
      .clear =
          [] {
            for (auto& plane : results_of_all.planes)
              for (auto& row : plane)
                for (int x = 0; x < step; ++x) row[x] = uint8_t(x);
          },
      .result =
          [] {
            const auto* bytes = reinterpret_cast<const uint8_t*>(&results_of_all);
            return Result{{bytes, bytes + sizeof results_of_all}};
          },
      .ours = of_shape(bench.ours),
      .plain = of_shape(bench.plain),
      .last_release = of_shape(bench.last_release),
  };
}

}  // namespace

const std::vector<Patch>& patches(Shape shape) {
  static std::map<std::pair<int, int>, std::vector<Patch>> of;
  std::vector<Patch>& all = of[{shape.width, shape.height}];
  if (all.empty()) all = patches_of(shape);
  return all;
}

bool add_patches(const std::string& family, const std::vector<PatchBench>& table) {
  for (const PatchBench& bench : table) {
    const std::string shape = std::to_string(bench.shape.width) + "x" + std::to_string(bench.shape.height);
    Line line{.name = std::string(bench.operation) + "/" + shape,
              .unit = "block",
              .charted = bench.shape.width == bench.shape.height,
              .setting = setting(bench),
              .rivals = {}};
    for (const PatchPeer& peer : bench.peers)
      line.rivals.push_back({.library = peer.library,
                             .difference = peer.difference,
                             .tolerance = 0,
                             .setting = line.setting,
                             .make = [shape = bench.shape, make = peer.make] { return make(shape); }});
    add(family, line);
  }
  return true;
}

}  // namespace bench
