#include "common/export.h"
#include "dct/block_8x8.h"

namespace {

using pqx::f32x4, pqx::i16x8, pqx::i32x4, pqx::load, pqx::store, pqx::floats;

// cos(k pi / 32) at k = 1, 3, 5, 7 and sin alike; the same for 16ths, eighths and the quarter of pi.
constexpr float cos1_32 = 0.9951847f, cos3_32 = 0.95694035f, cos5_32 = 0.8819213f, cos7_32 = 0.77301043f;
constexpr float sin1_32 = 0.09801714f, sin3_32 = 0.29028466f, sin5_32 = 0.47139674f, sin7_32 = 0.6343933f;
constexpr float cos1_16 = 0.98078525f, sin1_16 = 0.19509032f, cos3_16 = 0.8314696f, sin3_16 = 0.55557024f;
constexpr float cos1_8 = 0.9238795f, sin1_8 = 0.38268343f, cos1_4 = 0.70710677f;

f32x4 operator*(f32x4 a, float c) { return a * f32x4{_mm_set1_ps(c)}; }

/// Four rows or columns of 16 values, mirrored ones joined: x[n] + x[15 - n] and x[n] - x[15 - n].
struct FourFolded {
  f32x4 sum[8], difference[8];
};

/// One index of four rows or columns in each register.
struct FourLines {
  f32x4 at[16];
};

// X[k] = C(k) / divisor sum of x[n] cos((2n + 1) k pi / 32). The sums make an 8-point transform of the same kind, the
// differences the odd outputs. A divisor that is a power of two goes into the last factors without rounding.
template <int divisor>
FourLines transform(const FourFolded& x) {
  constexpr float scale = 1.0f / divisor;
  FourLines X;
  {
    const f32x4* s = x.sum;
    const f32x4 t0 = s[0] + s[7], t1 = s[1] + s[6], t2 = s[2] + s[5], t3 = s[3] + s[4];
    const f32x4 u0 = s[0] - s[7], u1 = s[1] - s[6], u2 = s[2] - s[5], u3 = s[3] - s[4];
    X.at[0] = ((t0 + t3) + (t1 + t2)) * (scale * cos1_4);
    X.at[8] = ((t0 + t3) - (t1 + t2)) * (scale * cos1_4);
    const f32x4 b = t0 - t3, c = t1 - t2;
    X.at[4] = b * (scale * cos1_8) + c * (scale * sin1_8);
    X.at[12] = b * (scale * sin1_8) - c * (scale * cos1_8);
    const f32x4 p = (u1 + u2) * cos1_4, q = (u1 - u2) * cos1_4;
    const f32x4 g = u0 + p, h = u3 + q, j = u0 - p, k = u3 - q;
    X.at[2] = g * (scale * cos1_16) + h * (scale * sin1_16);
    X.at[14] = g * (scale * sin1_16) - h * (scale * cos1_16);
    X.at[6] = j * (scale * cos3_16) - k * (scale * sin3_16);
    X.at[10] = j * (scale * sin3_16) + k * (scale * cos3_16);
  }
  const f32x4* d = x.difference;
  const f32x4 p0 = (d[3] + d[4]) * cos1_4, q0 = (d[3] - d[4]) * cos1_4;
  const f32x4 p1 = (d[2] + d[5]) * cos1_4, q1 = (d[2] - d[5]) * cos1_4;
  {
    const f32x4 a = d[0] + p0, b = d[1] + p1, c = d[6] + q1, e = d[7] + q0;
    const f32x4 u = b * cos1_8 + c * sin1_8, v = b * sin1_8 - c * cos1_8;
    X.at[1] = (a + u) * (scale * cos1_32) + (e + v) * (scale * sin1_32);
    X.at[15] = (a + u) * (scale * sin1_32) - (e + v) * (scale * cos1_32);
    X.at[7] = (a - u) * (scale * cos7_32) - (e - v) * (scale * sin7_32);
    X.at[9] = (a - u) * (scale * sin7_32) + (e - v) * (scale * cos7_32);
  }
  const f32x4 a = d[0] - p0, b = d[1] - p1, c = d[6] - q1, e = d[7] - q0;
  const f32x4 u = b * sin1_8 - c * cos1_8, v = b * cos1_8 + c * sin1_8;
  X.at[3] = (a + u) * (scale * cos3_32) - (e - v) * (scale * sin3_32);
  X.at[13] = (a + u) * (scale * sin3_32) + (e - v) * (scale * cos3_32);
  X.at[5] = (a - u) * (scale * cos5_32) + (e + v) * (scale * sin5_32);
  X.at[11] = (a - u) * (scale * sin5_32) - (e + v) * (scale * cos5_32);
  return X;
}

pqx::Block quarter_transposed(const int16_t* src) {
  pqx::Block b;
  for (int y = 0; y < 8; ++y) b.row[y] = load<i16x8>(src + 16 * y);
  return pqx::transposed(b);
}

// Words n and 15 - n of four rows side by side; their sum and difference are exact in 32 bits.
void fold(i16x8 pairs, f32x4& sum, f32x4& difference) {
  sum = floats(pair_products(pairs, pqx::all_i16(1)));
  difference = floats(pair_products(pairs, pqx::alternating<i16x8>(1, -1)));
}

/// Transforms of rows y to y + 7.
void transform_rows(const int16_t* src, FourLines rows[2]) {
  const pqx::Block left = quarter_transposed(src), right = quarter_transposed(src + 8);
  for (int half = 0; half < 2; ++half) {
    FourFolded x;
#pragma GCC unroll 8
    for (int n = 0; n < 8; ++n) {
      const i16x8 l = left.row[n], r = right.row[7 - n];
      fold(half == 0 ? interleave_low(l, r) : interleave_high(l, r), x.sum[n], x.difference[n]);
    }
    rows[half] = transform<1>(x);
  }
}

/// Columns v, v + 2, v + 4 and v + 6 of what the rows became, transformed. The scale of 2/N is an eighth.
FourLines transform_columns(const FourLines rows[4], int v) {
  f32x4 x[16];
#pragma GCC unroll 4
  for (int y = 0; y < 16; y += 4) pqx::four_columns<2>(rows[y / 4].at + v, x + y);
  FourFolded folded;
#pragma GCC unroll 8
  for (int n = 0; n < 8; ++n) {
    folded.sum[n] = x[n] + x[15 - n];
    folded.difference[n] = x[n] - x[15 - n];
  }
  return transform<8>(folded);
}

// Fractions are cut off toward zero; 256 samples make results below 2^20, of which the low 16 bits are kept.
i32x4 result(f32x4 z) { return {_mm_cvttps_epi32(z.v)}; }

}  // namespace

pqx_Status pqx_Video_DCT16x16Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  FourLines rows[4];
  transform_rows(pSrc, rows);
  transform_rows(pSrc + 128, rows + 2);
  for (int v = 0; v < 16; v += 8) {
    const FourLines even = transform_columns(rows, v), odd = transform_columns(rows, v + 1);
    for (int u = 0; u < 16; ++u)
      store(pDst + 16 * u + v, (result(even.at[u]) & pqx::all_i32(0xFFFF)) | result(odd.at[u]) << 16);
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT16x16Fwd_16S);
