#include "common/export.h"
#include "dct/block_8x8.h"

namespace {

using pqx::f32x4, pqx::i16x8, pqx::i32x4, pqx::load, pqx::store;

// cos(k pi / 32) at k = 1, 3, 5, 7 and sin alike; the same for 16ths, eighths and the quarter of pi.
constexpr float cos1_32 = 0.9951847f, cos3_32 = 0.95694035f, cos5_32 = 0.8819213f, cos7_32 = 0.77301043f;
constexpr float sin1_32 = 0.09801714f, sin3_32 = 0.29028466f, sin5_32 = 0.47139674f, sin7_32 = 0.6343933f;
constexpr float cos1_16 = 0.98078525f, sin1_16 = 0.19509032f, cos3_16 = 0.8314696f, sin3_16 = 0.55557024f;
constexpr float cos1_8 = 0.9238795f, sin1_8 = 0.38268343f, cos1_4 = 0.70710677f;

f32x4 operator*(f32x4 a, float c) { return a * f32x4{_mm_set1_ps(c)}; }
f32x4 to_float(i32x4 a) { return {_mm_cvtepi32_ps(a.v)}; }

/// One index of four rows or columns in each register.
struct FourLines {
  f32x4 at[16];
};

// X[k] = C(k) sum of x[n] cos((2n + 1) k pi / 32). Mirrored inputs are joined first: their sums make an 8-point
// transform of the same kind, their differences the odd outputs.
FourLines transform(const FourLines& x) {
  f32x4 s[8], d[8];
#pragma GCC unroll 8
  for (int n = 0; n < 8; ++n) {
    s[n] = x.at[n] + x.at[15 - n];
    d[n] = x.at[n] - x.at[15 - n];
  }
  FourLines X;
  {
    const f32x4 t0 = s[0] + s[7], t1 = s[1] + s[6], t2 = s[2] + s[5], t3 = s[3] + s[4];
    const f32x4 u0 = s[0] - s[7], u1 = s[1] - s[6], u2 = s[2] - s[5], u3 = s[3] - s[4];
    X.at[0] = ((t0 + t3) + (t1 + t2)) * cos1_4;
    X.at[8] = ((t0 + t3) - (t1 + t2)) * cos1_4;
    const f32x4 b = t0 - t3, c = t1 - t2;
    X.at[4] = b * cos1_8 + c * sin1_8;
    X.at[12] = b * sin1_8 - c * cos1_8;
    const f32x4 p = (u1 + u2) * cos1_4, q = (u1 - u2) * cos1_4;
    const f32x4 g = u0 + p, h = u3 + q, j = u0 - p, k = u3 - q;
    X.at[2] = g * cos1_16 + h * sin1_16;
    X.at[14] = g * sin1_16 - h * cos1_16;
    X.at[6] = j * cos3_16 - k * sin3_16;
    X.at[10] = j * sin3_16 + k * cos3_16;
  }
  const f32x4 p0 = (d[3] + d[4]) * cos1_4, q0 = (d[3] - d[4]) * cos1_4;
  const f32x4 p1 = (d[2] + d[5]) * cos1_4, q1 = (d[2] - d[5]) * cos1_4;
  {
    const f32x4 a = d[0] + p0, b = d[1] + p1, c = d[6] + q1, e = d[7] + q0;
    const f32x4 u = b * cos1_8 + c * sin1_8, v = b * sin1_8 - c * cos1_8;
    X.at[1] = (a + u) * cos1_32 + (e + v) * sin1_32;
    X.at[15] = (a + u) * sin1_32 - (e + v) * cos1_32;
    X.at[7] = (a - u) * cos7_32 - (e - v) * sin7_32;
    X.at[9] = (a - u) * sin7_32 + (e - v) * cos7_32;
  }
  const f32x4 a = d[0] - p0, b = d[1] - p1, c = d[6] - q1, e = d[7] - q0;
  const f32x4 u = b * sin1_8 - c * cos1_8, v = b * cos1_8 + c * sin1_8;
  X.at[3] = (a + u) * cos3_32 - (e - v) * sin3_32;
  X.at[13] = (a + u) * sin3_32 + (e - v) * cos3_32;
  X.at[5] = (a - u) * cos5_32 + (e + v) * sin5_32;
  X.at[11] = (a - u) * sin5_32 - (e + v) * cos5_32;
  return X;
}

// Lines first to first + 3 of an 8x8 block of words, as the first or second eight values of four lines.
void widen(const pqx::Block& words, bool high, f32x4* to) {
  for (int n = 0; n < 8; ++n) {
    const i16x8 w = words.row[n];
    to[n] = to_float((high ? i32x4{_mm_unpackhi_epi16(w.v, w.v)} : i32x4{_mm_unpacklo_epi16(w.v, w.v)}) >> 16);
  }
}

pqx::Block quarter_transposed(const int16_t* src) {
  pqx::Block b;
  for (int y = 0; y < 8; ++y) b.row[y] = load<i16x8>(src + 16 * y);
  return pqx::transposed(b);
}

// The scale of 2/N is an eighth. Fractions are cut off toward zero; 256 samples make results below 2^20, of which
// the low 16 bits are kept.
i32x4 result(f32x4 z) { return i32x4{_mm_cvttps_epi32((z * 0.125f).v)} << 16 >> 16; }

}  // namespace

pqx_Status pqx_Video_DCT16x16Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  FourLines rows[4];
  for (int half = 0; half < 2; ++half) {
    const pqx::Block left = quarter_transposed(pSrc + 128 * half), right = quarter_transposed(pSrc + 128 * half + 8);
    for (int high = 0; high < 2; ++high) {
      FourLines x;
      widen(left, high, x.at);
      widen(right, high, x.at + 8);
      rows[2 * half + high] = transform(x);
    }
  }
  for (int v = 0; v < 16; v += 8) {
    FourLines columns[2];
    for (int k = 0; k < 2; ++k) {
      FourLines x;
      for (int y = 0; y < 16; y += 4) {
        const f32x4* r = rows[y / 4].at + v + 4 * k;
        __m128 c0 = r[0].v, c1 = r[1].v, c2 = r[2].v, c3 = r[3].v;
        _MM_TRANSPOSE4_PS(c0, c1, c2, c3);
        x.at[y] = {c0}, x.at[y + 1] = {c1}, x.at[y + 2] = {c2}, x.at[y + 3] = {c3};
      }
      columns[k] = transform(x);
    }
    for (int u = 0; u < 16; ++u) store(pDst + 16 * u + v, pack(result(columns[0].at[u]), result(columns[1].at[u])));
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT16x16Fwd_16S);
