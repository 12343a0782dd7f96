#pragma once

#include <stdint.h>

namespace pqx::mc {

/// The addresses from the lowest byte of a block to behind its highest.
struct Extent {
  intptr_t low, high;
};
inline Extent extent(const void* first, int64_t step, int64_t row_bytes, int64_t rows) {
  const int64_t last = (rows - 1) * step;
  return {intptr_t(first) + (last < 0 ? last : 0), intptr_t(first) + (last < 0 ? 0 : last) + row_bytes};
}
inline bool disjoint(Extent a, Extent b) { return a.high <= b.low || b.high <= a.low; }

}  // namespace pqx::mc
