#include "common/export.h"
#include "mc/into_pictures.h"

pqx_Status pqx_Video_CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  using namespace pqx::mc;
  if (height < 1) return PQX_OK;
  if (width == 8) return predict<8, Beside, Whole, Put>(pSrc, pDst, 0, step, height);
  return predict<16, Beside, Whole, Put>(pSrc, pDst, 0, step, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRef_8U);
