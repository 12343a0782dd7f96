#include "common/export.h"
#include "mc/prediction.h"

namespace pqx::mc {
namespace {

[[gnu::noinline]] pqx_Status copy_pairs(const uint8_t* src, int step, int16_t* dst, int width, int height) {
  if (width < 2 || height < 1) return PQX_OK;
  const bool apart =
      disjoint(extent(src, step, width, height), extent(dst, 2 * int64_t(width), 2 * int64_t(width), height));
  if (apart && width % 4 == 0) return predict_any<Whole, Put>(src, 0, step, dst, width, width, height);
  const int64_t pairs = width >> 1;
  for (; height > 0; --height, src += step, dst += width) {
    int64_t x = 0;
    if (apart && pairs > 1) {
      in_pieces(2 * pairs, [=](auto n, int64_t first) { store_piece<n>(dst + first, load_piece<n>(src + first)); });
      x = pairs / 2 * 4;
    }
    for (; x < 2 * pairs; x += 2) {
      const int16_t first = src[x], second = src[x + 1];
      store_one(dst + x, first);
      store_one(dst + x + 1, second);
    }
  }
  return PQX_OK;
}

[[gnu::noinline]] pqx_Status copy_any(const uint8_t* src, int step, int16_t* dst, int width, int height) {
  if (width == 16 && clear_of<16>(src, step, dst, height))
    return predict_strip<16, Whole, Put>(src, 0, step, dst, 16, height);
  if (width == 8 && clear_of<8>(src, step, dst, height))
    return predict_strip<8, Whole, Put>(src, 0, step, dst, 8, height);
  return copy_pairs(src, step, dst, width, height);
}

}  // namespace
}  // namespace pqx::mc

pqx_Status pqx_Video_CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  using namespace pqx::mc;
  if (width == height) {
    if (width == 16 && clear_of<16>(pSrc, srcStep, pDst, 16)) [[likely]]
      return predict<16, Whole, Put>(pSrc, 0, srcStep, pDst, 16, Fours(16));
    if (width == 8 && clear_of<8>(pSrc, srcStep, pDst, 8))
      return predict<8, Whole, Put>(pSrc, 0, srcStep, pDst, 8, Eight());
  }
  return copy_any(pSrc, srcStep, pDst, width, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRef_8U_16S);
