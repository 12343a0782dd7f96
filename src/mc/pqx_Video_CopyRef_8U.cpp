#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  return pqx::mc::predict<pqx::mc::Whole, pqx::mc::Put>(pSrc, 0, step, pDst, step, width == 8 ? 8 : 16, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRef_8U);
