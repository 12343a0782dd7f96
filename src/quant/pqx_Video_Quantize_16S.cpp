#include "common/export.h"
#include "common/lanes.h"
#include "pqx_video.h"

namespace {

using namespace pqx;

constexpr int columns = 8, block = 8 * columns;

// What is not a number or does not fit becomes INT32_MIN.
i32x4 truncated(f32x4 x) { return {_mm_cvttps_epi32(x.v)}; }
i32x4 truncated(f64x2 x) { return {_mm_cvttpd_epi32(x.v)}; }

/// The two numbers at p. Reading memory, the conversion needs no shuffle; gcc knows it only between registers.
f64x2 doubles(const int32_t* p) {
  struct Two {
    int32_t a, b;
  };
  __m128d r;
  asm("cvtdq2pd %1, %0" : "=x"(r) : "m"(*reinterpret_cast<const Two*>(p)));
  return {r};
}

i32x4 low_words(i16x8 x) { return {_mm_unpacklo_epi16(x.v, (x >> 15).v)}; }
i32x4 high_words(i16x8 x) { return {_mm_unpackhi_epi16(x.v, (x >> 15).v)}; }

void store_doubles(double* p, i32x4 x) {
  store(p, f64x2{_mm_cvtepi32_pd(x.v)});
  store(p + 2, f64x2{_mm_cvtepi32_pd(_mm_unpackhi_epi64(x.v, x.v))});
}

// With an ordinary state the bias makes every sum positive and so truncation a floor. What it adds to the integer is
// taken away by flipping the highest bit of the low word.
i32x4 biased_levels(i32x4 coefficients, f32x4 reciprocals) {
  return truncated(floats(coefficients) * reciprocals + f32x4{_mm_set1_ps(32768.5f)});
}

/// Even and odd elements apart: their low words join by a shift, those of the halves of a row by a pack that saturates.
void quantize_row(const float* state, int16_t* row) {
  const auto c = load<i16x8>(row);
  const auto low = load<f32x4>(state), high = load<f32x4>(state + 4);
  const i32x4 even_c = pair_products(c, alternating<i16x8>(1, 0)), odd_c = as<i32x4>(c) >> 16;
  const i32x4 even = biased_levels(even_c, {_mm_shuffle_ps(low.v, high.v, _MM_SHUFFLE(2, 0, 2, 0))}),
              odd = biased_levels(odd_c, {_mm_shuffle_ps(low.v, high.v, _MM_SHUFFLE(3, 1, 3, 1))});
  store(row, as<u16x8>((even & all_i32(0xffff)) | odd << 16) ^ all_u16(0x8000));
}

/// The low words of the 32-bit pairs a, b, c and d.
u16x8 low_words_of_pairs(u16x8 a, u16x8 b, u16x8 c, u16x8 d) {
  const auto ab = as<i32x4>(interleave_low(a, b)), cd = as<i32x4>(interleave_low(c, d));
  return interleave_low(as<u16x8>(interleave_low(ab, cd)), as<u16x8>(interleave_high(ab, cd)));
}

/// Rows down to the last one that is not zero throughout.
int rows_in_use(const int16_t* c) {
  // A pack never makes zero of what is not: three of them leave one word of each row.
  const auto row = [c](int y) { return load<i32x4>(c + columns * y); };
  const auto two = [=](int y) { return as<i32x4>(pack(row(y), row(y + 1))); };
  const auto four = [=](int y) { return as<i32x4>(pack(two(y), two(y + 2))); };
  const __m128i words = pack(four(0), four(4)).v;
  const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi16(words, _mm_setzero_si128()));
  return zeros == 0xffff ? 0 : (33 - __builtin_clz(unsigned(0xffff ^ zeros))) / 2;
}

}  // namespace

pqx_Status pqx_Video_QuantizeInit_16S(const int16_t* pQMatrix, float* pState) {
  const f32x4 one = {_mm_set1_ps(1)};
  for (int i = 0; i < block; i += columns) {
    const auto q = load<i16x8>(pQMatrix + i);
    store(pState + i, f32x4{_mm_div_ps(one.v, floats(low_words(q)).v)});
    store(pState + i + 4, f32x4{_mm_div_ps(one.v, floats(high_words(q)).v)});
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_QuantizeInit_16S);

pqx_Status pqx_Video_Quantize_16S_I(const float* pState, int16_t* pSrcDst) {
#pragma GCC unroll 8
  for (int i = 0; i < block; i += columns) quantize_row(pState + i, pSrcDst + i);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_Quantize_16S_I);

pqx_Status pqx_Video_DeQuantizeInit_16S(const int16_t* pQMatrix, double* pState) {
  for (int i = 0; i < block; i += columns) {
    const auto q = load<i16x8>(pQMatrix + i);
    store_doubles(pState + i, low_words(q));
    store_doubles(pState + i + 4, high_words(q));
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DeQuantizeInit_16S);

pqx_Status pqx_Video_DeQuantize_16S_I(const double* pState, int16_t* pSrcDst) {
  // Products of words would do for a state of whole numbers, in a fifth of the time. But it is the caller's and may be
  // anything: to look at its 64 doubles takes longer than to multiply by them.
  // A zero stays zero by any state: what is not a number truncates to INT32_MIN. Most blocks end in zeros.
  const int n = columns * rows_in_use(pSrcDst);
  alignas(16) int32_t levels[block];
  for (int i = 0; i < n; i += columns) {
    const auto c = load<i16x8>(pSrcDst + i);
    store(levels + i, low_words(c));
    store(levels + i + 4, high_words(c));
  }
  for (int i = 0; i < n; i += columns) {
    const auto pair = [=, &levels](int k) {
      return as<u16x8>(truncated(doubles(levels + i + k) * load<f64x2>(pState + i + k)));
    };
    store(pSrcDst + i, low_words_of_pairs(pair(0), pair(2), pair(4), pair(6)));
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DeQuantize_16S_I);
