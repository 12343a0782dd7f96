#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  return pqx::mc::predict<pqx::mc::Whole, pqx::mc::Average>(pSrc, 0, step, pSrcDst, step, width & ~7, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRefAve_8U);
