#include "common/export.h"
#include "common/lanes.h"

namespace pqx::dct {
namespace {

constexpr double c1 = 0.4903926402016152, c2 = 0.46193976625564337, c3 = 0.4157348061512726, c4i = 0.35355339,
                 c5 = 0.27778511650980114, c6 = 0.19134171618254492, c7 = 0.09754516100806417,
                 r2 = 0.7071067811865476;

void pass(const double (&X)[8], double (&x)[8]) {
  const double a = X[1] * c7 - X[7] * c1, b = X[7] * c7 + X[1] * c1, c = X[3] * c3, d = 0 - X[3] * c5;
  const double g = X[2] * c6, h = X[2] * c2, e = X[0] * c4i;
  const double p = c + b, q = (b - c) * r2, r = d + a, t = (a - d) * r2, u = t + q, w = q - t;
  const double s0 = h + e, s3 = e - h, s1 = g + e, s2 = e - g;
  x[0] = p + s0, x[1] = u + s1, x[2] = w + s2, x[3] = r + s3;
  x[4] = s3 - r, x[5] = s2 - w, x[6] = s1 - u, x[7] = s0 - p;
}

// The last column for a coefficient of 1, correctly rounded.
constexpr double unit_column[8] = {0.09754516100806417, -0.2777851165098011, 0.4157348061512727,
                                   -0.4903926402016152, 0.4903926402016152,  -0.4157348061512727,
                                   0.2777851165098011,  -0.09754516100806417};

}  // namespace
}  // namespace pqx::dct

pqx_Status pqx_Video_DCT8x8Inv_1Q_Mismatch_16S(const int16_t* pSrc, int16_t* pDst) {
  using namespace pqx::dct;
  double columns[8][8] = {};
  for (int v = 0; v < 4; ++v) {
    double X[8] = {};
    for (int u = 0; u < 4; ++u) X[u] = pqx::load_one<int16_t>(pSrc + 8 * u + v);
    if (v == 0) X[0] += 16388;
    pass(X, columns[v]);
  }
  const int last = pqx::load_one<int16_t>(pSrc + 63);
  pass({0, 0, 0, 0, 0, 0, 0, double(last)}, columns[7]);
  if (last == 1) memcpy(columns[7], unit_column, sizeof unit_column);
  for (int y = 0; y < 8; ++y) {
    double X[8], x[8];
    for (int v = 0; v < 8; ++v) X[v] = columns[v][y];
    pass(X, x);
    for (int i = 0; i < 8; ++i) pqx::store_one(pDst + 8 * y + i, int16_t(int32_t(x[i]) - 2048));
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_1Q_Mismatch_16S);
