#include <stdlib.h>

#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

int eight_or_sixteen(int width) { return width == 8 ? 8 : 16; }

// d = sample(s, d) for a pointer s and a value d, row after row.
template <class T, class Sample>
pqx_Status predict(const uint8_t* s, int64_t step, T* d, int64_t d_step, int columns, int rows, Sample sample) {
  if (columns < 1) return PQX_OK;
  for (; rows > 0; --rows, s += step, d += d_step)
    for (int x = 0; x < columns; ++x) d[x] = T(sample(s + x, d[x]));
  return PQX_OK;
}

int mean_down(int a, int b) { return (a + b) >> 1; }
int mean_up(int a, int b) { return (a + b + 1) >> 1; }

// d = sample(a, b, d) for every sample, in bands of four rows.
template <class Sample>
pqx_Status average(const uint8_t* a, int a_step, const uint8_t* b, int b_step, uint8_t* d, int d_step, int width,
                   int height, Sample sample) {
  const int columns = width == 2 || width == 4 || width == 8 ? width : 16;
  for (int64_t y = 0; y < height || y % 4 != 0; ++y, a += a_step, b += b_step, d += d_step)
    for (int x = 0; x < columns; ++x) d[x] = uint8_t(sample(a[x], b[x], d[x]));
  return PQX_OK;
}

// Samples at half-sample positions, the last two averaged into d with one rounding.
int pair(const uint8_t* p, int64_t other) { return (p[0] + p[other] + 1) >> 1; }
int square(const uint8_t* p, int64_t below) { return (p[0] + p[1] + p[below] + p[below + 1] + 2) >> 2; }
int pair_and(int d, const uint8_t* p, int64_t other) { return (2 * d + p[0] + p[other] + 3) >> 2; }
int square_and(int d, const uint8_t* p, int64_t below) {
  return (4 * d + p[0] + p[1] + p[below] + p[below + 1] + 6) >> 3;
}

pqx_Status interpolate_three(const uint8_t* src, uint8_t* X, uint8_t* Y, uint8_t* XY, int64_t step, int width,
                             int height) {
  for (int64_t y = 0; y == 0 || y < height; ++y)
    for (int64_t x = 0; x < width; ++x) {
      const int64_t here = y * step + x, right = x + 1 < width, below = y + 1 < height ? step : 0;
      const int a = src[here], b = src[here + right], c = src[here + below], e = src[here + below + right];
      X[here] = uint8_t(mean_up(a, b));
      Y[here] = uint8_t(mean_up(a, c));
      XY[here] = uint8_t((a + b + c + e + 2) >> 2);
    }
  return PQX_OK;
}

constexpr uint8_t own_weights[8][8] = {{4, 5, 5, 5, 5, 5, 5, 4}, {5, 5, 5, 5, 5, 5, 5, 5}, {5, 5, 6, 6, 6, 6, 5, 5},
                                       {5, 5, 6, 6, 6, 6, 5, 5}, {5, 5, 6, 6, 6, 6, 5, 5}, {5, 5, 6, 6, 6, 6, 5, 5},
                                       {5, 5, 5, 5, 5, 5, 5, 5}, {4, 5, 5, 5, 5, 5, 5, 4}};
constexpr uint8_t vertical_weights[8][8] = {
    {2, 2, 2, 2, 2, 2, 2, 2}, {1, 1, 2, 2, 2, 2, 1, 1}, {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 2, 2, 2, 2, 1, 1}, {2, 2, 2, 2, 2, 2, 2, 2}};
constexpr uint8_t horizontal_weights[8][8] = {
    {2, 1, 1, 1, 1, 1, 1, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2},
    {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 1, 1, 1, 1, 1, 1, 2}};

/// The predictions around a block, in the order of the arguments: its own, above, below, left, right.
template <class T>
pqx_Status overlapped(const uint8_t* ref, int step, const int (&position)[5][2], T* dst, int64_t dst_step) {
  const uint8_t* at[5];
  for (int k = 0; k < 5; ++k) at[k] = ref + int32_t(uint32_t(position[k][1]) * uint32_t(step)) + position[k][0];
  for (int r = 0; r < 8; ++r, dst += dst_step) {
    const int64_t row = 2 * r * int64_t(step);
    const uint8_t *own = at[0] + row, *vertical = at[r < 4 ? 1 : 2] + row;
    for (int c = 0; c < 8; ++c) {
      const uint8_t* horizontal = at[c < 4 ? 3 : 4] + row;
      dst[c] = T((own_weights[r][c] * own[2 * c] + vertical_weights[r][c] * vertical[2 * c] +
                  horizontal_weights[r][c] * horizontal[2 * c] + 4) >>
                 3);
    }
  }
  return PQX_OK;
}

}  // namespace

pqx_Status CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return predict(pSrc, step, pDst, step, eight_or_sixteen(width), height, [](const uint8_t* p, int) { return *p; });
}
pqx_Status CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return predict(pSrc, step, pSrcDst, step, width & ~7, height,
                 [](const uint8_t* p, int d) { return mean_up(*p, d); });
}
pqx_Status CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  if (width < 2) return PQX_OK;
  AnyAddress16* dst = any_address(pDst);
  for (; height > 0; --height, pSrc += srcStep, dst += width)
    for (int x = 0; x + 1 < width; x += 2) {
      const int first = pSrc[x], second = pSrc[x + 1];
      dst[x] = AnyAddress16(first);
      dst[x + 1] = AnyAddress16(second);
    }
  return PQX_OK;
}

