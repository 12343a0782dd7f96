/// Questions about memory that overlaps, by name. Distances are those of two pointers, in bytes.
#pragma once

#include <stdint.h>

namespace pqx {

inline int64_t distance(const void* from, const void* to) { return intptr_t(to) - intptr_t(from); }

/// Whether n bytes and m others, which begin at that distance from them, have none in common.
constexpr bool apart(int64_t distance, int64_t n, int64_t m) {
  return uint64_t(distance + m - 1) >= uint64_t(n + m - 1);
}
static_assert(apart(16, 16, 8) && !apart(15, 16, 8) && !apart(-7, 16, 8) && apart(-8, 16, 8));

/// Likewise n bytes at a and m at b; mostly the first comparison decides.
inline bool apart(const void* a, int64_t n, const void* b, int64_t m) {
  return intptr_t(a) + n <= intptr_t(b) || intptr_t(b) + m <= intptr_t(a);
}

/// Whether a loop that goes upward through n bytes at src, and writes no more than it has read, leaves all that is still
/// to be read: it writes from where it reads or below, or behind all of it.
inline bool never_overtakes(const void* src, int64_t n, const void* dst) {
  return dst <= src || apart(src, n, dst, n);
}

/// Where the bytes of a block lie, from the lowest to the highest.
struct Extent {
  int64_t low, bytes;

  bool apart_from(Extent other) const { return apart(other.low - low, bytes, other.bytes); }
};
constexpr Extent extent(intptr_t first, int64_t step, int64_t row_bytes, int64_t rows) {
  const int64_t last = (rows - 1) * step;
  return last < 0 ? Extent{first + last, row_bytes - last} : Extent{first, row_bytes + last};
}
static_assert(extent(1000, 64, 16, 3).low == 1000 && extent(1000, -64, 16, 3).low == 872);
static_assert(extent(1000, 64, 16, 3).bytes == 144 && extent(1000, -64, 16, 3).bytes == 144);

/// Whether a block of the same step, at that distance from another, writes nothing that a loop has read ahead: rows go
/// downward, and it begins nowhere in the four rows from the other's first on, with one byte behind them. Returns false
/// for negative steps: conservative and cheap.
constexpr bool clear_of_rows_ahead(int64_t distance, int64_t step) {
  return step >= 0 && uint64_t(distance - 1) >= uint64_t(4 * step);
}
static_assert(clear_of_rows_ahead(0, 64) && !clear_of_rows_ahead(1, 64) && !clear_of_rows_ahead(4 * 64, 64) &&
              clear_of_rows_ahead(4 * 64 + 1, 64) && clear_of_rows_ahead(-64, 64) && !clear_of_rows_ahead(-64, -64));

/// Whether one of 16 bytes, written in their order at that distance from where each is read, changes a later one of
/// them: a register that reads all of them first would not see it.
constexpr bool within_a_register(int64_t distance) { return uint64_t(distance - 1) < 16; }
static_assert(!within_a_register(0) && within_a_register(1) && within_a_register(16) && !within_a_register(17));

}  // namespace pqx
