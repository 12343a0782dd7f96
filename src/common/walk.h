/// Walks along rows in runs of one width. The last run ends where the row ends and may overlap the one before, so no
/// tail is left and no byte outside of the row is touched.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

namespace pqx {

/// Prefetches the bytes that a loop at these places of its rows will reach in a kilobyte. Prefetching past the end of a
/// row does no harm.
///
/// Kernels that compute prefetch in every run of 16 bytes or pixels: in cache that costs them nothing, as the units for
/// arithmetic are the bottleneck, and up to a fifth where they halve rows, which gain a quarter to a third by it on rows
/// beyond the cache. Kernels that only move bytes would lose up to 70 %: they use cover_moving(), which prefetches in
/// long rows alone.
template <class... T>
[[gnu::always_inline]] inline void prefetch_ahead(const T*... rows) {
  (_mm_prefetch(reinterpret_cast<const char*>(intptr_t(rows) + 1024), _MM_HINT_T0), ...);
}

/// The shortest row of T that pieces of a register cover.
template <class T>
constexpr int64_t shortest_covered = 4 / sizeof(T);

/// Calls walk<bytes>() with the size of pieces for a row of n elements of T, 4 bytes or more: 16 bytes, or 8 or 4 where
/// the row is shorter.
template <class T, int bytes = 16, class Walk>
[[gnu::always_inline]] inline void in_pieces(int64_t n, Walk walk) {
  if constexpr (bytes > 4)
    if (n < bytes / int(sizeof(T))) return in_pieces<T, bytes / 2>(n, walk);
  walk.template operator()<bytes>();
}

/// Calls run(i) for runs of so many elements from i on, n >= width. Short kernels are unrolled.
template <int width, bool unrolled = false, class Run>
[[gnu::always_inline]] inline void cover(int64_t n, Run run, int64_t first = 0) {
  int64_t i = first;
  if constexpr (unrolled)
#pragma GCC unroll 2
    for (; i < n - width; i += width) run(i);
  else
    for (; i < n - width; i += width) run(i);
  run(n - width);
}

/// For short kernels on rows of T: piece<bytes>(i) for the elements from i on, in pieces as above.
template <class T, class Piece>
[[gnu::always_inline]] inline void cover_row(int64_t n, Piece piece) {
  in_pieces<T>(
      n, [=]<int bytes>() __attribute__((always_inline)) {
        cover<bytes / int(sizeof(T)), true>(n, [=](int64_t i) { piece.template operator()<bytes>(i); });
      });
}

/// For kernels that only move bytes: run(i) as above, with prefetch(i) in rows too long for the nearest cache. That call
/// must be inlined from the start: gcc drops a call of a function that only prefetches as one without effect.
template <int width>
[[gnu::always_inline]] inline void cover_moving(int64_t n, auto run, auto prefetch) {
  constexpr int64_t long_row = 4096;
  int64_t i = 0;
  if (n >= long_row) [[unlikely]]
    for (; i < n - width; i += width) {
      prefetch(i);
      run(i);
    }
  cover<width, true>(n, run, i);
}

/// Likewise run(i, last), with a single copy of a long kernel.
template <int width, class Run>
[[gnu::always_inline]] inline void cover_in_one_loop(int64_t n, Run run) {
  for (int64_t i = 0;; i = i + width < n - width ? i + width : n - width) {
    const bool last = i + width == n;
    run(i, last);
    if (last) return;
  }
}

}  // namespace pqx
