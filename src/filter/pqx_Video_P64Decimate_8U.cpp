#include "common/export.h"
#include "common/lanes.h"
#include "common/overlap.h"
#include "common/walk.h"

namespace pqx {
namespace {

// Sums are at most 4 * 255 + 2: means fit their bytes.
template <class Load>
i16x8 means(Load pairs, const uint8_t* upper, const uint8_t* lower) {
  const u8x16 a = pairs(upper), b = pairs(lower);
  return as_signed((even_bytes(a) + odd_bytes(a) + (even_bytes(b) + odd_bytes(b)) + all_u16(2)) >> 2);
}

void halve_rows(const uint8_t* upper, const uint8_t* lower, uint8_t* dst, int64_t width) {
  if (width >= shortest_covered<uint8_t> && apart(upper, 2 * width, dst, width) &&
      apart(lower, 2 * width, dst, width)) {
    cover_row<uint8_t>(width, [=]<int bytes>(int64_t x) {
      const uint8_t *a = upper + 2 * x, *b = lower + 2 * x;
      if constexpr (bytes == 16) {
        prefetch_ahead(a, b, dst + x);
        store(dst + x, pack(means(load<u8x16>, a, b), means(load<u8x16>, a + 16, b + 16)));
      } else if constexpr (bytes == 8) {
        const i16x8 eight = means(load<u8x16>, a, b);
        store_half(dst + x, pack(eight, eight));
      } else {
        const i16x8 four = means(load_half<u8x16>, a, b);
        store_one(dst + x, _mm_cvtsi128_si32(pack(four, four).v));
      }
    });
    return;
  }
  for (int64_t x = 0; x < width; ++x)
    dst[x] = uint8_t((upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1] + 2) >> 2);
}

}  // namespace
}  // namespace pqx

pqx_Status pqx_Video_P64Decimate_8U(const uint8_t* pSrc, int srcStep, uint8_t* pDst, int dstStep, int width,
                                    int height) {
  if (width <= 0) return PQX_OK;
  for (; height > 0; --height, pSrc += 2 * int64_t(srcStep), pDst += dstStep)
    pqx::halve_rows(pSrc, pSrc + srcStep, pDst, width);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_P64Decimate_8U);
