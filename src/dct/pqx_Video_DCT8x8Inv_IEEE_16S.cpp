#include "common/export.h"
#include "dct/block_8x8.h"

namespace pqx::dct {
namespace {

// 2048 sqrt(2) cos(k pi / 16), and 128 sqrt(2).
constexpr int W1 = 2841, W2 = 2676, W3 = 2408, W5 = 1609, W6 = 1108, W7 = 565, root = 181;

/// Rows leave the first pass at eight times their scale, after a shift by 8.
struct RowPass {
  static constexpr int unit = 2048, rounding = 128;
  static i32x4 reduced(i32x4 product) { return product; }
};
/// Products of the second pass give up three bits. Results are shifted by 14, which leaves less than 16 bits of any.
struct ColumnPass {
  static constexpr int unit = 256, rounding = 8192;
  static i32x4 reduced(i32x4 product) { return (product + all_i32(4)) >> 3; }
};

// a * wa + b * wb for words a and b in turn.
i32x4 weighted(i16x8 a_and_b, int wa, int wb) { return pair_products(a_and_b, alternating<i16x8>(wa, wb)); }

// x * 181 modulo 2^32, from products of its halves, then by 2^-8.
i32x4 times_half_root(i32x4 x) {
  const __m128i w = _mm_set1_epi16(root);
  const i32x4 low = {_mm_mullo_epi16(x.v, w)}, carry = i32x4{_mm_mulhi_epu16(x.v, w)} << 16;
  return (low + carry + all_i32(128)) >> 8;
}

/// What four lanes of inputs contribute: the even ones to the results from both ends inward, the odd ones to the outer
/// and inner results, and as sums and differences still to be rotated to those between.
struct Parts {
  i32x4 even0, even1, even2, even3, odd0, odd3, rotated_by_sum, rotated_by_difference;
};

template <class Pass>
[[gnu::always_inline]] inline Parts parts(i16x8 b04, i16x8 b17, i16x8 b26, i16x8 b35) {
  const i32x4 rounding = all_i32(Pass::rounding);
  const i32x4 sum = weighted(b04, Pass::unit, Pass::unit) + rounding;
  const i32x4 difference = weighted(b04, Pass::unit, -Pass::unit) + rounding;
  const i32x4 x2 = Pass::reduced(weighted(b26, W6, -W2)), x3 = Pass::reduced(weighted(b26, W2, W6));
  const i32x4 x4 = Pass::reduced(weighted(b17, W1, W7)), x5 = Pass::reduced(weighted(b17, W7, -W1));
  const i32x4 x6 = Pass::reduced(weighted(b35, W3, W5)), x7 = Pass::reduced(weighted(b35, -W5, W3));
  const i32x4 a = x4 - x6, b = x5 - x7;
  return {sum + x3, difference + x2, difference - x2, sum - x3, x4 + x6, x5 + x7, a + b, a - b};
}

/// Results of four lanes, still to be shifted.
struct Sums {
  i32x4 at[8];
};
[[gnu::always_inline]] inline Sums sums(const Parts& p) {
  const i32x4 odd1 = times_half_root(p.rotated_by_sum), odd2 = times_half_root(p.rotated_by_difference);
  return {p.even0 + p.odd0, p.even1 + odd1, p.even2 + odd2, p.even3 + p.odd3,
          p.even3 - p.odd3, p.even2 - odd2, p.even1 - odd1, p.even0 - p.odd0};
}

i32x4 as_pairs(i16x8 a) { return {a.v}; }
i16x8 as_words(i32x4 a) { return {a.v}; }

/// A 4x4 matrix of pairs of words.
struct PairMatrix {
  i32x4 at[4];
};
[[gnu::always_inline]] inline PairMatrix transposed(const PairMatrix& s) {
  const i32x4 a = interleave_low(s.at[0], s.at[2]), b = interleave_high(s.at[0], s.at[2]);
  const i32x4 c = interleave_low(s.at[1], s.at[3]), d = interleave_high(s.at[1], s.at[3]);
  return {interleave_low(a, c), interleave_high(a, c), interleave_low(b, d), interleave_high(b, d)};
}

/// Words of four rows of results, each the low half of its shifted sum.
[[gnu::always_inline]] inline void narrowed(const Sums& x, i16x8* row) {
  PairMatrix pairs;
#pragma GCC unroll 4
  for (int k = 0; k < 4; ++k)
    pairs.at[k] = (x.at[2 * k] >> 8 & all_i32(0xffff)) | (x.at[2 * k + 1] << 8 & all_i32(-0x10000));
  pairs = transposed(pairs);
#pragma GCC unroll 4
  for (int y = 0; y < 4; ++y) row[y] = as_words(pairs.at[y]);
}

[[gnu::always_inline]] inline void four_rows(const int16_t* src, i16x8* row) {
  PairMatrix pairs;
#pragma GCC unroll 4
  for (int y = 0; y < 4; ++y) {
    const auto left = load_half<i16x8>(src + 8 * y), right = load_half<i16x8>(src + 8 * y + 4);
    pairs.at[y] = as_pairs(interleave_low(left, {_mm_shufflelo_epi16(right.v, _MM_SHUFFLE(1, 2, 3, 0))}));
  }
  pairs = transposed(pairs);
  narrowed(sums(parts<RowPass>(as_words(pairs.at[0]), as_words(pairs.at[1]), as_words(pairs.at[2]),
                               as_words(pairs.at[3]))),
           row);
}
/// The right half of the rows is zero. Nothing is rounded before the rotation, so inputs can be added first.
[[gnu::always_inline]] inline void four_left_rows(const int16_t* src, i16x8* row) {
  i32x4 pairs[4];
#pragma GCC unroll 4
  for (int y = 0; y < 4; ++y)
    pairs[y] = {_mm_shufflelo_epi16(load_half<i16x8>(src + 8 * y).v, _MM_SHUFFLE(3, 1, 2, 0))};
  const __m128i upper = interleave_low(pairs[0], pairs[1]).v, lower = interleave_low(pairs[2], pairs[3]).v;
  const i16x8 b02 = {_mm_unpacklo_epi64(upper, lower)}, b13 = {_mm_unpackhi_epi64(upper, lower)};
  const i32x4 rounding = all_i32(RowPass::rounding);
  narrowed(sums({weighted(b02, RowPass::unit, W2) + rounding, weighted(b02, RowPass::unit, W6) + rounding,
                 weighted(b02, RowPass::unit, -W6) + rounding, weighted(b02, RowPass::unit, -W2) + rounding,
                 weighted(b13, W1, W3), weighted(b13, W7, -W5), weighted(b13, W1 + W7, W5 - W3),
                 weighted(b13, W1 - W7, -W3 - W5)}),
           row);
}

/// Four columns of which rows 4 to 7 are zero; the rounding terms come as inputs of 1.
[[gnu::always_inline]] inline Parts parts_of_quarter(i16x8 c0, i16x8 c1, i16x8 c2, i16x8 c3) {
  const i32x4 x0 = weighted(c0, ColumnPass::unit, ColumnPass::rounding);
  const i32x4 x2 = weighted(c2, W6, 4) >> 3, x3 = weighted(c2, W2, 4) >> 3;
  const i32x4 x4 = weighted(c1, W1, 4) >> 3, x5 = weighted(c1, W7, 4) >> 3;
  const i32x4 x6 = weighted(c3, W3, 4) >> 3, x7 = weighted(c3, -W5, 4) >> 3;
  const i32x4 a = x4 - x6, b = x5 - x7;
  return {x0 + x3, x0 + x2, x0 - x2, x0 - x3, x4 + x6, x5 + x7, a + b, a - b};
}

[[gnu::always_inline]] inline void store_columns(const Sums& left, const Sums& right, int16_t* dst) {
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) store(dst + 8 * y, pack(left.at[y] >> 14, right.at[y] >> 14));
}

pqx_Status inverse(const int16_t* src, int16_t* dst) {
  i16x8 c[8];
  four_rows(src, c);
  four_rows(src + 32, c + 4);
  const Sums left = sums(parts<ColumnPass>(interleave_low(c[0], c[4]), interleave_low(c[1], c[7]),
                                           interleave_low(c[2], c[6]), interleave_low(c[3], c[5])));
  const Sums right = sums(parts<ColumnPass>(interleave_high(c[0], c[4]), interleave_high(c[1], c[7]),
                                            interleave_high(c[2], c[6]), interleave_high(c[3], c[5])));
  store_columns(left, right, dst);
  return PQX_OK;
}

pqx_Status inverse_of_quarter(const int16_t* src, int16_t* dst) {
  i16x8 c[4];
  four_left_rows(src, c);
  const i16x8 one = all_i16(1);
  store_columns(sums(parts_of_quarter(interleave_low(c[0], one), interleave_low(c[1], one), interleave_low(c[2], one),
                                      interleave_low(c[3], one))),
                sums(parts_of_quarter(interleave_high(c[0], one), interleave_high(c[1], one),
                                      interleave_high(c[2], one), interleave_high(c[3], one))),
                dst);
  return PQX_OK;
}

pqx_Status inverse_of_dc(const int16_t* src, int16_t* dst) {
  const i16x8 samples = all_i16((int16_t(load_one<int16_t>(src) * 8) + 32) >> 6);
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) store(dst + 8 * y, samples);
  return PQX_OK;
}

bool is_zero(__m128i a) { return _mm_movemask_epi8(_mm_cmpeq_epi8(a, _mm_setzero_si128())) == 0xffff; }

}  // namespace
}  // namespace pqx::dct

// Blocks of a decoder are mostly zero; what is left out there changes no result.
pqx_Status pqx_Video_DCT8x8Inv_IEEE_16S(const int16_t* pSrc, int16_t* pDst) {
  using namespace pqx::dct;
  const pqx::Block X = pqx::load_block(pSrc);
  const pqx::i16x8 upper = X.row[1] | X.row[2] | X.row[3];
  const pqx::i16x8 lower = X.row[4] | X.row[5] | X.row[6] | X.row[7];
  const pqx::i16x8 right = {_mm_srli_si128((X.row[0] | upper).v, 8)};
  if (!is_zero((right | lower).v)) return inverse(pSrc, pDst);
  if (!is_zero((pqx::i16x8{_mm_srli_si128(X.row[0].v, 2)} | upper).v)) return inverse_of_quarter(pSrc, pDst);
  return inverse_of_dc(pSrc, pDst);
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_IEEE_16S);
