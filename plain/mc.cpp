#include <stdlib.h>

#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

// Calls f(row, column) for every sample, row after row.
template <class F>
pqx_Status for_block(int columns, int rows, F f) {
  for (int64_t y = 0; y < rows; ++y)
    for (int64_t x = 0; x < columns; ++x) f(y, x);
  return PQX_OK;
}

int eight_or_sixteen(int width) { return width == 8 ? 8 : 16; }

int mean_down(int a, int b) { return (a + b) >> 1; }
int mean_up(int a, int b) { return (a + b + 1) >> 1; }

/// d = sample(a, b, d) in bands of four rows.
template <class Sample>
pqx_Status average(const uint8_t* a, int64_t a_step, const uint8_t* b, int64_t b_step, uint8_t* d, int64_t d_step,
                   int width, int height, Sample sample) {
  const int columns = width == 2 || width == 4 || width == 8 ? width : 16;
  for (int64_t y = 0; y < height; y += 4)
    for_block(columns, 4, [&](int64_t band_row, int64_t x) {
      const int64_t row = y + band_row;
      uint8_t& out = d[row * d_step + x];
      out = uint8_t(sample(a[row * a_step + x], b[row * b_step + x], out));
    });
  return PQX_OK;
}

// Samples at half-sample positions, the last two averaged into d with one rounding.
int pair(const uint8_t* p, int64_t other) { return (p[0] + p[other] + 1) >> 1; }
int square(const uint8_t* p, int64_t below) { return (p[0] + p[1] + p[below] + p[below + 1] + 2) >> 2; }
int pair_and(int d, const uint8_t* p, int64_t other) { return (2 * d + p[0] + p[other] + 3) >> 2; }
int square_and(int d, const uint8_t* p, int64_t below) {
  return (4 * d + p[0] + p[1] + p[below] + p[below + 1] + 6) >> 3;
}

template <class Sample>
pqx_Status interpolate(const uint8_t* src, uint8_t* dst, int64_t step, int columns, int height, Sample sample) {
  return for_block(columns, height, [&](int64_t y, int64_t x) {
    uint8_t& d = dst[y * step + x];
    d = uint8_t(sample(src + y * step + x, d));
  });
}

template <class Sample>
pqx_Status interpolate(const uint8_t* src, int64_t step, int16_t* dst, int columns, int height, Sample sample) {
  AnyAddress16* out = any_address(dst);
  return for_block(columns, height,
                   [&](int64_t y, int64_t x) { out[y * columns + x] = AnyAddress16(sample(src + y * step + x)); });
}

pqx_Status interpolate_three(const uint8_t* src, uint8_t* X, uint8_t* Y, uint8_t* XY, int64_t step, int width,
                             int height) {
  const int rows = height < 1 ? 1 : height;
  return for_block(width, rows, [&](int64_t y, int64_t x) {
    const int64_t at = y * step + x, right = x + 1 < width ? 1 : 0, below = y + 1 < rows ? step : 0;
    const int a = src[at], b = src[at + right], c = src[at + below], e = src[at + below + right];
    X[at] = uint8_t((a + b + 1) >> 1);
    Y[at] = uint8_t((a + c + 1) >> 1);
    XY[at] = uint8_t((a + b + c + e + 2) >> 2);
  });
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
template <class Put>
pqx_Status overlapped(const uint8_t* ref, int step, const int (&position)[5][2], Put put) {
  const uint8_t* origin[5];
  for (int k = 0; k < 5; ++k) origin[k] = ref + int32_t(uint32_t(position[k][1]) * uint32_t(step)) + position[k][0];
  return for_block(8, 8, [&](int64_t r, int64_t c) {
    const int64_t at = 2 * r * step + 2 * c;
    const int own = origin[0][at], vertical = origin[r < 4 ? 1 : 2][at], horizontal = origin[c < 4 ? 3 : 4][at];
    put(r, c,
        (own_weights[r][c] * own + vertical_weights[r][c] * vertical + horizontal_weights[r][c] * horizontal + 4) >>
            3);
  });
}

}  // namespace

