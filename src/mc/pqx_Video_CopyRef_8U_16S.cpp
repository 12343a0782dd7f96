#include "common/export.h"
#include "mc/overlap.h"
#include "mc/pieces.h"

pqx_Status pqx_Video_CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  using namespace pqx::mc;
  const int64_t pairs = width >> 1;
  if (pairs < 1 || height < 1) return PQX_OK;
  const bool apart =
      disjoint(extent(pSrc, srcStep, 2 * pairs, height), extent(pDst, 2 * int64_t(width), 4 * pairs, height));
  for (; height > 0; --height, pSrc += srcStep, pDst += width) {
    int64_t x = 0;
    if (apart) {
      in_pieces(2 * pairs, [=](auto n, int64_t first) { store_piece<n>(pDst + first, load_piece<n>(pSrc + first)); });
      x = pairs / 2 * 4;
    }
    for (; x < 2 * pairs; x += 2) {
      const int16_t first = pSrc[x], second = pSrc[x + 1];
      pqx::store_one(pDst + x, first);
      pqx::store_one(pDst + x + 1, second);
    }
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_CopyRef_8U_16S);
