#include "common/export.h"
#include "common/lanes.h"

namespace {

using pqx::f32x4, pqx::i16x8, pqx::i32x4, pqx::floats;

struct FourLines {
  f32x4 at[4];
};

/// x[0] + x[3], x[1] + x[2], x[0] - x[3], x[1] - x[2] of four rows or columns.
struct FourFolded {
  f32x4 s03, s12, d03, d12;
};

// Twice the orthonormal transform: K1 = sqrt(2) cos(pi/8), K2 = sqrt(2) sin(pi/8).
FourLines transform(const FourFolded& x) {
  const f32x4 K1 = {_mm_set1_ps(1.3065629f)}, K2 = {_mm_set1_ps(0.5411961f)};
  return {x.s12 + x.s03, x.d03 * K1 + x.d12 * K2, x.s03 - x.s12, x.d03 * K2 - x.d12 * K1};
}

// Sums and differences of neighbouring words are exact in 32 bits, and in single precision.
f32x4 sums(i16x8 pairs) { return floats(pair_products(pairs, pqx::all_i16(1))); }
f32x4 differences(i16x8 pairs) { return floats(pair_products(pairs, pqx::alternating<i16x8>(1, -1))); }

// Each of two rows as x[0], x[3], x[1], x[2].
__m128 mirrored_pairs(const int16_t* src) {
  constexpr int order = _MM_SHUFFLE(2, 1, 3, 0);
  return _mm_castsi128_ps(_mm_shufflehi_epi16(_mm_shufflelo_epi16(pqx::load<i16x8>(src).v, order), order));
}

FourFolded folded_rows(const int16_t* src) {
  const __m128 upper = mirrored_pairs(src), lower = mirrored_pairs(src + 8);
  const i16x8 outer = {_mm_castps_si128(_mm_shuffle_ps(upper, lower, _MM_SHUFFLE(2, 0, 2, 0)))};
  const i16x8 inner = {_mm_castps_si128(_mm_shuffle_ps(upper, lower, _MM_SHUFFLE(3, 1, 3, 1)))};
  return {sums(outer), sums(inner), differences(outer), differences(inner)};
}

FourFolded folded_columns(FourLines x) {
  _MM_TRANSPOSE4_PS(x.at[0].v, x.at[1].v, x.at[2].v, x.at[3].v);
  return {x.at[0] + x.at[3], x.at[1] + x.at[2], x.at[0] - x.at[3], x.at[1] - x.at[2]};
}

// The scale of four goes in two steps, toward zero and then downward. 16 samples make results below 2^21.
i32x4 result(f32x4 z) { return i32x4{_mm_cvttps_epi32(z.v)} << 14 >> 16; }

}  // namespace

pqx_Status pqx_Video_DCT4x4Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  const FourLines X = transform(folded_columns(transform(folded_rows(pSrc))));
  pqx::store(pDst, pack(result(X.at[0]), result(X.at[1])));
  pqx::store(pDst + 8, pack(result(X.at[2]), result(X.at[3])));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT4x4Fwd_16S);
