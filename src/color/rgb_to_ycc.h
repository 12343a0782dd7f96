/// RGB-family pixels to full range YCC planes. The three products of a pixel with each row of the matrix are rounded
/// one by one; chroma is converted for every pixel and only then averaged.
#pragma once

#include "common/lanes.h"
#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

/// Sum of table words: luma in bits 0..9, chroma in bits 10..20 and 21..31, of which the low eight count.
struct PackedYcc {
  uint32_t word;

  uint8_t y() const { return uint8_t(word); }
  int cb() const { return word >> 10 & 255; }
  int cr() const { return word >> 21 & 255; }
};

template <PixelLayout L>
PackedYcc packed_ycc(const uint8_t* pixel) {
  constexpr int flip = L.inks ? 255 : 0;
  return {pqx_t_r2j[pixel[L.r] ^ flip] + pqx_t_g2j[pixel[L.g] ^ flip] + pqx_t_b2j[pixel[L.b] ^ flip]};
}

/// The alpha or black channel is copied to k, if there is one.
template <PixelLayout L>
pqx_Status rgb_to_ycc444(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len, uint8_t* k = nullptr) {
  for (int64_t i = 0; i < len; ++i, src += L.bytes) {
    const PackedYcc pixel = packed_ycc<L>(src);
    y[i] = pixel.y();
    cb[i] = uint8_t(pixel.cb());
    cr[i] = uint8_t(pixel.cr());
    if (L.inks) k[i] = src[L.a];
  }
  return PQX_OK;
}

template <PixelLayout L>
pqx_Status rgb_to_ycc422(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len) {
  for (int64_t i = 0; i + 2 <= len; i += 2, src += 2 * L.bytes) {
    const PackedYcc a = packed_ycc<L>(src), b = packed_ycc<L>(src + L.bytes);
    y[i] = a.y();
    y[i + 1] = b.y();
    const int output = int(i / 2), rounding = output % 2;
    cb[output] = uint8_t((a.cb() + b.cb() + rounding) >> 1);
    cr[output] = uint8_t((a.cr() + b.cr() + rounding) >> 1);
  }
  return PQX_OK;
}

template <PixelLayout L>
pqx_Status rgb_to_ycc420(const uint8_t* src0, const uint8_t* src1, uint8_t* y0, uint8_t* y1, uint8_t* cb, uint8_t* cr,
                         int len) {
  for (int64_t i = 0; i + 2 <= len; i += 2, src0 += 2 * L.bytes, src1 += 2 * L.bytes) {
    const PackedYcc a = packed_ycc<L>(src0), b = packed_ycc<L>(src0 + L.bytes);
    const PackedYcc c = packed_ycc<L>(src1), d = packed_ycc<L>(src1 + L.bytes);
    y0[i] = a.y();
    y0[i + 1] = b.y();
    y1[i] = c.y();
    y1[i + 1] = d.y();
    const int output = int(i / 2), rounding = output % 2 * 2;
    cb[output] = uint8_t((a.cb() + b.cb() + c.cb() + d.cb() + rounding) >> 2);
    cr[output] = uint8_t((a.cr() + b.cr() + c.cr() + d.cr() + rounding) >> 2);
  }
  return PQX_OK;
}

}  // namespace pqx
