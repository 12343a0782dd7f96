#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  using namespace pqx::mc;
  if (width == 8 && height == 8) return predict<8, Whole, Put>(pSrc, 0, step, pDst, step, Eight());
  if (height < 1 || height % 4 != 0) [[unlikely]]
    return copy_any<Put>(pSrc, pDst, step, width == 8 ? 8 : 16, height);
  if (width == 8) return predict<8, Whole, Put>(pSrc, 0, step, pDst, step, Fours(unsigned(height)));
  return predict<16, Whole, Put>(pSrc, 0, step, pDst, step, Fours(unsigned(height)));
}
PQX_SECOND_NAME(pqx_Video_CopyRef_8U);
