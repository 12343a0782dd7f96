#include "common/export.h"
#include "common/lanes.h"
#include "common/rows.h"

namespace pqx {
namespace {

u16x8 pair_sums(const uint8_t* row) {
  const auto s = load<u8x16>(row);
  return even_bytes(s) + odd_bytes(s);
}
i16x8 means(const uint8_t* upper, const uint8_t* lower) {
  return as_signed((pair_sums(upper) + pair_sums(lower) + all_u16(2)) >> 2);
}

void halve_rows(const uint8_t* upper, const uint8_t* lower, uint8_t* dst, int64_t width) {
  int64_t x = 0;
  if (disjoint(upper, 2 * width, dst, width) && disjoint(lower, 2 * width, dst, width))
    for (; x + 16 <= width; x += 16)
      store(dst + x, pack(means(upper + 2 * x, lower + 2 * x), means(upper + 2 * x + 16, lower + 2 * x + 16)));
  for (; x < width; ++x)
    dst[x] = uint8_t((upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1] + 2) >> 2);
}

}  // namespace
}  // namespace pqx

pqx_Status pqx_Video_P64Decimate_8U(const uint8_t* pSrc, int srcStep, uint8_t* pDst, int dstStep, int width,
                                    int height) {
  for (; height > 0; --height, pSrc += 2 * int64_t(srcStep), pDst += dstStep)
    pqx::halve_rows(pSrc, pSrc + srcStep, pDst, width);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_P64Decimate_8U);
