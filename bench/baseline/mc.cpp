#include <stdlib.h>

#include <type_traits>

#include "any_address.h"
#include "baseline.h"

namespace baseline {
namespace {

using plain::any_address, plain::AnyAddress16;

int eight_or_sixteen(int width) { return width == 8 ? 8 : 16; }

/// The bytes from the lowest of a block to behind its highest.
struct Range {
  intptr_t low, high;

  Range(const void* first, int64_t step, int64_t row_bytes, int64_t rows) {
    const int64_t last = (rows - 1) * step;
    low = intptr_t(first) + (last < 0 ? last : 0);
    high = intptr_t(first) + (last > 0 ? last : 0) + row_bytes;
  }
  bool apart_from(Range other) const { return high <= other.low || other.high <= low; }
};

/// Calls f with the number of columns if it is one of the usual ones, else with 0.
template <class F>
void with_known_width(int64_t columns, F f) {
  if (columns == 16)
    f(std::integral_constant<int, 16>());
  else if (columns == 8)
    f(std::integral_constant<int, 8>());
  else
    f(std::integral_constant<int, 0>());
}

// A row as a loop that stays one until it is vectorized.
template <int known, class F>
[[gnu::always_inline]] inline void row(int64_t columns, F f) {
  const int64_t n = known ? known : columns;
#pragma GCC unroll 1
  for (int64_t x = 0; x < n; ++x) f(x);
}

// d = sample(s, d) for a pointer s and a value d, row after row; the second form where order is of no matter. The
// compiler forgets what it has been told of pointers when it dissolves a function in another.
template <class T, class Sample>
void predict_in_order(const uint8_t* s, int64_t step, T* d, int64_t d_step, int64_t columns, int64_t rows,
                      Sample sample) {
  for (; rows > 0; --rows, s += step, d += d_step) row<0>(columns, [=](int64_t x) { d[x] = T(sample(s + x, d[x])); });
}
template <int known, class T, class Sample>
[[gnu::noinline]] void predict_apart(const uint8_t* __restrict s, int64_t step, T* __restrict d, int64_t d_step,
                                     int64_t columns, int64_t rows, Sample sample) {
  for (; rows > 0; --rows, s += step, d += d_step)
    row<known>(columns, [=](int64_t x) { d[x] = T(sample(s + x, d[x])); });
}

/// Every sample of a block from those of the source in its place, to the right of it, `below` it and to the right of
/// that.
template <class T, class Sample>
pqx_Status predict(const uint8_t* src, int64_t below, int64_t step, T* dst, int64_t dst_step, int64_t columns,
                   int64_t rows, Sample sample) {
  if (columns < 1 || rows < 1) return PQX_OK;
  const Range to(dst, dst_step * int64_t(sizeof(T)), columns * int64_t(sizeof(T)), rows);
  if (to.apart_from(Range(src, step, columns + 1, rows)) &&
      to.apart_from(Range(src + below, step, columns + 1, rows)))
    with_known_width(columns,
                     [&](auto known) { predict_apart<known>(src, step, dst, dst_step, columns, rows, sample); });
  else
    predict_in_order(src, step, dst, dst_step, columns, rows, sample);
  return PQX_OK;
}

int mean_down(int a, int b) { return (a + b) >> 1; }
int mean_up(int a, int b) { return (a + b + 1) >> 1; }

// d = sample(a, b, d) for every sample.
template <class Sample>
void average_in_order(const uint8_t* a, int64_t a_step, const uint8_t* b, int64_t b_step, uint8_t* d, int64_t d_step,
                      int64_t columns, int64_t rows, Sample sample) {
  for (; rows > 0; --rows, a += a_step, b += b_step, d += d_step)
    row<0>(columns, [=](int64_t x) { d[x] = uint8_t(sample(a[x], b[x], d[x])); });
}
template <int known, class Sample>
[[gnu::noinline]] void average_apart(const uint8_t* __restrict a, int64_t a_step, const uint8_t* __restrict b,
                                     int64_t b_step, uint8_t* __restrict d, int64_t d_step, int64_t columns,
                                     int64_t rows, Sample sample) {
  for (; rows > 0; --rows, a += a_step, b += b_step, d += d_step)
    row<known>(columns, [=](int64_t x) { d[x] = uint8_t(sample(a[x], b[x], d[x])); });
}

/// In bands of four rows.
template <class Sample>
pqx_Status average(const uint8_t* a, int64_t a_step, const uint8_t* b, int64_t b_step, uint8_t* d, int64_t d_step,
                   int width, int height, Sample sample) {
  if (height < 1) return PQX_OK;
  const int64_t rows = (int64_t(height) + 3) / 4 * 4, columns = width == 2 || width == 4 || width == 8 ? width : 16;
  const Range to(d, d_step, columns, rows);
  if (to.apart_from(Range(a, a_step, columns, rows)) && to.apart_from(Range(b, b_step, columns, rows)))
    with_known_width(
        columns, [&](auto known) { average_apart<known>(a, a_step, b, b_step, d, d_step, columns, rows, sample); });
  else
    average_in_order(a, a_step, b, b_step, d, d_step, columns, rows, sample);
  return PQX_OK;
}

// Samples at half-sample positions, the last two averaged into d with one rounding.
int pair(const uint8_t* p, int64_t other) { return (p[0] + p[other] + 1) >> 1; }
int square(const uint8_t* p, int64_t below) { return (p[0] + p[1] + p[below] + p[below + 1] + 2) >> 2; }
int pair_and(int d, const uint8_t* p, int64_t other) { return (2 * d + p[0] + p[other] + 3) >> 2; }
int square_and(int d, const uint8_t* p, int64_t below) {
  return (4 * d + p[0] + p[1] + p[below] + p[below + 1] + 6) >> 3;
}

void three_rows(const uint8_t* __restrict a, const uint8_t* __restrict c, uint8_t* __restrict X,
                uint8_t* __restrict Y, uint8_t* __restrict XY, int64_t last) {
  for (int64_t x = 0; x < last; ++x) {
    X[x] = uint8_t((a[x] + a[x + 1] + 1) >> 1);
    Y[x] = uint8_t((a[x] + c[x] + 1) >> 1);
    XY[x] = uint8_t((a[x] + a[x + 1] + c[x] + c[x + 1] + 2) >> 2);
  }
  X[last] = a[last];
  Y[last] = XY[last] = uint8_t((a[last] + c[last] + 1) >> 1);
}

pqx_Status interpolate_three(const uint8_t* src, uint8_t* X, uint8_t* Y, uint8_t* XY, int64_t step, int width,
                             int height) {
  for (int64_t y = 0; y == 0 || y < height; ++y)
    three_rows(src + y * step, src + (y + 1 < height ? y + 1 : y) * step, X + y * step, Y + y * step, XY + y * step,
               width - 1);
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
[[gnu::noinline]] pqx_Status overlapped(const uint8_t* __restrict ref, int step, const int (&position)[5][2],
                                        T* __restrict dst, int64_t dst_step) {
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

template <int known>
[[gnu::noinline]] uint32_t sum_of_differences(const uint8_t* a, const uint8_t* b, int64_t step, int64_t columns,
                                              int height) {
  uint32_t sum = 0;
  for (; height > 0; --height, a += step, b += step)
    row<known>(columns, [&](int64_t x) { sum += uint32_t(abs(a[x] - b[x])); });
  return sum;
}

}  // namespace

pqx_Status CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return predict(pSrc, 0, step, pDst, step, eight_or_sixteen(width), height,
                 [](const uint8_t* p, int) { return *p; });
}
pqx_Status CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return predict(pSrc, 0, step, pSrcDst, step, width & ~7, height,
                 [](const uint8_t* p, int d) { return mean_up(*p, d); });
}
pqx_Status CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  const int64_t columns = width & ~1;
  if (columns < 1 || height < 1) return PQX_OK;
  if (Range(pSrc, srcStep, columns, height).apart_from(Range(pDst, 2 * int64_t(width), 2 * columns, height)))
    return predict(pSrc, 0, srcStep, any_address(pDst), width, columns, height,
                   [](const uint8_t* p, int) { return *p; });
  for (int64_t y = 0; y < height; ++y)
    for (int64_t x = 0; x < columns; x += 2) {
      const int first = pSrc[y * srcStep + x], second = pSrc[y * srcStep + x + 1];
      any_address(pDst)[y * width + x] = AnyAddress16(first);
      any_address(pDst)[y * width + x + 1] = AnyAddress16(second);
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
  return predict(pSrc, 0, step, pDst, step, width & ~7, height, [](const uint8_t* p, int) { return pair(p, 1); });
}
pqx_Status InterpY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, srcStep, step, pDst, step, width & ~3, height,
                 [=](const uint8_t* p, int) { return pair(p, srcStep); });
}
pqx_Status InterpXY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, srcStep, step, pDst, step, width & ~3, height,
                 [=](const uint8_t* p, int) { return square(p, srcStep); });
}
pqx_Status InterpAveX_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return predict(pSrc, 0, step, pSrcDst, step, width & ~3, height,
                 [](const uint8_t* p, int d) { return pair_and(d, p, 1); });
}
pqx_Status InterpAveY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, srcStep, step, pSrcDst, step, width & ~3, height,
                 [=](const uint8_t* p, int d) { return pair_and(d, p, srcStep); });
}
pqx_Status InterpAveXY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width, int height) {
  return predict(pSrc, srcStep, step, pSrcDst, step, width & ~3, height,
                 [=](const uint8_t* p, int d) { return square_and(d, p, srcStep); });
}

pqx_Status InterpX_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  const int columns = eight_or_sixteen(width);
  return predict(pSrc, 0, srcStep, any_address(pDst), columns, columns, height,
                 [](const uint8_t* p, int) { return pair(p, 1); });
}
pqx_Status InterpY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width, int height) {
  const int columns = eight_or_sixteen(width);
  return predict(pSrc, srcStep, step, any_address(pDst), columns, columns, height,
                 [=](const uint8_t* p, int) { return pair(p, srcStep); });
}
pqx_Status InterpXY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width, int height) {
  const int columns = eight_or_sixteen(width);
  return predict(pSrc, srcStep, step, any_address(pDst), columns, columns, height,
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
  with_known_width(columns,
                   [&](auto known) { sum = sum_of_differences<known>(pSrc1, pSrc2, step, columns, height); });
  return sum;
}

}  // namespace baseline
