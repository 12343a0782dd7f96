#include "any_address.h"
#include "pixels.h"
#include "plain.h"

namespace plain {
namespace {

/// Pixels as words: the fields Y, Cb and Cr from bit 0, 10 and 21 on.
template <Layout L>
struct Pixels {
  const uint8_t* p;
  uint32_t word(int64_t i) const {
    const uint8_t* pixel = p + L.bytes * i;
    return pqx_t_r2j[pixel[L.r]] + pqx_t_g2j[pixel[L.g]] + pqx_t_b2j[pixel[L.b]];
  }
};
/// Ink is what white lacks.
struct Cmyk {
  const uint8_t* p;
  uint32_t word(int64_t i) const {
    const uint8_t* pixel = p + 4 * i;
    return pqx_t_r2j[255 - pixel[0]] + pqx_t_g2j[255 - pixel[1]] + pqx_t_b2j[255 - pixel[2]];
  }
};

uint8_t y_of(uint32_t word) { return uint8_t(word); }
uint8_t cb_of(uint32_t word) { return uint8_t(word >> 10); }
uint8_t cr_of(uint32_t word) { return uint8_t(word >> 21); }

template <class Source>
pqx_Status to_ycc444(Source src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len) {
  for (int i = 0; i < len; ++i) {
    const uint32_t w = src.word(i);
    y[i] = y_of(w);
    cb[i] = cb_of(w);
    cr[i] = cr_of(w);
  }
  return PQX_OK;
}

template <class Source>
pqx_Status to_ycc422(Source src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len) {
  for (int j = 0; j < len / 2; ++j) {
    const uint32_t v = src.word(2 * j), w = src.word(2 * j + 1);
    y[2 * j] = y_of(v);
    y[2 * j + 1] = y_of(w);
    const int r = j % 2;
    cb[j] = uint8_t((cb_of(v) + cb_of(w) + r) >> 1);
    cr[j] = uint8_t((cr_of(v) + cr_of(w) + r) >> 1);
  }
  return PQX_OK;
}

template <class Source>
pqx_Status to_ycc420(Source src0, Source src1, uint8_t* y0, uint8_t* y1, uint8_t* cb, uint8_t* cr, int len) {
  for (int j = 0; j < len / 2; ++j) {
    const uint32_t s = src0.word(2 * j), t = src0.word(2 * j + 1), v = src1.word(2 * j), w = src1.word(2 * j + 1);
    y0[2 * j] = y_of(s);
    y0[2 * j + 1] = y_of(t);
    y1[2 * j] = y_of(v);
    y1[2 * j + 1] = y_of(w);
    const int r = j % 2 ? 2 : 0;
    cb[j] = uint8_t((cb_of(s) + cb_of(t) + cb_of(v) + cb_of(w) + r) >> 2);
    cr[j] = uint8_t((cr_of(s) + cr_of(t) + cr_of(v) + cr_of(w) + r) >> 2);
  }
  return PQX_OK;
}

}  // namespace

pqx_Status ColorRGB2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc444(Pixels<RGB>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorABGR2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc444(Pixels<ABGR>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorARGB2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc444(Pixels<ARGB>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorBGRA2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc444(Pixels<BGRA>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorRGB2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc422(Pixels<RGB>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorABGR2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc422(Pixels<ABGR>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorARGB2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc422(Pixels<ARGB>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorBGRA2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc422(Pixels<BGRA>{pSrc}, pY, pCb, pCr, len);
}
pqx_Status ColorRGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1, uint8_t* pCb,
                                 uint8_t* pCr, int len) {
  return to_ycc420(Pixels<RGB>{pSrc0}, Pixels<RGB>{pSrc1}, pY0, pY1, pCb, pCr, len);
}
pqx_Status ColorABGR2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                  uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc420(Pixels<ABGR>{pSrc0}, Pixels<ABGR>{pSrc1}, pY0, pY1, pCb, pCr, len);
}
pqx_Status ColorARGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                  uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc420(Pixels<ARGB>{pSrc0}, Pixels<ARGB>{pSrc1}, pY0, pY1, pCb, pCr, len);
}
pqx_Status ColorBGRA2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0, uint8_t* pY1,
                                  uint8_t* pCb, uint8_t* pCr, int len) {
  return to_ycc420(Pixels<BGRA>{pSrc0}, Pixels<BGRA>{pSrc1}, pY0, pY1, pCb, pCr, len);
}

pqx_Status ColorCMYK2YCCK444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr, uint8_t* pK, int len) {
  for (int i = 0; i < len; ++i) pK[i] = pSrc[4 * i + 3];
  return to_ycc444(Cmyk{pSrc}, pY, pCb, pCr, len);
}

pqx_Status ColorRGB2YCC444_16S(const int16_t* pSrc, int16_t* pY, int16_t* pCb, int16_t* pCr, int len) {
  const AnyAddress16* src = any_address(pSrc);
  AnyAddress16 *y = any_address(pY), *cb = any_address(pCb), *cr = any_address(pCr);
  for (int i = 0; i < (len < 1 ? 1 : len); ++i) {
    const float r = float(src[3 * i]), g = float(src[3 * i + 1]), b = float(src[3 * i + 2]);
    y[i] = AnyAddress16(int(r * 0.299f + g * 0.587f + b * 0.114f));
    cb[i] = AnyAddress16(int(r * -0.16874f - g * 0.33126f + b * 0.5f + 2048));
    cr[i] = AnyAddress16(int(r * 0.5f - g * 0.41869f - b * 0.08131f + 2048));
  }
  return PQX_OK;
}

}  // namespace plain
