/// The loop filter of H.261 on an 8x8 block: weights 1, 2, 1 in both directions, which leave out the outer columns in
/// rows and the outer rows in columns.
#pragma once

#include "common/lanes.h"

namespace pqx {

/// A sixteenth of a row at four times its scale, the inner columns filtered. The bend of a row at a sample is what the
/// filter adds to four times the sample. The rounding term, the same in all columns, cancels out of it.
inline i16x8 row_filtered(i16x8 row_x4) {
  const i16x8 bend = i16x8{_mm_slli_si128(row_x4.v, 2)} + i16x8{_mm_srli_si128(row_x4.v, 2)} - row_x4 - row_x4;
  return ((row_x4 << 2) + (bend & i16x8{_mm_set_epi16(0, -1, -1, -1, -1, -1, -1, 0)})) >> 4;
}

struct FilteredBlock {
  i16x8 row[8];
};

[[gnu::always_inline]] inline FilteredBlock loop_filtered(const uint8_t* src, int64_t step) {
  i16x8 s[8], pair[7];
#pragma GCC unroll 8
  for (int r = 0; r < 8; ++r) s[r] = as_signed(low_bytes(load_half<u8x16>(src + r * step)));
  // Exact halves go up: a quarter of the final 8 comes with one of the two pairs that make up an inner row.
  const i16x8 rounding_x4 = all_i16(2);
#pragma GCC unroll 8
  for (int r = 0; r < 7; ++r) pair[r] = r % 2 ? s[r] + s[r + 1] : s[r] + s[r + 1] + rounding_x4;
  FilteredBlock out;
  out.row[0] = row_filtered((s[0] << 2) + rounding_x4);
#pragma GCC unroll 8
  for (int r = 1; r < 7; ++r) out.row[r] = row_filtered(pair[r - 1] + pair[r]);
  out.row[7] = row_filtered((s[7] << 2) + rounding_x4);
  return out;
}

}  // namespace pqx
