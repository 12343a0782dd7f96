#include "common/export.h"
#include "dct/inverse_fast_8x8.h"

namespace pqx::dct {
namespace {

/// The upper half of the last column after its pass over coefficient 63 alone; the lower half mirrors it with the sign
/// changed.
struct LastColumn {
  double y0, y1, y2, y3;

  constexpr explicit LastColumn(int coefficient)
      : y0(coefficient * 0.09754516100806417), y3(coefficient * -0.4903926402016152) {
    constexpr double root = 0.7071067811865476;
    y1 = root * y3 + y0 * root;
    y2 = y0 * root - root * y3;
  }
};
// A coefficient of 1 meets the cosines themselves, each rounded once.
constexpr LastColumn unit(1);
static_assert(unit.y0 == 0.09754516100806417 && unit.y1 == -0.2777851165098011 && unit.y2 == 0.4157348061512727 &&
              unit.y3 == -0.4903926402016152);

pqx_Status inverse_of_quarter_and_last(const int16_t* src, Residuals output) {
  const LastColumn last(load_one<int16_t>(src + 63));
  const f64x2 last_rows[] = {{_mm_setr_pd(last.y0, last.y1)},
                             {_mm_setr_pd(last.y2, last.y3)},
                             {_mm_setr_pd(-last.y3, -last.y2)},
                             {_mm_setr_pd(-last.y1, -last.y0)}};
  Lines<f64x2> pair[2];
  load_column_pairs<4, 4>(src, Residuals::dc_bias, pair);
  for (Lines<f64x2>& two : pair) two = inverse_pass<4>(inverse_cosines, two);
#pragma GCC unroll 4
  for (int y = 0; y < 8; y += 2) {
    const Lines<f64x2> x = row_pair<4>(pair, y);
    const Lines<f64x2> z =
        inverse_pass(inverse_cosines, x.at[0], x.at[1], x.at[2], x.at[3], Zero(), Zero(), Zero(), last_rows[y / 2]);
    i32x4 result[8];
#pragma GCC unroll 8
    for (int k = 0; k < 8; ++k) result[k] = Residuals::truncated(z.at[k]);
    output.put_two_rows(y, result);
  }
  return PQX_OK;
}

}  // namespace
}  // namespace pqx::dct

pqx_Status pqx_Video_DCT8x8Inv_1Q_Mismatch_16S(const int16_t* pSrc, int16_t* pDst) {
  using namespace pqx::dct;
  if (pqx::load_one<int16_t>(pSrc + 63) == 0) return inverse_of_corner<4, 4>(pSrc, Residuals{pDst});
  return inverse_of_quarter_and_last(pSrc, Residuals{pDst});
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Inv_1Q_Mismatch_16S);
