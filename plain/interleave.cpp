#include "any_address.h"
#include "plain.h"

namespace plain {
namespace {

template <class T, class... Planes>
pqx_Status merge(T* dst, int len, const Planes*... planes) {
  constexpr int n = sizeof...(planes);
  for (int64_t i = 0; i < len; ++i) {
    T* pixel = dst + n * i;
    ((*pixel++ = planes[i]), ...);
  }
  return PQX_OK;
}

template <class T, class... Planes>
pqx_Status split(const T* src, int len, Planes*... planes) {
  constexpr int n = sizeof...(planes);
  for (int64_t i = 0; i < len; ++i) {
    const T* pixel = src + n * i;
    ((planes[i] = *pixel++), ...);
  }
  return PQX_OK;
}

}  // namespace

pqx_Status ColorMerge2_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, int len, uint8_t* pDst) {
  return merge(pDst, len, pSrc0, pSrc1);
}
pqx_Status ColorMerge3_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, const uint8_t* pSrc2, int len, uint8_t* pDst) {
  return merge(pDst, len, pSrc0, pSrc1, pSrc2);
}
pqx_Status ColorMerge4_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, const uint8_t* pSrc2, const uint8_t* pSrc3,
                          int len, uint8_t* pDst) {
  return merge(pDst, len, pSrc0, pSrc1, pSrc2, pSrc3);
}
pqx_Status ColorMerge2_16S(const int16_t* pSrc0, const int16_t* pSrc1, int len, int16_t* pDst) {
  return merge(any_address(pDst), len, any_address(pSrc0), any_address(pSrc1));
}
pqx_Status ColorMerge3_16S(const int16_t* pSrc0, const int16_t* pSrc1, const int16_t* pSrc2, int len, int16_t* pDst) {
  return merge(any_address(pDst), len, any_address(pSrc0), any_address(pSrc1), any_address(pSrc2));
}
pqx_Status ColorMerge4_16S(const int16_t* pSrc0, const int16_t* pSrc1, const int16_t* pSrc2, const int16_t* pSrc3,
                           int len, int16_t* pDst) {
  return merge(any_address(pDst), len, any_address(pSrc0), any_address(pSrc1), any_address(pSrc2),
               any_address(pSrc3));
}
pqx_Status ColorSplit2_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, int len) {
  return split(pSrc, len, pDst0, pDst1);
}
pqx_Status ColorSplit3_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, uint8_t* pDst2, int len) {
  return split(pSrc, len, pDst0, pDst1, pDst2);
}
pqx_Status ColorSplit4_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, uint8_t* pDst2, uint8_t* pDst3,
                          int len) {
  return split(pSrc, len, pDst0, pDst1, pDst2, pDst3);
}
pqx_Status ColorSplit2_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int len) {
  return split(any_address(pSrc), len, any_address(pDst0), any_address(pDst1));
}
pqx_Status ColorSplit3_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int16_t* pDst2, int len) {
  return split(any_address(pSrc), len, any_address(pDst0), any_address(pDst1), any_address(pDst2));
}
pqx_Status ColorSplit4_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int16_t* pDst2, int16_t* pDst3,
                           int len) {
  return split(any_address(pSrc), len, any_address(pDst0), any_address(pDst1), any_address(pDst2),
               any_address(pDst3));
}

}  // namespace plain
