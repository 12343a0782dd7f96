#include "common/export.h"
#include "mc/pieces.h"

namespace pqx::mc {
namespace {

template <int n>
i32x4 difference(const uint8_t* a, const uint8_t* b) {
  return {_mm_sad_epu8(load_piece<n>(a).v, load_piece<n>(b).v)};
}

}  // namespace
}  // namespace pqx::mc

uint32_t pqx_Video_SumAbsDiff_8U(const uint8_t* pSrc1, const uint8_t* pSrc2, int step, int width, int height) {
  using namespace pqx::mc;
  if (width < 1 || height < 1) return 0;
  const int64_t columns = (int64_t(width) + 7) & ~7;
  pqx::i32x4 sum = {_mm_setzero_si128()};
  for (; height > 0; --height, pSrc1 += step, pSrc2 += step)
    in_pieces(columns, [&](auto n, int64_t x) { sum = sum + difference<n>(pSrc1 + x, pSrc2 + x); });
  return uint32_t(_mm_cvtsi128_si32((sum + pqx::i32x4{_mm_unpackhi_epi64(sum.v, sum.v)}).v));
}
PQX_SECOND_NAME(pqx_Video_SumAbsDiff_8U);
