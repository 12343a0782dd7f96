/// Overlapped motion compensation of H.263 Annex F.
#pragma once

#include "mc/samples.h"
#include "pqx_video.h"

namespace pqx::mc {

/// Weights of a block's own prediction, of that above or below, of that to the left or right; their sum is 8.
struct Weights {
  alignas(16) int16_t own[8], vertical[8], horizontal[8];
};
// The lower half mirrors the upper.
inline constexpr Weights corner_row = {{4, 5, 5, 5, 5, 5, 5, 4}, {2, 2, 2, 2, 2, 2, 2, 2}, {2, 1, 1, 1, 1, 1, 1, 2}},
                         second_row = {{5, 5, 5, 5, 5, 5, 5, 5}, {1, 1, 2, 2, 2, 2, 1, 1}, {2, 2, 1, 1, 1, 1, 2, 2}},
                         inner_row = {{5, 5, 6, 6, 6, 6, 5, 5}, {1, 1, 1, 1, 1, 1, 1, 1}, {2, 2, 1, 1, 1, 1, 2, 2}};

/// Every second sample of 15: the left and the right four.
inline i16x8 left_samples(const uint8_t* p) { return as_signed(even_bytes(load_samples<8>(p))); }
inline i16x8 right_samples(const uint8_t* p) { return as_signed(odd_bytes(load_samples<8>(p + 7))); }
inline i16x8 joined(i16x8 left, i16x8 right) { return {_mm_unpacklo_epi64(left.v, right.v)}; }

inline i16x8 operator*(i16x8 a, const int16_t (&weights)[8]) {
  return {_mm_mullo_epi16(a.v, load<i16x8>(weights).v)};
}

/// Positions of the predictions in a reference of twice the resolution.
struct Predictions {
  const uint8_t *own, *above, *below, *left, *right;

  i16x8 row(int64_t offset, const uint8_t* vertical, const Weights& weights) const {
    const i16x8 q0 = joined(left_samples(own + offset), right_samples(own + offset));
    const i16x8 q1 = joined(left_samples(vertical + offset), right_samples(vertical + offset));
    const i16x8 q2 = joined(left_samples(left + offset), right_samples(right + offset));
    return (q0 * weights.own + q1 * weights.vertical + q2 * weights.horizontal + all_i16(4)) >> 3;
  }
};

/// The grid row is found in 32 bits that wrap.
inline const uint8_t* grid_position(const uint8_t* ref, int step, int x, int y) {
  return ref + int32_t(uint32_t(y) * uint32_t(step)) + x;
}

/// put(row, samples) takes the samples of each row as words.
template <class PutRow>
pqx_Status overlapped(const Predictions& from, int64_t ref_step, PutRow put) {
  constexpr const Weights* rows[8] = {&corner_row, &second_row, &inner_row,  &inner_row,
                                      &inner_row,  &inner_row,  &second_row, &corner_row};
#pragma GCC unroll 8
  for (int r = 0; r < 8; ++r) put(r, from.row(2 * r * ref_step, r < 4 ? from.above : from.below, *rows[r]));
  return PQX_OK;
}

}  // namespace pqx::mc
