/// What rounding adds to the chroma samplers: how far their results lie from the real-valued filters. Prints sections
/// for pages.py.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "pqx_video.h"

namespace {

using Row = std::vector<uint8_t>;
/// A row of chroma between the ones above and below it.
using Rows = std::array<Row, 3>;

struct Sampler {
  const char* name;
  int outputs_before;  // an even and an odd output that lie far enough from the ends of six samples
  Row (*run)(const Rows& rows);
  double (*exact)(const Rows& rows, int x);
};

double at(const Row& row, int j) { return row[size_t(std::clamp(j, 0, int(row.size()) - 1))]; }

/// Between source samples: output x of an up-sampler lies at (2x - 1) / 4, a quarter beside its nearest sample.
double between(const Row& row, int x) {
  const int nearest = x / 2, other = x % 2 ? nearest + 1 : nearest - 1;
  return (3 * at(row, nearest) + at(row, other)) / 4;
}

const Sampler samplers[] = {
    {"DownSample422_BL", 0,
     [](const Rows& rows) {
       Row out(rows[1].size() / 2);
       pqx_Video_DownSample422_BL_8U(rows[1].data(), int(rows[1].size()), out.data());
       return out;
     },
     [](const Rows& rows, int x) { return (at(rows[1], 2 * x) + at(rows[1], 2 * x + 1)) / 2; }},
    {"DownSample420_BL", 0,
     [](const Rows& rows) {
       Row out(rows[1].size() / 2);
       pqx_Video_DownSample420_BL_8U(rows[0].data(), rows[1].data(), int(rows[1].size()), out.data());
       return out;
     },
     [](const Rows& rows, int x) {
       return (at(rows[0], 2 * x) + at(rows[0], 2 * x + 1) + at(rows[1], 2 * x) + at(rows[1], 2 * x + 1)) / 4;
     }},
    {"UpSample422_BL", 4,
     [](const Rows& rows) {
       Row out(rows[1].size() * 2);
       pqx_Video_UpSample422_BL_8U(rows[1].data(), int(rows[1].size()), out.data());
       return out;
     },
     [](const Rows& rows, int x) { return between(rows[1], x); }},
    {"UpSample420_BL", 4,
     [](const Rows& rows) {
       Row out(rows[1].size() * 2), lower = out;
       pqx_Video_UpSample420_BL_8U(rows[0].data(), rows[1].data(), rows[2].data(), int(rows[1].size()), out.data(),
                                   lower.data());
       return out;
     },
     [](const Rows& rows, int x) { return (3 * between(rows[1], x) + between(rows[0], x)) / 4; }},
};

Row repeat(const Rows& rows) {
  Row out(rows[1].size() * 2);
  pqx_Video_UpSample422_NN_8U(rows[1].data(), int(rows[1].size()), out.data());
  return out;
}

// Rounding depends on the last four bits of the samples alone, so samples 0..15 stand for all.
void print_errors() {
  std::puts("== sampler-error");
  std::puts("| sampler | outputs | largest | mean | mean size |");
  std::puts("|---|---|--:|--:|--:|");
  constexpr int cases = 1 << 16;
  for (const Sampler& sampler : samplers) {
    std::array<double, 2> largest = {}, sum = {}, sizes = {};
    for (int i = 0; i < cases; ++i) {
      const uint8_t a = i & 15, b = i >> 4 & 15, c = i >> 8 & 15, d = i >> 12 & 15;
      const Row other = {c, d, c, d, c, d};
      const Rows rows = {other, {a, b, a, b, a, b}, other};
      const Row out = sampler.run(rows);
      for (size_t odd : {0, 1}) {
        const int x = sampler.outputs_before + int(odd);
        const double error = out[size_t(x)] - sampler.exact(rows, x);
        largest[odd] = std::max(largest[odd], std::abs(error));
        sum[odd] += error;
        sizes[odd] += std::abs(error);
      }
    }
    for (size_t odd : {0, 1})
      std::printf("| %s | %s | %.4f | %+.5f | %.4f |\n", sampler.name, odd ? "odd" : "even", largest[odd],
                  sum[odd] / cases, sizes[odd] / cases);
  }
}

/// Source, results and exact values on a row, the rows above and below being alike.
void print_row(const char* picture, int length, int (*sample)(int x)) {
  Rows rows;
  for (Row& row : rows)
    for (int x = 0; x < length; ++x) row.push_back(uint8_t(sample(x)));
  std::printf("== sampler-%s\nsource", picture);
  for (int x = 0; x < length; ++x) std::printf("|%d", rows[1][size_t(x)]);
  const auto print = [](const char* name, const Row& out) {
    std::printf("\n%s", name);
    for (int value : out) std::printf("|%d", value);
  };
  print("UpSample_NN", repeat(rows));
  for (const Sampler& sampler : samplers) {
    const Row out = sampler.run(rows);
    print(sampler.name, out);
    std::printf("\n%s exact", sampler.name);
    for (int x = 0; x < int(out.size()); ++x) std::printf("|%.4f", sampler.exact(rows, x));
  }
  std::puts("");
}

}  // namespace

int main() {
  print_errors();
  print_row("ramp", 16, [](int x) { return 100 + x; });
  print_row("edge", 8, [](int x) { return x < 4 ? 60 : 200; });
}
