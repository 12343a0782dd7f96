#include "common/export.h"
#include "mc/three_planes.h"

pqx_Status pqx_Video_InterpX_Y_XY_8U(const uint8_t* pSrc, int step, int width, int height, uint8_t* pDstX,
                                     uint8_t* pDstY, uint8_t* pDstXY) {
  if (width == 16) return pqx_VideoInterpX_Y_XY_8U_w16(pSrc, pDstX, pDstY, pDstXY, step, height);
  if (width != 8) return pqx_VideoInterpX_Y_XY_8U_comm(pSrc, pDstX, pDstY, pDstXY, step, width, height);
  pqx::mc::interpolate_block<8>(pSrc, {pDstX, pDstY, pDstXY}, step, height);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_InterpX_Y_XY_8U);

pqx_Status pqx_VideoInterpX_Y_XY_8U_w16(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                        int step, int height) {
  pqx::mc::interpolate_block<16>(pSrc, {pDstX, pDstY, pDstXY}, step, height);
  return PQX_OK;
}

pqx_Status pqx_VideoInterpX_Y_XY_8U_comm(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                         int step, int width, int height) {
  using namespace pqx::mc;
  const Planes dst = {pDstX, pDstY, pDstXY};
  if (width < 4)
    interpolate_samples(pSrc, dst, step, width, height);
  else if (width == 16)
    interpolate_block<16>(pSrc, dst, step, height);
  else if (width == 8)
    interpolate_block<8>(pSrc, dst, step, height);
  else if (width == 4)
    interpolate_block<4>(pSrc, dst, step, height);
  else if (width > 16)
    interpolate_rows<16>(pSrc, dst, step, width, height);
  else if (width > 8)
    interpolate_rows<8>(pSrc, dst, step, width, height);
  else
    interpolate_rows<4>(pSrc, dst, step, width, height);
  return PQX_OK;
}
