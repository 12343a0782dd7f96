#include "common/calls.h"
#include "common/export.h"
#include "dct/forward_fast_8x8.h"

pqx_Status pqx_Video_DCT8x8Fwd_16S(const int16_t* pSrc, int16_t* pDst) {
  using namespace pqx;
  const auto load = [=] { return load_columns(pSrc); };
  store_block(pDst, dct::all_in_nine_bits(load_block(pSrc)) ? dct::forward_fast<dct::RoundResiduals>(load)
                                                            : dct::forward_typed(load()));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Fwd_16S);

pqx_Status pqx_Video_DCT8x8Fwd_12S_16S(const int16_t* pSrc, int16_t* pDst) {
  return __pqx_Video_DCT8x8Fwd_16S(pSrc, pDst);
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Fwd_12S_16S);

pqx_Status pqx_Video_DCT8x8Fwd_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst) {
  using namespace pqx;
  store_block(pDst, dct::forward_fast<dct::RoundPixels>([=] { return load_columns(pSrc, srcStep); }));
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_DCT8x8Fwd_8U_16S);
