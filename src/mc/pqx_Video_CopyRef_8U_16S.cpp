#include "common/export.h"
#include "mc/into_packed_blocks.h"

pqx_Status pqx_Video_CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  using namespace pqx::mc;
  if (height < 1) return PQX_OK;
  if (width == 16 && clear_of<16>(pSrc, srcStep, pDst, height))
    return widen<16, Beside, Whole>(pSrc, pDst, 0, srcStep, height);
  if (width == 8 && clear_of<8>(pSrc, srcStep, pDst, height))
    return widen<8, Beside, Whole>(pSrc, pDst, 0, srcStep, height);
  if (width == 4 && clear_of<4>(pSrc, srcStep, pDst, height))
    return widen<4, Beside, Whole>(pSrc, pDst, 0, srcStep, height);
  return predict_any<2, Whole, Put>(pSrc, pDst, 0, srcStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_CopyRef_8U_16S);
