#include <string.h>

#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

template <int r, int g, int b>
pqx_Status drop_alpha(const uint8_t* src, uint8_t* dst, int len) {
  for (int i = 0; i < len; ++i, src += 4, dst += 3) {
    const uint8_t pixel[] = {src[r], src[g], src[b]};
    memcpy(dst, pixel, sizeof pixel);
  }
  return PQX_OK;
}

template <int r, int g, int b>
pqx_Status add_alpha(const uint8_t* src, uint8_t* dst, int len) {
  for (int i = 0; i < len; ++i, src += 3, dst += 4) {
    dst[0] = 0;
    dst[r] = src[0];
    dst[g] = src[1];
    dst[b] = src[2];
  }
  return PQX_OK;
}

template <int bytes, int first, int second>
pqx_Status exchange(uint8_t* pixel, int len) {
  for (int i = 0; i < len; ++i, pixel += bytes) {
    const uint8_t value = pixel[first];
    pixel[first] = pixel[second];
    pixel[second] = value;
  }
  return PQX_OK;
}

}  // namespace

pqx_Status ColorABGR2RGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len) {
  return drop_alpha<3, 2, 1>(pSrc, pDst, len);
}
pqx_Status ColorARGB2RGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len) {
  return drop_alpha<1, 2, 3>(pSrc, pDst, len);
}
pqx_Status ColorRGB2ABGR_8U(const uint8_t* pSrc, uint8_t* pDst, int len) {
  return add_alpha<3, 2, 1>(pSrc, pDst, len);
}
pqx_Status ColorRGB2ARGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len) {
  return add_alpha<1, 2, 3>(pSrc, pDst, len);
}
pqx_Status ColorARGB2ABGR_8U_I(uint8_t* pSrcDst, int len) { return exchange<4, 1, 3>(pSrcDst, len); }
pqx_Status ColorRGB2BGR_8U_I(uint8_t* pSrcDst, int len) { return exchange<3, 0, 2>(pSrcDst, len); }

pqx_Status ColorRGBA2ABGR_32U(const uint32_t* pSrc, int srcStep, uint32_t* pDst, int dstStep, int width, int height) {
  for (int64_t y = 0; y < height; ++y) {
    const auto* src = any_address(pSrc) + y * srcStep;
    auto* dst = any_address(pDst) + y * dstStep;
    for (int x = 0; x < width; ++x) dst[x] = AnyAddress<uint32_t>(__builtin_bswap32(src[x]));
  }
  return PQX_OK;
}

}  // namespace plain
