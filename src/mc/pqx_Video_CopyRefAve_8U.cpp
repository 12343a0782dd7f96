#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  using namespace pqx::mc;
  const int columns = width & ~7;
  if (comes_in_fours(height)) {
    if (columns == 16) return predict<16, Whole, Average>(pSrc, 0, step, pSrcDst, step, height);
    if (columns == 8) return predict<8, Whole, Average>(pSrc, 0, step, pSrcDst, step, height);
  }
  return copy_any<Average>(pSrc, step, pSrcDst, columns, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRefAve_8U);
