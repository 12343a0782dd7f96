#include "patches.h"

#include <string.h>

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

std::vector<Patch> patches_of(int size) {
  std::mt19937 random(1);
  const auto place = [&](int spare) { return int(random() % unsigned(spare)); };
  memcpy(reference, varied_bytes(sizeof reference), sizeof reference);
  std::vector<Patch> all;
  for (int i = 0; i < step / size; ++i) {
    const auto anywhere = [&] { return &reference[place(reference_rows - 17)][place(step - 17)]; };
    for (int k = 0; k < 10; ++k) places[i][k] = k % 2 ? place(reference_rows - 15) : place(step - 15);
    Results& r = results_of_all;
    all.push_back({anywhere(), anywhere(), step, size, &r.planes[0][0][size * i], &r.planes[1][0][size * i],
                   &r.planes[2][0][size * i], r.words[i], &r.sums[i], reference[0], places[i]});
  }
  return all;
}

Setting setting(const PatchBench& bench) {
  return {
      .units = double(patches(bench.size).size()),
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
      .ours = [make = bench.ours, size = bench.size] { return make(size); },
      .plain = [make = bench.plain, size = bench.size] { return make(size); },
  };
}

}  // namespace

const std::vector<Patch>& patches(int size) {
  static const std::vector<Patch> of_16 = patches_of(16), of_8 = patches_of(8);
  return size == 16 ? of_16 : of_8;
}

bool add_patches(const std::string& family, const std::vector<PatchBench>& table) {
  for (const PatchBench& bench : table) {
    const std::string size = std::to_string(bench.size);
    Line line{.name = std::string(bench.operation) + "/" + size + "x" + size,
              .unit = "block",
              .target = bench.target,
              .against_peers = false,
              .charted = true,
              .setting = setting(bench),
              .rivals = {}};
    for (const PatchPeer& peer : bench.peers)
      line.rivals.push_back({.library = peer.library,
                             .difference = peer.difference,
                             .tolerance = 0,
                             .setting = line.setting,
                             .make = [size = bench.size, make = peer.make] { return make(size); }});
    add(family, line);
  }
  return true;
}

}  // namespace bench
