#include "common/export.h"
#include "dct/block_8x8.h"

namespace pqx::dct {
namespace {

// 2048 sqrt(2) cos(k pi / 16), and 128 sqrt(2).
constexpr int W1 = 2841, W2 = 2676, W3 = 2408, W5 = 1609, W6 = 1108, W7 = 565, root = 181;

/// Rows leave the first pass at eight times their scale.
struct RowPass {
  static constexpr int unit = 2048, rounding = 128;
  static i32x4 reduced(i32x4 product) { return product; }
  static i32x4 result(i32x4 x) { return x << 8 >> 16; }  // x >> 8, kept to 16 bits
};
/// Products of the second pass give up three bits.
struct ColumnPass {
  static constexpr int unit = 256, rounding = 8192;
  static i32x4 reduced(i32x4 product) { return (product + all_i32(4)) >> 3; }
  static i32x4 result(i32x4 x) { return x << 2 >> 16; }  // x >> 14, kept to 16 bits
};

// a * wa + b * wb for words a and b in turn.
i32x4 weighted(i16x8 a_and_b, int wa, int wb) {
  return pair_products(a_and_b, {_mm_set1_epi32(int(uint32_t(wb) << 16 | uint16_t(wa)))});
}

// x * 181 modulo 2^32, from products of its halves, then by 2^-8.
i32x4 times_half_root(i32x4 x) {
  const __m128i w = _mm_set1_epi32(root << 16 | root);
  const i32x4 low = {_mm_mullo_epi16(x.v, w)}, carry = i32x4{_mm_mulhi_epu16(x.v, w)} << 16;
  return (low + carry + all_i32(128)) >> 8;
}

/// One pass over four lanes, with inputs interleaved in pairs.
template <class Pass>
void pass(i16x8 b04, i16x8 b26, i16x8 b17, i16x8 b53, i32x4 (&out)[8]) {
  const i32x4 rounding = all_i32(Pass::rounding);
  const i32x4 sum = weighted(b04, Pass::unit, Pass::unit) + rounding;
  const i32x4 difference = weighted(b04, Pass::unit, -Pass::unit) + rounding;
  const i32x4 x3 = Pass::reduced(weighted(b26, W2, W6)), x2 = Pass::reduced(weighted(b26, W6, -W2));
  const i32x4 x4 = Pass::reduced(weighted(b17, W1, W7)), x5 = Pass::reduced(weighted(b17, W7, -W1));
  const i32x4 x6 = Pass::reduced(weighted(b53, W5, W3)), x7 = Pass::reduced(weighted(b53, W3, -W5));
  const i32x4 odd0 = x4 + x6, odd3 = x5 + x7, p = x4 - x6, q = x5 - x7;
  const i32x4 odd1 = times_half_root(p + q), odd2 = times_half_root(p - q);
  const i32x4 even0 = sum + x3, even3 = sum - x3, even1 = difference + x2, even2 = difference - x2;
  out[0] = Pass::result(even0 + odd0);
  out[1] = Pass::result(even1 + odd1);
  out[2] = Pass::result(even2 + odd2);
  out[3] = Pass::result(even3 + odd3);
  out[4] = Pass::result(even3 - odd3);
  out[5] = Pass::result(even2 - odd2);
  out[6] = Pass::result(even1 - odd1);
  out[7] = Pass::result(even0 - odd0);
}

template <class Pass>
Block pass(const Block& b) {
  i32x4 low[8], high[8];
  pass<Pass>(interleave_low(b.row[0], b.row[4]), interleave_low(b.row[2], b.row[6]),
             interleave_low(b.row[1], b.row[7]), interleave_low(b.row[5], b.row[3]), low);
  pass<Pass>(interleave_high(b.row[0], b.row[4]), interleave_high(b.row[2], b.row[6]),
             interleave_high(b.row[1], b.row[7]), interleave_high(b.row[5], b.row[3]), high);
  Block out;
  for (int k = 0; k < 8; ++k) out.row[k] = pack(low[k], high[k]);
  return out;
}

}  // namespace
}  // namespace pqx::dct

pqx_Status pqx_Video_DCT8x8Inv_IEEE_16S(const int16_t* pSrc, int16_t* pDst) {
  using namespace pqx::dct;
  const pqx::Block rows = pass<RowPass>(transposed(pqx::load_block(pSrc)));
  const pqx::Block samples = pass<ColumnPass>(transposed(rows));
  for (int y = 0; y < 8; ++y) pqx::store(pDst + 8 * y, samples.row[y]);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_IEEE_16S);
