#include "common/export.h"
#include "common/lanes.h"
#include "pqx_video.h"

pqx_Status pqx_Video_ColorRGB2YCC444_16S(const int16_t* pSrc, int16_t* pY, int16_t* pCb, int16_t* pCr, int len) {
  int64_t i = 0;
  do {
    const int16_t* p = pSrc + 3 * i;
    const float r = pqx::load_one<int16_t>(p), g = pqx::load_one<int16_t>(p + 1), b = pqx::load_one<int16_t>(p + 2);
    pqx::store_one(pY + i, int16_t(int(r * 0.299f + g * 0.587f + b * 0.114f)));
    pqx::store_one(pCb + i, int16_t(int(r * -0.16874f - g * 0.33126f + b * 0.5f + 2048)));
    pqx::store_one(pCr + i, int16_t(int(r * 0.5f - g * 0.41869f - b * 0.08131f + 2048)));
  } while (++i < len);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_ColorRGB2YCC444_16S);
