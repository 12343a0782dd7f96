/// Values moved so that one result of the 8x8 transform comes close to n + 1/2.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace test {

using Values = std::array<int16_t, 64>;

/// basis[8 * u + v][i]: what sample i adds to coefficient u, v, and that coefficient to the sample.
inline const auto basis = [] {
  std::array<std::array<double, 64>, 64> table;
  const auto c = [](int w, int x) { return std::cos((2 * x + 1) * w * M_PI / 16) / (w ? 2 : std::sqrt(8)); };
  for (int i = 0; i < 4096; ++i)
    table[size_t(i / 64)][size_t(i % 64)] = c(i / 512, i % 64 / 8) * c(i / 64 % 8, i % 8);
  return table;
}();

/// Moves two values by one or two, none of them out of low..high, so that the sum of their products with the weights
/// comes as close to n + 1/2 as they can bring it.
inline void bring_close(Values& values, const std::array<double, 64>& weights, int low, int high) {
  double z = 0;
  for (size_t i = 0; i < 64; ++i) z += values[i] * weights[i];
  struct Move {
    double change;
    size_t index;
    int by;
  };
  std::vector<Move> moves;
  for (size_t i = 0; i < 64; ++i)
    for (int by : {-2, -1, 1, 2})
      if (values[i] + by >= low && values[i] + by <= high) moves.push_back({by * weights[i], i, by});
  Move best[2] = {};
  double closest = 1;
  for (const Move& a : moves)
    for (const Move& b : moves) {
      const double moved = z + a.change + b.change, distance = std::abs(moved - std::floor(moved) - 0.5);
      if (a.index != b.index && distance < closest) closest = distance, best[0] = a, best[1] = b;
    }
  for (const Move& move : best) values[move.index] = int16_t(values[move.index] + move.by);
}

}  // namespace test
