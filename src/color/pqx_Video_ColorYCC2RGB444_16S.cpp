#include "color/ycc_to_rgb_12_bit.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorYCC2RGB444_16S(const int16_t* pY, const int16_t* pCb, const int16_t* pCr, int16_t* pDst,
                                         int len) {
  return pqx::ycc::convert_444_12_bit(pY, pCb, pCr, pDst, len);
}
PQX_SECOND_NAME(pqx_Video_ColorYCC2RGB444_16S);
