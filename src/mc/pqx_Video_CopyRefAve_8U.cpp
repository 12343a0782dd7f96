#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  using namespace pqx::mc;
  if (width == height) {
    if (width == 16 && Average::suits(pSrcDst, step)) [[likely]]
      return predict<16, Whole, Average::Rows>(pSrc, 0, step, pSrcDst, step, Fours(16));
    if (width == 8) return predict<8, Whole, Average>(pSrc, 0, step, pSrcDst, step, Eight());
  }
  return copy_any<Average>(pSrc, pSrcDst, step, width & ~7, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRefAve_8U);
