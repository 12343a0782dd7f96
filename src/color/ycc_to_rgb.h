/// Rows of full range YCC with 8-bit samples to packed pixels, and YCCK to CMYK.
#pragma once

#include <stdint.h>

#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

inline uint8_t byte_of_half_units(int s) { return pqx_tClip[576 + s]; }

template <PixelLayout L>
void store_pixel(uint8_t* pixel, uint8_t r, uint8_t g, uint8_t b) {
  pixel[L.r] = r;
  pixel[L.g] = g;
  pixel[L.b] = b;
  if constexpr (L.a >= 0) pixel[L.a] = 255;
}

template <PixelLayout L>
void convert_pixel(int y, int cb, int cr, uint8_t* pixel) {
  store_pixel<L>(pixel, byte_of_half_units(2 * y + pqx_tRCr[cr] - 359),
                 byte_of_half_units(2 * y + pqx_tGCb[cb] - pqx_tGCr[cr]),
                 byte_of_half_units(2 * y + pqx_tBCb[cb] - 454));
}

template <PixelLayout L>
pqx_Status ycc444_to_rgb(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  for (int i = 0; i < len; ++i) convert_pixel<L>(y[i], cb[i], cr[i], dst + L.bytes * int64_t(i));
  return PQX_OK;
}

template <PixelLayout L>
pqx_Status ycc422_to_rgb(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  for (int i = 0; i + 1 < len; ++i) {
    convert_pixel<L>(y[i], cb[i / 2], cr[i / 2], dst + L.bytes * int64_t(i));
    ++i;
    convert_pixel<L>(y[i], cb[i / 2], cr[i / 2], dst + L.bytes * int64_t(i));
  }
  return PQX_OK;
}

template <PixelLayout L>
pqx_Status ycc420_to_rgb(const uint8_t* y0, const uint8_t* y1, const uint8_t* cb, const uint8_t* cr, uint8_t* dst0,
                         uint8_t* dst1, int len) {
  ycc422_to_rgb<L>(y0, cb, cr, dst0, len);
  return ycc422_to_rgb<L>(y1, cb, cr, dst1, len);
}

template <PixelLayout L>
pqx_Status ycc422_to_rgb_bilinear(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  const int pairs = len < 2 ? 1 : len / 2;
  for (int j = 0; j < pairs; ++j) {
    const int before = j == 0 ? 0 : j - 1, behind = j == pairs - 1 ? j : j + 1;
    uint8_t* pixel = dst + 2 * L.bytes * int64_t(j);
    convert_pixel<L>(y[2 * j], (3 * cb[j] + cb[before] + 1) >> 2, (3 * cr[j] + cr[before] + 1) >> 2, pixel);
    convert_pixel<L>(y[2 * j + 1], (3 * cb[j] + cb[behind] + 2) >> 2, (3 * cr[j] + cr[behind] + 2) >> 2,
                     pixel + L.bytes);
  }
  return PQX_OK;
}

inline pqx_Status ycck444_to_cmyk(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, const uint8_t* k,
                                  uint8_t* dst, int len) {
  for (int i = 0; i < len; ++i, dst += 4) {
    const int y2 = 2 * (255 - y[i]);
    dst[0] = byte_of_half_units(y2 - pqx_tRCr[cr[i]] + 359);
    dst[1] = byte_of_half_units(y2 - pqx_tGCb[cb[i]] + pqx_tGCr[cr[i]]);
    dst[2] = byte_of_half_units(y2 - pqx_tBCb[cb[i]] + 454);
    dst[3] = k[i];
  }
  return PQX_OK;
}

}  // namespace pqx
