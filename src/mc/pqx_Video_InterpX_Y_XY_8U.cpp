#include "common/export.h"
#include "mc/three_planes.h"

pqx_Status pqx_Video_InterpX_Y_XY_8U(const uint8_t* pSrc, int step, int width, int height, uint8_t* pDstX,
                                     uint8_t* pDstY, uint8_t* pDstXY) {
  if (width == 16) return pqx_VideoInterpX_Y_XY_8U_w16(pSrc, pDstX, pDstY, pDstXY, step, height);
  if (width != 8) return pqx_VideoInterpX_Y_XY_8U_comm(pSrc, pDstX, pDstY, pDstXY, step, width, height);
  pqx::mc::interpolate_strip<8, pqx::mc::AtTheEnd>(pSrc, {pDstX, pDstY, pDstXY}, step, height);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_InterpX_Y_XY_8U);

pqx_Status pqx_VideoInterpX_Y_XY_8U_w16(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                        int step, int height) {
  pqx::mc::interpolate_strip<16, pqx::mc::AtTheEnd>(pSrc, {pDstX, pDstY, pDstXY}, step, height);
  return PQX_OK;
}

pqx_Status pqx_VideoInterpX_Y_XY_8U_comm(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                         int step, int width, int height) {
  using namespace pqx::mc;
  Planes dst = {pDstX, pDstY, pDstXY};
  if (width >= 16)
    interpolate_strips<16>(pSrc, dst, step, width, height);
  else if (width >= 8)
    interpolate_strips<8>(pSrc, dst, step, width, height);
  else if (width >= 4)
    interpolate_strips<4>(pSrc, dst, step, width, height);
  else
    for (;; --height, pSrc += step, dst = dst + step) {
      interpolate_samples(pSrc, height > 1 ? pSrc + step : pSrc, dst.x, dst.y, dst.xy, width - 1);
      if (height <= 1) break;
    }
  return PQX_OK;
}
