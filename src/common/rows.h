/// What loops over rows have in common.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

namespace pqx {

/// Whether n bytes at a and m bytes at b have none in common.
inline bool disjoint(const void* a, int64_t n, const void* b, int64_t m) {
  const auto x = intptr_t(a), y = intptr_t(b);
  return x + n <= y || y + m <= x;
}

/// The shortest row of T that pieces of a register cover.
template <class T>
constexpr int64_t shortest_covered = 4 / sizeof(T);

/// Covers a row of n elements of T, 4 bytes or more, by calls of piece<bytes>(i) for the elements from i on: pieces of 16
/// bytes, or of 8 or 4 where the row is shorter; the last one may overlap the one before.
template <class T, int bytes = 16, class Piece>
void cover_row(int64_t n, Piece piece) {
  constexpr int width = bytes / int(sizeof(T));
  if constexpr (bytes > 4)
    if (n < width) return cover_row<T, bytes / 2>(n, piece);
#pragma GCC unroll 2
  for (int64_t i = 0; i < n - width; i += width) piece.template operator()<bytes>(i);
  piece.template operator()<bytes>(n - width);
}

/// Asks for the bytes that a loop at these places of its rows will reach a kilobyte on: rows beyond the cache arrive in
/// time, those within it lose nothing. Behind the end of a row this does no harm.
template <class... T>
[[gnu::always_inline]] inline void prefetch_ahead(const T*... rows) {
  (_mm_prefetch(reinterpret_cast<const char*>(intptr_t(rows) + 1024), _MM_HINT_T0), ...);
}

}  // namespace pqx
