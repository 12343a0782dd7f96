#include "common/export.h"
#include "mc/row_loop.h"

namespace pqx::mc {
namespace {

struct MeanUp {
  static u8x16 of(u8x16 a, u8x16 b) { return mean_up(a, b); }
};
struct MeanDown {
  /// What is rounded up in the complement is rounded down.
  static u8x16 of(u8x16 a, u8x16 b) {
    const u8x16 ones = all_u8(255);
    return mean_up(a ^ ones, b ^ ones) ^ ones;
  }
};

/// A source of means of two pictures.
template <int n, class Mean>
struct Means {
  OwnRows<const uint8_t> a, b;

  [[gnu::always_inline]] u8x16 row(int k) const {
    return Mean::of(loaded_once(load_samples<n>(a.at(k))), loaded_once(load_samples<n>(b.at(k))));
  }
  [[gnu::always_inline]] void leave(int k) { a.leave(k), b.leave(k); }
};

/// n columns in bands of four rows.
template <int n, class Mean, template <int, class> class Sink>
[[gnu::always_inline]] inline pqx_Status average_rows(const uint8_t* a, int64_t a_step, const uint8_t* b,
                                                      int64_t b_step, uint8_t* d, int64_t d_step, int height) {
  if (height < 1) return PQX_OK;
  const unsigned rows = (unsigned(height) + 3) & ~3u;
  return each_row<n>(Means<n, Mean>{{{a, a_step}}, {{b, b_step}}}, Sink<n, OwnRows<uint8_t>>{{{d, d_step}}}, rows);
}

/// Rows that drift against those of a source in the same place write samples that are still to be read.
template <class Mean, template <int, class> class Sink>
[[gnu::noinline]] pqx_Status average_in_order(const uint8_t* a, int a_step, const uint8_t* b, int b_step, uint8_t* d,
                                              int d_step, int width, int height) {
  const int columns = width == 2 || width == 4 || width == 8 ? width : 16;
  for (int64_t y = 0; y < height || y % 4 != 0; ++y, a += a_step, b += b_step, d += d_step)
    for (int x = 0; x < columns; ++x)
      each_row(Means<1, Mean>{{{a + x, 0}}, {{b + x, 0}}}, Sink<1, OwnRows<uint8_t>>{{{d + x, 0}}}, 1);
  return PQX_OK;
}

template <class Mean, template <int, class> class Sink>
[[gnu::always_inline]] inline pqx_Status average(const uint8_t* a, int a_step, const uint8_t* b, int b_step,
                                                 uint8_t* d, int d_step, int width, int height) {
  if ((d == a && d_step != a_step) || (d == b && d_step != b_step)) [[unlikely]]
    return average_in_order<Mean, Sink>(a, a_step, b, b_step, d, d_step, width, height);
  if (width == 8) return average_rows<8, Mean, Sink>(a, a_step, b, b_step, d, d_step, height);
  if (width == 4) return average_rows<4, Mean, Sink>(a, a_step, b, b_step, d, d_step, height);
  if (width == 2) return average_rows<2, Mean, Sink>(a, a_step, b, b_step, d, d_step, height);
  return average_rows<16, Mean, Sink>(a, a_step, b, b_step, d, d_step, height);
}

}  // namespace
}  // namespace pqx::mc

using namespace pqx::mc;

pqx_Status pqx_Video_Average2NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                      uint8_t* pDst, int dstStep, int width, int height) {
  return average<MeanDown, Put>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average2NoRnd_8U);

pqx_Status pqx_Video_Average2Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                    uint8_t* pDst, int dstStep, int width, int height) {
  return average<MeanUp, Put>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average2Rnd_8U);

pqx_Status pqx_Video_Average3NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                      uint8_t* pSrcDst, int dstStep, int width, int height) {
  return average<MeanDown, Average>(pSrc1, src1Step, pSrc2, src2Step, pSrcDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average3NoRnd_8U);

pqx_Status pqx_Video_Average3Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                    uint8_t* pSrcDst, int dstStep, int width, int height) {
  return average<MeanUp, Average>(pSrc1, src1Step, pSrc2, src2Step, pSrcDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average3Rnd_8U);
