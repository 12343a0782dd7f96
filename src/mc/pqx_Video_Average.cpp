#include "common/export.h"
#include "mc/pieces.h"

namespace pqx::mc {
namespace {

using pqx::mean_down;
uint8_t mean_down(uint8_t a, uint8_t b) { return uint8_t((a + b) >> 1); }

struct Blocks {
  const uint8_t *a, *b;
  uint8_t* d;
  int64_t a_step, b_step, d_step;

  void next_row() { a += a_step, b += b_step, d += d_step; }
};

template <int n, class Rule>
void average_rows(Blocks at, int height, Rule rule) {
  for (int64_t row = 0; row < height; row += 4)
    for (int k = 0; k < 4; ++k, at.next_row())
      store_piece<n>(at.d, rule(load_piece<n>(at.a), load_piece<n>(at.b), load_piece<n>(at.d)));
}

template <class Rule>
pqx_Status average_in_order(Blocks at, int columns, int height, Rule rule) {
  for (int64_t row = 0; row < height; row += 4)
    for (int k = 0; k < 4; ++k, at.next_row())
      for (int x = 0; x < columns; ++x) at.d[x] = rule(at.a[x], at.b[x], at.d[x]);
  return PQX_OK;
}

/// d = rule(a, b, d) for every sample.
template <class Rule>
pqx_Status average(Blocks at, int width, int height, Rule rule) {
  // Rows that drift against those of a source in the same place write samples that are still to be read.
  if ((at.d == at.a && at.d_step != at.a_step) || (at.d == at.b && at.d_step != at.b_step))
    return average_in_order(at, width == 2 || width == 4 || width == 8 ? width : 16, height, rule);
  if (width == 8)
    average_rows<8>(at, height, rule);
  else if (width == 4)
    average_rows<4>(at, height, rule);
  else if (width == 2)
    average_rows<2>(at, height, rule);
  else
    average_rows<16>(at, height, rule);
  return PQX_OK;
}

}  // namespace
}  // namespace pqx::mc

pqx_Status pqx_Video_Average2NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                      uint8_t* pDst, int dstStep, int width, int height) {
  return pqx::mc::average({pSrc1, pSrc2, pDst, src1Step, src2Step, dstStep}, width, height,
                          [](auto a, auto b, auto) { return pqx::mc::mean_down(a, b); });
}
PQX_SECOND_NAME(pqx_Video_Average2NoRnd_8U);

pqx_Status pqx_Video_Average2Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                    uint8_t* pDst, int dstStep, int width, int height) {
  return pqx::mc::average({pSrc1, pSrc2, pDst, src1Step, src2Step, dstStep}, width, height,
                          [](auto a, auto b, auto) { return pqx::mc::mean_up(a, b); });
}
PQX_SECOND_NAME(pqx_Video_Average2Rnd_8U);

pqx_Status pqx_Video_Average3NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                      uint8_t* pSrcDst, int dstStep, int width, int height) {
  return pqx::mc::average({pSrc1, pSrc2, pSrcDst, src1Step, src2Step, dstStep}, width, height,
                          [](auto a, auto b, auto d) { return pqx::mc::mean_up(pqx::mc::mean_down(a, b), d); });
}
PQX_SECOND_NAME(pqx_Video_Average3NoRnd_8U);

pqx_Status pqx_Video_Average3Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                    uint8_t* pSrcDst, int dstStep, int width, int height) {
  return pqx::mc::average({pSrc1, pSrc2, pSrcDst, src1Step, src2Step, dstStep}, width, height,
                          [](auto a, auto b, auto d) { return pqx::mc::mean_up(pqx::mc::mean_up(a, b), d); });
}
PQX_SECOND_NAME(pqx_Video_Average3Rnd_8U);
