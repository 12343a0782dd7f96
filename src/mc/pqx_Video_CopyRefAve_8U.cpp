#include "common/export.h"
#include "mc/into_pictures.h"

pqx_Status pqx_Video_CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  using namespace pqx::mc;
  if (height < 1) return PQX_OK;
  if (width == 16) return predict<16, Beside, Whole, Average>(pSrc, pSrcDst, 0, step, height);
  if (width == 8) return predict<8, Beside, Whole, Average>(pSrc, pSrcDst, 0, step, height);
  return predict_any<8, Whole, Average>(pSrc, pSrcDst, 0, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRefAve_8U);
