#pragma once

#include "common/lanes.h"

namespace pqx::dct {

/// A constant for every kind of lanes. Its values are hidden from the compiler, so that products take them straight
/// from memory; otherwise it would broadcast one lane at every use.
struct Factor {
  alignas(16) double twice[2];
  alignas(16) float four_times[4];

  constexpr Factor(double c) : twice{c, c}, four_times{float(c), float(c), float(c), float(c)} {}
};
inline f64x2 operator*(f64x2 a, const Factor& c) { return {_mm_mul_pd(a.v, _mm_load_pd(c.twice))}; }
inline f32x4 operator*(f32x4 a, const Factor& c) { return {_mm_mul_ps(a.v, _mm_load_ps(c.four_times))}; }

/// cos(k pi / 16) / 2 times a scale. The inverse has a c4 of fewer digits: its DC gain is 0.99999999664, which decides
/// exact halves. Pixels are scaled by 2^24.
struct Cosines {
  Factor c1, c2, c3, c4, c5, c6, c7;
};
extern const Cosines forward_cosines, inverse_cosines, pixel_cosines;

extern const Factor half_root;  // 1 / sqrt(2), never scaled

/// How the forward pass makes one result from two sums: s07 + sign * s34 and s16 + sign * s25 for an even one,
/// d07 + sign * p and d34 + sign * q for an odd one.
struct Result {
  Factor first, second, sign;
};
extern const Result forward_results[8];

/// Constants in single precision, one for each lane.
struct FourFactors {
  alignas(16) float lane[4];
};
inline f32x4 operator*(f32x4 a, const FourFactors& c) { return {_mm_mul_ps(a.v, _mm_load_ps(c.lane))}; }

/// For four columns of the fast transform, divided by the factors that its row pass leaves on them. Columns 0 and 4
/// have no c4: it would make the coefficients of rows 0 and 4, which are computed elsewhere.
struct ColumnCosines {
  FourFactors c1, c2, c3, c4, c5, c6, c7;
};
extern const ColumnCosines left_cosines, right_cosines;

extern const Factor c4_high, c4_low;  // parts of c4 / 2^16
extern const Factor c7_over_c1, c5_over_c3;

}  // namespace pqx::dct
