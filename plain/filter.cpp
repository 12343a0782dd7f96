#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

/// The samples of a block with its inner columns, then its inner rows, filtered by 1, 2, 1.
template <class Put>
pqx_Status loop_filter(const uint8_t* src, int64_t step, Put put) {
  int h[8][8];  // four times the row-filtered samples
  for (int r = 0; r < 8; ++r)
    for (int c = 0; c < 8; ++c) {
      const uint8_t* s = src + r * step + c;
      h[r][c] = c == 0 || c == 7 ? 4 * s[0] : s[-1] + 2 * s[0] + s[1];
    }
  for (int r = 0; r < 8; ++r)
    for (int c = 0; c < 8; ++c)
      put(r, c, r == 0 || r == 7 ? (h[r][c] + 2) >> 2 : (h[r - 1][c] + 2 * h[r][c] + h[r + 1][c] + 8) >> 4);
  return PQX_OK;
}

}  // namespace

pqx_Status P64Loop_8U(const uint8_t* pSrc, uint8_t* pDst, int step) {
  return loop_filter(pSrc, step, [=](int64_t r, int c, int sample) { pDst[r * step + c] = uint8_t(sample); });
}
pqx_Status P64Loop_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  AnyAddress16* dst = any_address(pDst);
  return loop_filter(pSrc, srcStep, [=](int r, int c, int sample) { dst[8 * r + c] = AnyAddress16(sample); });
}

pqx_Status P64Decimate_8U(const uint8_t* pSrc, int srcStep, uint8_t* pDst, int dstStep, int width, int height) {
  for (int64_t y = 0; y < height; ++y) {
    const uint8_t *upper = pSrc + 2 * y * srcStep, *lower = upper + srcStep;
    uint8_t* d = pDst + y * dstStep;
    for (int64_t x = 0; x < width; ++x)
      d[x] = uint8_t((upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1] + 2) >> 2);
  }
  return PQX_OK;
}

}  // namespace plain
