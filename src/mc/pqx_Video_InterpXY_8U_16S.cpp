#include "common/export.h"
#include "mc/into_packed_blocks.h"

pqx_Status pqx_Video_InterpXY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width,
                                     int height) {
  using namespace pqx::mc;
  return interpolate<InTurn, Square>(pSrc, pDst, srcStep, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpXY_8U_16S);
