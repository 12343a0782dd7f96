/// The loop filter of H.261 on an 8x8 block.
#pragma once

#include "common/lanes.h"

namespace pqx {

/// Four times the row-filtered samples, plus 2. Each sample of the result takes four of these, or one where only
/// rows are filtered, and its rounding term is then the sum of what they bring.
inline i16x8 row_filtered_x4(const uint8_t* row) {
  const __m128i raised = _mm_unpacklo_epi8(_mm_set1_epi8(char(0x80)), load_half<u8x16>(row).v);  // 256 s + 128
  const i16x8 s = {_mm_srli_epi16(raised, 8)}, s_x4 = {_mm_srli_epi16(raised, 6)};
  const i16x8 bend = i16x8{_mm_slli_si128(s.v, 2)} - s + i16x8{_mm_srli_si128(s.v, 2)} - s;
  return s_x4 + (bend & i16x8{_mm_set_epi16(0, -1, -1, -1, -1, -1, -1, 0)});
}

/// put(row, samples) takes the samples of each row as words when the whole block has been read.
template <class PutRow>
void loop_filter(const uint8_t* src, int64_t step, PutRow put) {
  i16x8 h[8];
#pragma GCC unroll 8
  for (int r = 0; r < 8; ++r) h[r] = row_filtered_x4(src + r * step);
  put(0, h[0] >> 2);
#pragma GCC unroll 8
  for (int r = 1; r < 7; ++r) put(r, (h[r - 1] + h[r] + (h[r] + h[r + 1])) >> 4);
  put(7, h[7] >> 2);
}

}  // namespace pqx
