/// Predictions from a picture into packed blocks of 16-bit samples.
#pragma once

#include "mc/blocks.h"

namespace pqx::mc {

/// Whether packed rows lie clear of the source's, with the row below and right neighbours. Of rows that go upward it
/// returns false: conservative and cheap.
template <int columns>
bool clear_of(const uint8_t* src, int64_t step, const int16_t* packed, int64_t rows) {
  return step >= 0 && apart(distance(src, packed), rows * step + columns + 1, 2 * columns * rows);
}

template <int n, template <int, class> class Source, class From>
[[gnu::always_inline]] inline pqx_Status widen(const uint8_t* src, int16_t* dst, int64_t other, int64_t step,
                                               int rows) {
  return each_row<n>(Source<n, From>{{src, step}, other}, Put<n, PackedRows<n>>{{dst}}, unsigned(rows));
}

/// 8 columns if the width is 8, else 16.
template <template <int, class> class Source, class From>
[[gnu::always_inline]] inline pqx_Status interpolate(const uint8_t* src, int16_t* dst, int other, int step, int width,
                                                     int rows) {
  if (rows < 1) return PQX_OK;
  if (Source<16, From>::suits(other, step)) {
    if (width != 8 && clear_of<16>(src, step, dst, rows)) return widen<16, Source, From>(src, dst, other, step, rows);
    if (width == 8 && clear_of<8>(src, step, dst, rows)) return widen<8, Source, From>(src, dst, other, step, rows);
  }
  return predict_any<1, From, Put>(src, dst, other, step, width == 8 ? 8 : 16, rows);
}

}  // namespace pqx::mc
