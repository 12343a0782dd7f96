/// Predictions of any size at any distance from their source.
#pragma once

#include "common/overlap.h"
#include "common/walk.h"
#include "mc/row_loop.h"

namespace pqx::mc {

/// A positive number of rows, of columns in whole multiples of 8 or 4. Packed rows have as many elements as the width
/// says and columns in multiples of 2 or 1, which are taken together where the destination overlaps the source.
template <int multiple, class From, template <int, class> class Sink, class T>
[[gnu::noinline]] pqx_Status predict_any(const uint8_t* src, T* dst, int64_t other, int64_t step, int width,
                                         int rows) {
  const int64_t columns = width & -multiple, dst_step = sizeof(T) == 1 ? step : width;
  if (columns < 1) return PQX_OK;
  constexpr int bytes = sizeof(T), together = bytes == 1 ? 1 : multiple, widest_block = 64;  // beyond are pictures
  const auto piece = [&](auto n, int64_t x, int rows) __attribute__((always_inline)) {
    each_row(Beside<n, From>{{src + x, step}, other}, Sink<n, Rows<T>>{{dst + x, dst_step}}, unsigned(rows));
  };
  const Extent to = extent(intptr_t(dst), bytes * dst_step, bytes * columns, rows);
  const bool far = to.apart_from(extent(intptr_t(src), step, columns + 1, rows)) &&
                   to.apart_from(extent(intptr_t(src + other), step, columns + 1, rows));
  if (far && columns <= widest_block) {
    in_pieces<4 / bytes>(
        columns, [&](auto n, int64_t x) __attribute__((always_inline)) { piece(n, x, rows); });
    return PQX_OK;
  }
  // Of equal steps, all rows lie at the same distance.
  const int64_t ahead = distance(src, dst);
  const bool in_order = bytes > 1 ? !far : within_a_register(ahead) || within_a_register(ahead - other);
  for (; rows > 0; --rows, src += step, dst += dst_step) {
    if (in_order) {
      for (int64_t x = 0; x < columns; x += together) piece(std::integral_constant<int, together>(), x, 1);
      continue;
    }
    in_pieces<4 / bytes>(
        columns, [&](auto n, int64_t x) __attribute__((always_inline)) {
          if (n == 16 && x % 64 == 0) prefetch_ahead(src + other + x, dst + x);
          piece(n, x, 1);
        });
  }
  return PQX_OK;
}

}  // namespace pqx::mc
