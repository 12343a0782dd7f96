#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

/// The samples of a block with its inner columns, then its inner rows, filtered by 1, 2, 1.
template <class T>
pqx_Status loop_filter(const uint8_t* src, int64_t step, T* dst, int64_t dst_step) {
  int16_t h[8][8];  // four times the row-filtered samples
  for (int r = 0; r < 8; ++r, src += step) {
    h[r][0] = int16_t(4 * src[0]);
    for (int c = 1; c < 7; ++c) h[r][c] = int16_t(src[c - 1] + 2 * src[c] + src[c + 1]);
    h[r][7] = int16_t(4 * src[7]);
  }
  for (int c = 0; c < 8; ++c) dst[c] = T((h[0][c] + 2) >> 2);
  for (int r = 1; r < 7; ++r)
    for (int c = 0; c < 8; ++c) dst[r * dst_step + c] = T((h[r - 1][c] + 2 * h[r][c] + h[r + 1][c] + 8) >> 4);
  for (int c = 0; c < 8; ++c) dst[7 * dst_step + c] = T((h[7][c] + 2) >> 2);
  return PQX_OK;
}

}  // namespace

pqx_Status P64Loop_8U(const uint8_t* pSrc, uint8_t* pDst, int step) { return loop_filter(pSrc, step, pDst, step); }
pqx_Status P64Loop_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  return loop_filter(pSrc, srcStep, any_address(pDst), 8);
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
