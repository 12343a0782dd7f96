/// Predictions from a picture into one of the same step.
#pragma once

#include "mc/blocks.h"

namespace pqx::mc {

/// n columns, without regard to overlap.
template <int n, template <int, class> class Source, class From, template <int, class> class Sink>
[[gnu::always_inline]] inline pqx_Status predict(const uint8_t* src, uint8_t* dst, int64_t other, int64_t step,
                                                 int rows) {
  return each_row<n>(Source<n, From>{{src, step}, other}, Sink<n, Rows<uint8_t>>{{dst, step}}, unsigned(rows));
}

/// Columns in multiples of 8 or 4.
template <int multiple, template <int, class> class Source, class From, template <int, class> class Sink>
[[gnu::always_inline]] inline pqx_Status interpolate(const uint8_t* src, uint8_t* dst, int other, int step, int width,
                                                     int rows) {
  if (rows < 1) return PQX_OK;
  if (Source<16, From>::suits(other, step) && clear_of_rows_ahead(distance(src, dst), step)) {
    if (width == 16) return predict<16, Source, From, Sink>(src, dst, other, step, rows);
    if (width == 8) return predict<8, Source, From, Sink>(src, dst, other, step, rows);
    if (width == 4 && multiple == 4) return predict<4, Source, From, Sink>(src, dst, other, step, rows);
  }
  return predict_any<multiple, From, Sink>(src, dst, other, step, width, rows);
}

}  // namespace pqx::mc
