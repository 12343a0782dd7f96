#include <string.h>

#include "plain.h"

namespace plain {
namespace {

constexpr float cos1_32 = 0.9951847f, cos3_32 = 0.95694035f, cos5_32 = 0.8819213f, cos7_32 = 0.77301043f,
                sin1_32 = 0.09801714f, sin3_32 = 0.29028466f, sin5_32 = 0.47139674f, sin7_32 = 0.6343933f,
                cos1_16 = 0.98078525f, sin1_16 = 0.19509032f, cos3_16 = 0.8314696f, sin3_16 = 0.55557024f,
                cos1_8 = 0.9238795f, sin1_8 = 0.38268343f, cos1_4 = 0.70710677f;

void transform_4(const float* x, int step, float* X) {
  const float s03 = x[0] + x[3 * step], s12 = x[step] + x[2 * step];
  const float d03 = x[0] - x[3 * step], d12 = x[step] - x[2 * step];
  X[0] = s12 + s03;
  X[step] = d03 * 1.3065629f + d12 * 0.5411961f;
  X[2 * step] = s03 - s12;
  X[3 * step] = d03 * 0.5411961f - d12 * 1.3065629f;
}

// a c + b s and a s - b c
void rotate(float a, float b, float c, float s, float* first, float* second) {
  *first = a * c + b * s;
  *second = a * s - b * c;
}

void transform_16(const float* x, int step, float* X) {
  float s[8], d[8], t[4], u[4];
  for (int n = 0; n < 8; ++n) {
    s[n] = x[n * step] + x[(15 - n) * step];
    d[n] = x[n * step] - x[(15 - n) * step];
  }
  for (int n = 0; n < 4; ++n) {
    t[n] = s[n] + s[7 - n];
    u[n] = s[n] - s[7 - n];
  }
  X[0] = ((t[0] + t[3]) + (t[1] + t[2])) * cos1_4;
  X[8 * step] = ((t[0] + t[3]) - (t[1] + t[2])) * cos1_4;
  rotate(t[0] - t[3], t[1] - t[2], cos1_8, sin1_8, X + 4 * step, X + 12 * step);
  const float p = (u[1] + u[2]) * cos1_4, q = (u[1] - u[2]) * cos1_4;
  rotate(u[0] + p, u[3] + q, cos1_16, sin1_16, X + 2 * step, X + 14 * step);
  rotate(u[0] - p, -(u[3] - q), cos3_16, sin3_16, X + 6 * step, X + 10 * step);
  const float p0 = (d[3] + d[4]) * cos1_4, q0 = (d[3] - d[4]) * cos1_4;
  const float p1 = (d[2] + d[5]) * cos1_4, q1 = (d[2] - d[5]) * cos1_4;
  float v, w;
  rotate(d[1] + p1, d[6] + q1, cos1_8, sin1_8, &v, &w);
  const float a = d[0] + p0, e = d[7] + q0, b = d[0] - p0, f = d[7] - q0;
  rotate(a + v, e + w, cos1_32, sin1_32, X + step, X + 15 * step);
  rotate(a - v, -(e - w), cos7_32, sin7_32, X + 7 * step, X + 9 * step);
  rotate(d[1] - p1, d[6] - q1, cos1_8, sin1_8, &w, &v);
  rotate(b + v, -(f - w), cos3_32, sin3_32, X + 3 * step, X + 13 * step);
  rotate(b - v, f + w, cos5_32, sin5_32, X + 5 * step, X + 11 * step);
}

template <int n>
void transform(const int16_t* pSrc, float* z, void (*pass)(const float*, int, float*)) {
  int16_t in[n * n];
  memcpy(in, pSrc, sizeof in);
  for (int i = 0; i < n * n; ++i) z[i] = in[i];
  for (int y = 0; y < n; ++y) pass(z + n * y, 1, z + n * y);
  for (int x = 0; x < n; ++x) pass(z + x, n, z + x);
}

}  // namespace

pqx_Status DCT2x2Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  int16_t s[4], out[4];
  memcpy(s, pSrc, sizeof s);
  out[0] = int16_t((s[0] + s[1] + (s[2] + s[3])) >> 1);
  out[1] = int16_t(((s[0] - s[1]) + (s[2] - s[3])) >> 1);
  out[2] = int16_t(((s[0] + s[1]) - (s[2] + s[3])) >> 1);
  out[3] = int16_t(((s[0] - s[1]) - (s[2] - s[3])) >> 1);
  memcpy(pDst, out, sizeof out);
  return PQX_OK;
}

pqx_Status DCT4x4Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  float z[16];
  transform<4>(pSrc, z, transform_4);
  int16_t out[16];
  for (int i = 0; i < 16; ++i) out[i] = int16_t(int(z[i]) >> 2);
  memcpy(pDst, out, sizeof out);
  return PQX_OK;
}

pqx_Status DCT16x16Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  float z[256];
  transform<16>(pSrc, z, transform_16);
  int16_t out[256];
  for (int i = 0; i < 256; ++i) out[i] = int16_t(int(z[i] * 0.125f));
  memcpy(pDst, out, sizeof out);
  return PQX_OK;
}

pqx_Status DCT16x16Fwd_10S_16S(const int16_t* pSrc, int16_t* pDst) { return DCT16x16Fwd_16S(pSrc, pDst); }

}  // namespace plain
