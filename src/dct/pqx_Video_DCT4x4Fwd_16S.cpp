#include "common/export.h"
#include "common/lanes.h"

namespace {

using pqx::f32x4, pqx::i16x8, pqx::i32x4;

struct FourLines {
  f32x4 at[4];
};

// Twice the orthonormal transform: K1 = sqrt(2) cos(pi/8), K2 = sqrt(2) sin(pi/8).
FourLines transform(const FourLines& x) {
  const f32x4 K1 = {_mm_set1_ps(1.3065629f)}, K2 = {_mm_set1_ps(0.5411961f)};
  const f32x4 s03 = x.at[0] + x.at[3], s12 = x.at[1] + x.at[2], d03 = x.at[0] - x.at[3], d12 = x.at[1] - x.at[2];
  return {s12 + s03, d03 * K1 + d12 * K2, s03 - s12, d03 * K2 - d12 * K1};
}

FourLines transposed(FourLines x) {
  _MM_TRANSPOSE4_PS(x.at[0].v, x.at[1].v, x.at[2].v, x.at[3].v);
  return x;
}

f32x4 to_float(__m128i words_twice) { return {_mm_cvtepi32_ps(_mm_srai_epi32(words_twice, 16))}; }

// The scale of four goes in two steps, toward zero and then downward. 16 samples make results below 2^21.
i32x4 result(f32x4 z) { return i32x4{_mm_cvttps_epi32(z.v)} << 14 >> 16; }

}  // namespace

pqx_Status pqx_Video_DCT4x4Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  const __m128i upper = pqx::load<i16x8>(pSrc).v, lower = pqx::load<i16x8>(pSrc + 8).v;
  const FourLines samples = {to_float(_mm_unpacklo_epi16(upper, upper)), to_float(_mm_unpackhi_epi16(upper, upper)),
                             to_float(_mm_unpacklo_epi16(lower, lower)), to_float(_mm_unpackhi_epi16(lower, lower))};
  const FourLines X = transform(transposed(transform(transposed(samples))));
  pqx::store(pDst, pack(result(X.at[0]), result(X.at[1])));
  pqx::store(pDst + 8, pack(result(X.at[2]), result(X.at[3])));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT4x4Fwd_16S);
