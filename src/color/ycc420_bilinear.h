/// Pairs of rows of YCC 4:2:0 through bilinear up-sampling and the 4:4:4 conversion.
#pragma once

#include "common/calls.h"

namespace pqx::ycc {

/// The chroma row above, that of the two luma rows, and the one below.
struct ChromaRows {
  const uint8_t *previous, *current, *next;
};

[[gnu::always_inline]] inline void up_sample(ChromaRows rows, int len, uint8_t* upper, uint8_t* lower) {
  __pqx_Video_UpSample420_BL_8U(rows.previous, rows.current, rows.next, len >> 1, upper, lower);
  // The up-sampler writes pairs, at least two: the chroma of an odd last column is then its left neighbour's.
  if (len > 4 && len % 2 != 0) {
    upper[len - 1] = upper[len - 2];
    lower[len - 1] = lower[len - 2];
  }
}

[[gnu::always_inline]] inline pqx_Status convert_420_linear(decltype(pqx_Video_ColorYCC2RGB444_8U)& convert,
                                                            const uint8_t* y0, const uint8_t* y1, ChromaRows cb,
                                                            ChromaRows cr, uint8_t* dst0, uint8_t* dst1, int len) {
  constexpr int64_t local_bytes = 16384;
  if (len < 1) return PQX_OK;
  const int64_t row = (int64_t(len) + 7) & ~int64_t(7);
  const int64_t bytes = 4 * row;
  if (bytes > INT32_MAX) return PQX_ERR_MEMORY;
  uint8_t local[local_bytes];
  uint8_t* scratch = local;
  if (bytes > local_bytes) {
    scratch = static_cast<uint8_t*>(__pqx_Malloc(int32_t(bytes)));
    if (scratch == nullptr) return PQX_ERR_MEMORY;
  }
  uint8_t *const cb0 = scratch, *const cb1 = cb0 + row, *const cr0 = cb1 + row, *const cr1 = cr0 + row;
  up_sample(cb, len, cb0, cb1);
  up_sample(cr, len, cr0, cr1);
  convert(y0, cb0, cr0, dst0, len);
  convert(y1, cb1, cr1, dst1, len);
  if (scratch != local) __pqx_Free(scratch);
  return PQX_OK;
}

}  // namespace pqx::ycc
