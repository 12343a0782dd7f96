#include "color/interleave.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorMerge4_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, const uint8_t* pSrc2,
                                    const uint8_t* pSrc3, int len, uint8_t* pDst) {
  return pqx::merge(len, pDst, pSrc0, pSrc1, pSrc2, pSrc3);
}
PQX_SECOND_NAME(pqx_Video_ColorMerge4_8U);
