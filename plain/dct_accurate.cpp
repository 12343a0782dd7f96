#include <string.h>

#include "plain.h"

namespace plain {
namespace {

/// 32 bits that wrap.
struct Word {
  uint32_t bits;
  Word(int x) : bits(uint32_t(x)) {}
  explicit Word(uint32_t x) : bits(x) {}
};
Word operator+(Word a, Word b) { return Word(a.bits + b.bits); }
Word operator-(Word a, Word b) { return Word(a.bits - b.bits); }
Word operator*(int c, Word a) { return Word(uint32_t(c) * a.bits); }
Word operator>>(Word a, int k) { return int32_t(a.bits) >> k; }

/// One 8-point pass: inputs scaled by 2^head, products reduced by 2^mid, results by 2^tail.
void chen_wang_pass(const int16_t* in, int distance, int head, int mid, int tail, int16_t* out, int out_distance) {
  const auto b = [=](int k) { return Word(in[k * distance]); };
  const int half_head = 1 << (tail - 1), half_mid = mid ? 1 << (mid - 1) : 0;
  Word x0 = (1 << head) * b(0) + half_head, x1 = (1 << head) * b(4), x2 = b(6), x3 = b(2), x4 = b(1), x5 = b(7),
       x6 = b(5), x7 = b(3);
  Word x8 = 565 * (x4 + x5) + half_mid;
  x4 = (x8 + 2276 * x4) >> mid;
  x5 = (x8 - 3406 * x5) >> mid;
  x8 = 2408 * (x6 + x7) + half_mid;
  x6 = (x8 - 799 * x6) >> mid;
  x7 = (x8 - 4017 * x7) >> mid;

  x8 = x0 + x1;
  x0 = x0 - x1;
  x1 = 1108 * (x3 + x2) + half_mid;
  x2 = (x1 - 3784 * x2) >> mid;
  x3 = (x1 + 1568 * x3) >> mid;
  x1 = x4 + x6;
  x4 = x4 - x6;
  x6 = x5 + x7;
  x5 = x5 - x7;

  x7 = x8 + x3;
  x8 = x8 - x3;
  x3 = x0 + x2;
  x0 = x0 - x2;
  x2 = (181 * (x4 + x5) + 128) >> 8;
  x4 = (181 * (x4 - x5) + 128) >> 8;

  const Word results[8] = {x7 + x1, x3 + x2, x0 + x4, x8 + x6, x8 - x6, x0 - x4, x3 - x2, x7 - x1};
  for (int k = 0; k < 8; ++k) out[k * out_distance] = int16_t((results[k] >> tail).bits);
}

constexpr double C1 = 0.4903926402016152, C2 = 0.46193976625564337, C3 = 0.4157348061512726, C4i = 0.35355339,
                 C5 = 0.27778511650980114, C6 = 0.19134171618254492, C7 = 0.09754516100806417,
                 R2 = 0.7071067811865476;

void inverse_pass(const double (&X)[8], double (&x)[8]) {
  const double a = X[1] * C7 - X[7] * C1, b = X[7] * C7 + X[1] * C1, c = X[3] * C3 + X[5] * C5,
               d = X[5] * C3 - X[3] * C5;
  const double e = X[0] + X[4], f = X[0] - X[4], g = X[2] * C6 - X[6] * C2, h = X[6] * C6 + X[2] * C2;
  const double p = c + b, q = (b - c) * R2, r = d + a, t = (a - d) * R2, u = t + q, w = q - t;
  const double s0 = h + e * C4i, s3 = e * C4i - h, s1 = g + f * C4i, s2 = f * C4i - g;
  x[0] = p + s0;
  x[1] = u + s1;
  x[2] = w + s2;
  x[3] = r + s3;
  x[4] = s3 - r;
  x[5] = s2 - w;
  x[6] = s1 - u;
  x[7] = s0 - p;
}

/// The pass of a column whose last coefficient alone is m; the column of 1 is a list of its own.
void last_column(int m, double (&x)[8]) {
  if (m == 1) {
    constexpr double unit[8] = {0.09754516100806417, -0.2777851165098011, 0.4157348061512727, -0.4903926402016152,
                                0.4903926402016152,  -0.4157348061512727, 0.2777851165098011, -0.09754516100806417};
    memcpy(x, unit, sizeof x);
    return;
  }
  const double P = m * C7, A = m * -C1, U = R2 * A + P * R2, V = P * R2 - R2 * A;
  const double column[8] = {P, U, V, A, -A, -V, -U, -P};
  memcpy(x, column, sizeof x);
}

}  // namespace

pqx_Status DCT8x8Inv_IEEE_16S(const int16_t* pSrc, int16_t* pDst) {
  int16_t in[64], rows[64], out[64];
  memcpy(in, pSrc, sizeof in);
  for (int y = 0; y < 8; ++y) chen_wang_pass(in + 8 * y, 1, 11, 0, 8, rows + 8 * y, 1);
  for (int x = 0; x < 8; ++x) chen_wang_pass(rows + x, 8, 8, 3, 14, out + x, 8);
  memcpy(pDst, out, sizeof out);
  return PQX_OK;
}

pqx_Status DCT8x8Inv_1Q_Mismatch_16S(const int16_t* pSrc, int16_t* pDst) {
  int16_t quarter[4][4], last, out[64];
  for (int u = 0; u < 4; ++u) memcpy(quarter[u], reinterpret_cast<const char*>(pSrc) + 16 * u, sizeof quarter[u]);
  memcpy(&last, reinterpret_cast<const char*>(pSrc) + 126, sizeof last);
  double columns[8][8] = {};
  for (int v = 0; v < 4; ++v) {
    double X[8] = {};
    for (int u = 0; u < 4; ++u) X[u] = quarter[u][v];
    if (v == 0) X[0] += 16388;
    inverse_pass(X, columns[v]);
  }
  last_column(last, columns[7]);
  for (int y = 0; y < 8; ++y) {
    double X[8], x[8];
    for (int v = 0; v < 8; ++v) X[v] = columns[v][y];
    inverse_pass(X, x);
    for (int i = 0; i < 8; ++i) out[8 * y + i] = int16_t(int32_t(x[i]) - 2048);
  }
  memcpy(pDst, out, sizeof out);
  return PQX_OK;
}

}  // namespace plain
