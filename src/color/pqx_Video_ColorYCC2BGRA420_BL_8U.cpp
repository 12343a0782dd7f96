#include "color/ycc420_bilinear.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYCC2BGRA420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA,
                                            const uint8_t* pCrA, const uint8_t* pCbB, const uint8_t* pCrB,
                                            const uint8_t* pCbC, const uint8_t* pCrC, uint8_t* pDst0, uint8_t* pDst1,
                                            int len) {
  return pqx::ycc::convert_420_linear(__pqx_Video_ColorYCC2BGRA444_8U, pY0, pY1, {pCbA, pCbB, pCbC},
                                      {pCrA, pCrB, pCrC}, pDst0, pDst1, len);
}
PQX_SECOND_NAME(pqx_Video_ColorYCC2BGRA420_BL_8U);
