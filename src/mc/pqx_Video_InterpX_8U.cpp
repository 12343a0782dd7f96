#include "common/export.h"
#include "mc/into_pictures.h"

pqx_Status pqx_Video_InterpX_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height) {
  using namespace pqx::mc;
  return interpolate<8, Beside, Pair, Put>(pSrc, pDst, 1, step, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpX_8U);
