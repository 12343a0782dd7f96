#include "common/export.h"
#include "common/lanes.h"
#include "pqx_video.h"

namespace {

using namespace pqx;

constexpr int coefficients = 64;

}  // namespace

pqx_Status pqx_Video_QuantizeInit_16S(const int16_t* pQMatrix, float* pState) {
  for (int i = 0; i < coefficients; ++i) store_one(pState + i, 1.0f / float(load_one<int16_t>(pQMatrix + i)));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_QuantizeInit_16S);

pqx_Status pqx_Video_Quantize_16S_I(const float* pState, int16_t* pSrcDst) {
  for (int i = 0; i < coefficients; i += 4) {
    const __m128i c = load_half<i16x8>(pSrcDst + i).v;
    const f32x4 level = {_mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(c, c), 16))};
    const f32x4 sum = level * load<f32x4>(pState + i) + f32x4{_mm_set1_ps(32768.5f)};
    const __m128i t = _mm_cvttps_epi32(sum.v);
    const __m128i low = _mm_srai_epi32(_mm_slli_epi32(t, 16), 16);
    store_half(pSrcDst + i, i16x8{_mm_xor_si128(_mm_packs_epi32(low, low), _mm_set1_epi16(-0x8000))});
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_Quantize_16S_I);

pqx_Status pqx_Video_DeQuantizeInit_16S(const int16_t* pQMatrix, double* pState) {
  for (int i = 0; i < coefficients; ++i) store_one(pState + i, double(load_one<int16_t>(pQMatrix + i)));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DeQuantizeInit_16S);

pqx_Status pqx_Video_DeQuantize_16S_I(const double* pState, int16_t* pSrcDst) {
  for (int i = 0; i < coefficients; i += 2) {
    const __m128d level = _mm_set_pd(load_one<int16_t>(pSrcDst + i + 1), load_one<int16_t>(pSrcDst + i));
    const __m128i t = _mm_cvttpd_epi32(_mm_mul_pd(level, load<f64x2>(pState + i).v));
    store_one(pSrcDst + i, int16_t(_mm_cvtsi128_si32(t)));
    store_one(pSrcDst + i + 1, int16_t(_mm_cvtsi128_si32(_mm_srli_si128(t, 4))));
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DeQuantize_16S_I);
