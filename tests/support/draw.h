/// Calls of an operation drawn by chance: sizes, steps, what overlaps and where the buffers lie.
#pragma once

#include "operation.h"

namespace test {

/// A number below the given one, from a random generator or from a fuzzer's bytes.
using Choose = std::function<uint32_t(uint32_t below)>;

/// Where buffers lie between their unreadable pages.
enum class Place { ends_at_guard, begins_at_guard, aligned, anywhere };

struct Drawn {
  std::vector<int> ints = {};
  std::vector<std::vector<Span>> spans = {};  // by argument: what may be touched, joined
  const Overlap* overlap = nullptr;
  int64_t distance = 0;  // of the destination from the source that it overlaps
  Data data = Data::random;
  Place place = Place::anywhere;
};

/// far: rows may lie gigabytes apart.
Drawn draw(const Operation& operation, const Choose& choose, bool far);

/// Draws the steps anew: tight, padded, odd, multiples of 16; equal, some of them equal, nearly equal; up- or downward.
void draw_steps(const Operation& operation, const Choose& choose, bool far, std::vector<int>& ints);

}  // namespace test
