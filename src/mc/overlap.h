#pragma once

#include <stdint.h>

namespace pqx::mc {

/// Where the bytes of a block lie, from the lowest to the highest.
struct Extent {
  intptr_t low;
  uint64_t bytes;
};
inline Extent extent(const void* first, int64_t step, int64_t row_bytes, int64_t rows) {
  const int64_t last = (rows - 1) * step, upward = last >> 63 & last;
  return {intptr_t(first) + upward, uint64_t(row_bytes + last - 2 * upward)};
}
inline bool disjoint(Extent a, Extent b) { return uint64_t(b.low - a.low) + b.bytes - 1 >= a.bytes + b.bytes - 1; }

}  // namespace pqx::mc