pqx_Status Average2NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step, uint8_t* pDst,
                            int dstStep, int width, int height) {
  return average(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, width, height,
                 [](int a, int b, int) { return mean_down(a, b); });
}
pqx_Status Average2Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step, uint8_t* pDst,
                          int dstStep, int width, int height) {
  return average(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, width, height,
                 [](int a, int b, int) { return mean_up(a, b); });
}
pqx_Status Average3NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step, uint8_t* pSrcDst,
                            int dstStep, int width, int height) {
  return average(pSrc1, src1Step, pSrc2, src2Step, pSrcDst, dstStep, width, height,
                 [](int a, int b, int d) { return mean_up(mean_down(a, b), d); });
}
pqx_Status Average3Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step, uint8_t* pSrcDst,
                          int dstStep, int width, int height) {
  return average(pSrc1, src1Step, pSrc2, src2Step, pSrcDst, dstStep, width, height,
                 [](int a, int b, int d) { return mean_up(mean_up(a, b), d); });
}

pqx_Status AddBlock_16S_8U_I(const int16_t* pSrc, uint8_t* pSrcDst, int step) {
  const AnyAddress16* residuals = any_address(pSrc);
  for (int64_t y = 0; y < 8; ++y)
    for (int64_t x = 0; x < 8; ++x) {
      uint8_t& d = pSrcDst[y * step + x];
      const int sum = residuals[8 * y + x] + d;
      d = uint8_t(sum < 0 ? 0 : sum > 255 ? 255 : sum);
    }
  return PQX_OK;
}

pqx_Status InterpX_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return predict(pSrc, step, pDst, step, width & ~7, height, [](const uint8_t* p, int) { return pair(p, 1); });
}
pqx_Status InterpY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, step, pDst, step, width & ~3, height, [=](const uint8_t* p, int) { return pair(p, srcStep); });
}
pqx_Status InterpXY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, step, pDst, step, width & ~3, height,
                 [=](const uint8_t* p, int) { return square(p, srcStep); });
}
pqx_Status InterpAveX_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return predict(pSrc, step, pSrcDst, step, width & ~3, height,
                 [](const uint8_t* p, int d) { return pair_and(d, p, 1); });
}
pqx_Status InterpAveY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, step, pSrcDst, step, width & ~3, height,
                 [=](const uint8_t* p, int d) { return pair_and(d, p, srcStep); });
}
pqx_Status InterpAveXY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, step, pSrcDst, step, width & ~3, height,
                 [=](const uint8_t* p, int d) { return square_and(d, p, srcStep); });
}

pqx_Status InterpX_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  const int columns = eight_or_sixteen(width);
  return predict(pSrc, srcStep, any_address(pDst), columns, columns, height,
                 [](const uint8_t* p, int) { return pair(p, 1); });
}
pqx_Status InterpY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width, int height) {
  const int columns = eight_or_sixteen(width);
  return predict(pSrc, step, any_address(pDst), columns, columns, height,
                 [=](const uint8_t* p, int) { return pair(p, srcStep); });
}
pqx_Status InterpXY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width, int height) {
  const int columns = eight_or_sixteen(width);
  return predict(pSrc, step, any_address(pDst), columns, columns, height,
                 [=](const uint8_t* p, int) { return square(p, srcStep); });
}

pqx_Status InterpX_Y_XY_8U(const uint8_t* pSrc, int step, int width, int height, uint8_t* pDstX, uint8_t* pDstY,
                           uint8_t* pDstXY) {
  return interpolate_three(pSrc, pDstX, pDstY, pDstXY, step, width, height);
}
pqx_Status InterpX_Y_XY_8U_w16(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY, int step,
                               int height) {
  return interpolate_three(pSrc, pDstX, pDstY, pDstXY, step, 16, height);
}
pqx_Status InterpX_Y_XY_8U_comm(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY, int step,
                                int width, int height) {
  return interpolate_three(pSrc, pDstX, pDstY, pDstXY, step, width, height);
}

pqx_Status H263OverlappedMC_8U(const uint8_t* pRef, int refStep, uint8_t* pDst, int dstStep, int curX, int curY,
                               int aboveX, int aboveY, int belowX, int belowY, int leftX, int leftY, int rightX,
                               int rightY) {
  return overlapped(pRef, refStep,
                    {{curX, curY}, {aboveX, aboveY}, {belowX, belowY}, {leftX, leftY}, {rightX, rightY}}, pDst,
                    dstStep);
}
pqx_Status H263OverlappedMC_8U_16S(const uint8_t* pRef, int refStep, int16_t* pDst, int curX, int curY, int aboveX,
                                   int aboveY, int belowX, int belowY, int leftX, int leftY, int rightX, int rightY) {
  return overlapped(pRef, refStep,
                    {{curX, curY}, {aboveX, aboveY}, {belowX, belowY}, {leftX, leftY}, {rightX, rightY}},
                    any_address(pDst), 8);
}

uint32_t SumAbsDiff_8U(const uint8_t* pSrc1, const uint8_t* pSrc2, int step, int width, int height) {
  uint32_t sum = 0;
  const int64_t columns = width < 1 ? 0 : (int64_t(width) + 7) / 8 * 8;
  if (columns > 0)
    for (; height > 0; --height, pSrc1 += step, pSrc2 += step)
      for (int64_t x = 0; x < columns; ++x) sum += uint32_t(abs(pSrc1[x] - pSrc2[x]));
  return sum;
}

}  // namespace plain
