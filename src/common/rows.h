/// What loops over rows have in common.
#pragma once

#include <stdint.h>

namespace pqx {

/// Whether n bytes at a and m bytes at b have none in common.
inline bool disjoint(const void* a, int64_t n, const void* b, int64_t m) {
  const auto x = intptr_t(a), y = intptr_t(b);
  return x + n <= y || y + m <= x;
}

}  // namespace pqx
