#include "common/export.h"
#include "mc/three_planes.h"

pqx_Status pqx_Video_InterpX_Y_XY_8U(const uint8_t* pSrc, int step, int width, int height, uint8_t* pDstX,
                                     uint8_t* pDstY, uint8_t* pDstXY) {
  if (width == 16) return pqx_VideoInterpX_Y_XY_8U_w16(pSrc, pDstX, pDstY, pDstXY, step, height);
  if (width != 8) return pqx_VideoInterpX_Y_XY_8U_comm(pSrc, pDstX, pDstY, pDstXY, step, width, height);
  return pqx::mc::interpolate_planes(pSrc, {pDstX, pDstY, pDstXY}, step, 8, height);
}
PQX_SECOND_NAME(pqx_Video_InterpX_Y_XY_8U);

pqx_Status pqx_VideoInterpX_Y_XY_8U_w16(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                        int step, int height) {
  return pqx::mc::interpolate_planes(pSrc, {pDstX, pDstY, pDstXY}, step, 16, height);
}

pqx_Status pqx_VideoInterpX_Y_XY_8U_comm(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                         int step, int width, int height) {
  return pqx::mc::interpolate_planes(pSrc, {pDstX, pDstY, pDstXY}, step, width, height);
}
