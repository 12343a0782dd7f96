#include "common/export.h"
#include "mc/into_pictures.h"

pqx_Status pqx_Video_InterpAveX_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height) {
  using namespace pqx::mc;
  return interpolate<4, Beside, Pair, Average>(pSrc, pSrcDst, 1, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpAveX_8U);
