#include "common/export.h"
#include "mc/into_packed_blocks.h"

pqx_Status pqx_Video_InterpX_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  using namespace pqx::mc;
  return interpolate<Beside, Pair>(pSrc, pDst, 1, srcStep, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpX_8U_16S);
