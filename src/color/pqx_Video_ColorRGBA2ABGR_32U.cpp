#include "common/calls.h"
#include "common/export.h"

pqx_Status pqx_Video_ColorRGBA2ABGR_32U(const uint32_t* pSrc, int srcStep, uint32_t* pDst, int dstStep, int width,
                                        int height) {
  if (width <= 0 || height <= 0) return PQX_OK;
  auto* const src = reinterpret_cast<const char*>(pSrc);
  auto* const dst = reinterpret_cast<char*>(pDst);
  const auto swap = [](const char* from, char* to, int64_t pixels) {
    __pqx_Vector_SwapByte_32S(reinterpret_cast<const int32_t*>(from), reinterpret_cast<int32_t*>(to),
                              int32_t(pixels));
  };
  const int64_t pixels = int64_t(width) * height;
  if (srcStep == width && width == dstStep && pixels <= INT32_MAX) {
    swap(src, dst, pixels);
    return PQX_OK;
  }
  for (int64_t row = 0; row < height; ++row) swap(src + row * srcStep * 4, dst + row * dstStep * 4, width);
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_ColorRGBA2ABGR_32U);
