#include "common/export.h"
#include "mc/pieces.h"

namespace pqx::mc {
namespace {

struct MeanDown {
  static uint8_t of(uint8_t a, uint8_t b, uint8_t) { return uint8_t((a + b) >> 1); }
  /// What is rounded up in the complement is rounded down.
  static u8x16 of(u8x16 a, u8x16 b, u8x16) {
    const u8x16 ones = all_u8(255);
    return mean_up(a ^ ones, b ^ ones) ^ ones;
  }
};
struct MeanUp {
  static auto of(auto a, auto b, auto) { return mean_up(a, b); }
};
/// The first mean averaged into what stands there, in either form with exact halves upward.
template <class First>
struct AveragedIn {
  static auto of(auto a, auto b, auto d) { return mean_up(First::of(a, b, d), d); }
};

template <int n, class Rule>
[[gnu::always_inline]] inline u8x16 mean_of(const uint8_t* a, const uint8_t* b, const uint8_t* d) {
  return Rule::of(loaded_once(load_piece<n>(a)), loaded_once(load_piece<n>(b)), load_piece<n>(d));
}

/// n columns in bands of four rows.
template <int n, class Rule>
pqx_Status average_rows(const uint8_t* a, int64_t a_step, const uint8_t* b, int64_t b_step, uint8_t* d,
                        int64_t d_step, int64_t height) {
  const int64_t pairs = (height + 3) / 4 * 2;
  for (int64_t k = 0; k < pairs; ++k, a += 2 * a_step, b += 2 * b_step, d += 2 * d_step) {
    store_piece<n>(d, mean_of<n, Rule>(a, b, d));
    store_piece<n>(d + d_step, mean_of<n, Rule>(a + a_step, b + b_step, d + d_step));
  }
  return PQX_OK;
}
/// The same where all rows are as far apart.
template <int n, class Rule>
[[gnu::always_inline]] inline pqx_Status average_rows(const uint8_t* a, const uint8_t* b, uint8_t* d, int64_t step,
                                                      int height) {
  if (height < 1) return PQX_OK;
  Fours(unsigned(height) + 3)
      .each(
          [&](int k) __attribute__((always_inline)) {
            const int64_t first = k * step, second = first + step;
            const u8x16 upper = mean_of<n, Rule>(a + first, b + first, d + first);
            const u8x16 lower = mean_of<n, Rule>(a + second, b + second, d + second);
            store_piece<n>(d + first, upper);
            store_piece<n>(d + second, lower);
          },
          [&] { a += 4 * step, b += 4 * step, d += 4 * step; });
  return PQX_OK;
}

template <class Rule>
[[gnu::noinline]] pqx_Status average_any(const uint8_t* a, int a_step, const uint8_t* b, int b_step, uint8_t* d,
                                         int d_step, int width, int height) {
  // Rows that drift against those of a source in the same place write samples that are still to be read.
  if ((d == a && d_step != a_step) || (d == b && d_step != b_step)) {
    const int columns = width == 2 || width == 4 || width == 8 ? width : 16;
    for (int64_t y = 0; y < height || y % 4; ++y)
      for (int x = 0; x < columns; ++x) {
        uint8_t& out = d[y * d_step + x];
        out = Rule::of(a[y * a_step + x], b[y * b_step + x], out);
      }
    return PQX_OK;
  }
  if (width == 2) return average_rows<2, Rule>(a, a_step, b, b_step, d, d_step, height);
  if (width == 4) return average_rows<4, Rule>(a, a_step, b, b_step, d, d_step, height);
  if (width == 8) return average_rows<8, Rule>(a, a_step, b, b_step, d, d_step, height);
  return average_rows<16, Rule>(a, a_step, b, b_step, d, d_step, height);
}

/// d = Rule::of(a, b, d) for every sample.
template <class Rule>
[[gnu::always_inline]] inline pqx_Status average(const uint8_t* a, int a_step, const uint8_t* b, int b_step,
                                                 uint8_t* d, int d_step, int width, int height) {
  if (d_step == a_step && d_step == b_step) {
    if (width == 8) return average_rows<8, Rule>(a, b, d, d_step, height);
    if (width == 16) return average_rows<16, Rule>(a, b, d, d_step, height);
  }
  return average_any<Rule>(a, a_step, b, b_step, d, d_step, width, height);
}

}  // namespace
}  // namespace pqx::mc

pqx_Status pqx_Video_Average2NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                      uint8_t* pDst, int dstStep, int width, int height) {
  using namespace pqx::mc;
  return average<MeanDown>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average2NoRnd_8U);

pqx_Status pqx_Video_Average2Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                    uint8_t* pDst, int dstStep, int width, int height) {
  using namespace pqx::mc;
  return average<MeanUp>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average2Rnd_8U);

pqx_Status pqx_Video_Average3NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                      uint8_t* pSrcDst, int dstStep, int width, int height) {
  using namespace pqx::mc;
  return average<AveragedIn<MeanDown>>(pSrc1, src1Step, pSrc2, src2Step, pSrcDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average3NoRnd_8U);

pqx_Status pqx_Video_Average3Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                    uint8_t* pSrcDst, int dstStep, int width, int height) {
  using namespace pqx::mc;
  return average<AveragedIn<MeanUp>>(pSrc1, src1Step, pSrc2, src2Step, pSrcDst, dstStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_Average3Rnd_8U);