pqx_Status CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return for_block(eight_or_sixteen(width), height,
                   [=](int64_t y, int64_t x) { pDst[y * step + x] = pSrc[y * step + x]; });
}
pqx_Status CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return for_block(width & ~7, height, [=](int64_t y, int64_t x) {
    pSrcDst[y * step + x] = uint8_t(mean_up(pSrc[y * step + x], pSrcDst[y * step + x]));
  });
}
pqx_Status CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  AnyAddress16* dst = any_address(pDst);
  return for_block(width >> 1, height, [=](int64_t y, int64_t pair) {
    const uint8_t* s = pSrc + y * srcStep + 2 * pair;
    const int first = s[0], second = s[1];
    dst[y * width + 2 * pair] = AnyAddress16(first);
    dst[y * width + 2 * pair + 1] = AnyAddress16(second);
  });
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
  return for_block(8, 8, [=](int64_t y, int64_t x) {
    uint8_t& d = pSrcDst[y * step + x];
    const int sum = residuals[8 * y + x] + d;
    d = uint8_t(sum < 0 ? 0 : sum > 255 ? 255 : sum);
  });
}

pqx_Status InterpX_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return interpolate(pSrc, pDst, step, width & ~7, height, [](const uint8_t* p, int) { return pair(p, 1); });
}
pqx_Status InterpY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return interpolate(pSrc, pDst, step, width & ~3, height, [=](const uint8_t* p, int) { return pair(p, srcStep); });
}
pqx_Status InterpXY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return interpolate(pSrc, pDst, step, width & ~3, height, [=](const uint8_t* p, int) { return square(p, srcStep); });
}
pqx_Status InterpAveX_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return interpolate(pSrc, pSrcDst, step, width & ~3, height,
                     [](const uint8_t* p, int d) { return pair_and(d, p, 1); });
}
pqx_Status InterpAveY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width, int height) {
  return interpolate(pSrc, pSrcDst, step, width & ~3, height,
                     [=](const uint8_t* p, int d) { return pair_and(d, p, srcStep); });
}
pqx_Status InterpAveXY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width, int height) {
  return interpolate(pSrc, pSrcDst, step, width & ~3, height,
                     [=](const uint8_t* p, int d) { return square_and(d, p, srcStep); });
}

pqx_Status InterpX_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  return interpolate(pSrc, srcStep, pDst, eight_or_sixteen(width), height,
                     [](const uint8_t* p) { return pair(p, 1); });
}
pqx_Status InterpY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width, int height) {
  return interpolate(pSrc, step, pDst, eight_or_sixteen(width), height,
                     [=](const uint8_t* p) { return pair(p, srcStep); });
}
pqx_Status InterpXY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width, int height) {
  return interpolate(pSrc, step, pDst, eight_or_sixteen(width), height,
                     [=](const uint8_t* p) { return square(p, srcStep); });
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
                    {{curX, curY}, {aboveX, aboveY}, {belowX, belowY}, {leftX, leftY}, {rightX, rightY}},
                    [=](int64_t r, int64_t c, int sample) { pDst[r * dstStep + c] = uint8_t(sample); });
}
pqx_Status H263OverlappedMC_8U_16S(const uint8_t* pRef, int refStep, int16_t* pDst, int curX, int curY, int aboveX,
                                   int aboveY, int belowX, int belowY, int leftX, int leftY, int rightX, int rightY) {
  AnyAddress16* dst = any_address(pDst);
  return overlapped(pRef, refStep,
                    {{curX, curY}, {aboveX, aboveY}, {belowX, belowY}, {leftX, leftY}, {rightX, rightY}},
                    [=](int64_t r, int64_t c, int sample) { dst[8 * r + c] = AnyAddress16(sample); });
}

uint32_t SumAbsDiff_8U(const uint8_t* pSrc1, const uint8_t* pSrc2, int step, int width, int height) {
  const int64_t columns = width < 1 ? 0 : (int64_t(width) + 7) / 8 * 8;
  uint32_t sum = 0;
  for (int64_t y = 0; y < height; ++y)
    for (int64_t x = 0; x < columns; ++x) sum += uint32_t(abs(pSrc1[y * step + x] - pSrc2[y * step + x]));
  return sum;
}

}  // namespace plain
