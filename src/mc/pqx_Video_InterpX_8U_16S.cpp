#include "common/export.h"
#include "mc/prediction.h"

pqx_Status pqx_Video_InterpX_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height) {
  return pqx::mc::interpolate_across(pSrc, srcStep, pDst, width, height);
}
PQX_SECOND_NAME(pqx_Video_InterpX_8U_16S);
