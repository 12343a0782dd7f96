/// Packed pixels with and without alpha, and channels exchanged in place: bytes are moved, never changed.
#pragma once

#include "color/interleave.h"
#include "color/store_pixels.h"
#include "common/lanes.h"
#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

/// Bytes of each half of a register moved toward lower addresses.
inline u8x16 moved_down(u8x16 a, int bytes) { return {_mm_srli_epi64(a.v, 8 * bytes)}; }
inline u8x16 in_each_half(uint64_t mask) { return {_mm_set1_epi64x(int64_t(mask))}; }

/// Four pixels that begin with alpha, red and blue exchanged: the upper byte of each word for that of the other.
inline u8x16 exchanged(u8x16 pixels) {
  constexpr int other = _MM_SHUFFLE(2, 3, 0, 1);
  const u8x16 other_words = {_mm_shufflehi_epi16(_mm_shufflelo_epi16(pixels.v, other), other)};
  return pixels ^ ((pixels ^ other_words) & as<u8x16>(all_u16(0xff00)));
}

/// Four pixels R, G, B from four A, R, G, B.
inline u8x16 without_alpha(u8x16 pixels) {
  constexpr uint64_t first = 0x0000000000ffffff, second = first << 24;
  return (moved_down(pixels, 1) & in_each_half(first)) | (moved_down(pixels, 2) & in_each_half(second));
}

/// A, R, G, B to R, G, B.
inline pqx_Status drop_alpha(const uint8_t* src, uint8_t* dst, int len) {
  if (len >= 16) {
    cover_runs<16>(
        len,
        [=](int64_t i) {
          const uint8_t* p = src + 4 * i;
          store_pixels<3>(dst + 3 * i,
                          {without_alpha(load<u8x16>(p)), without_alpha(load<u8x16>(p + 16)),
                           without_alpha(load<u8x16>(p + 32)), without_alpha(load<u8x16>(p + 48))},
                          i + 16 == len);
        },
        [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(src + 4 * i, dst + 3 * i); });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      dst[3 * i] = src[4 * i + 1];
      dst[3 * i + 1] = src[4 * i + 2];
      dst[3 * i + 2] = src[4 * i + 3];
    }
  }
  return PQX_OK;
}

/// A, B, G, R to R, G, B.
inline pqx_Status drop_alpha_reversed(const uint8_t* src, uint8_t* dst, int len) {
  if (len >= 16) {
    cover_runs<16>(
        len,
        [=](int64_t i) {
          // A, B; G, R; A, B; G, R of two pixels become R, G; B, R; G, B.
          const PixelPairs<4> pairs = load_pixel_pairs<4>(src + 4 * i);
          const u16x8 ab0 = pairs.words[0], gr0 = pairs.words[1], ab1 = pairs.words[2], gr1 = pairs.words[3],
                      even = all_u16(0x00ff), odd = all_u16(0xff00);
          store_pixels<3>(dst + 3 * i,
                          pairs_of_words(gr0 << 8 | gr0 >> 8, ab0 >> 8 | (gr1 & odd), (gr1 & even) | (ab1 & odd)),
                          i + 16 == len);
        },
        [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(src + 4 * i, dst + 3 * i); });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      dst[3 * i] = src[4 * i + 3];
      dst[3 * i + 1] = src[4 * i + 2];
      dst[3 * i + 2] = src[4 * i + 1];
    }
  }
  return PQX_OK;
}

/// R, G, B to A, R, G, B, alpha 0.
inline pqx_Status add_alpha(const uint8_t* src, uint8_t* dst, int len) {
  if (len >= 16) {
    cover_runs<16>(
        len,
        [=](int64_t i) {
          // The last pixel is taken from the end of its four bytes, so that nothing behind the run is read.
          const auto pixel = [p = src + 3 * i](int k) {
            return k == 15 ? load_bytes<4, i32x4>(p + 44) >> 8 : load_bytes<4, i32x4>(p + 3 * k);
          };
          const auto two = [pixel](int k) { return interleave_low(pixel(k), pixel(k + 1)); };
#pragma GCC unroll 4
          for (int k = 0; k < 16; k += 4)
            store(dst + 4 * (i + k), i32x4{_mm_unpacklo_epi64(two(k).v, two(k + 2).v)} << 8);
        },
        [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(src + 3 * i, dst + 4 * i); });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      dst[4 * i] = 0;
      dst[4 * i + 1] = src[3 * i];
      dst[4 * i + 2] = src[3 * i + 1];
      dst[4 * i + 3] = src[3 * i + 2];
    }
  }
  return PQX_OK;
}

/// R, G, B to A, B, G, R, alpha 0.
inline pqx_Status add_alpha_reversed(const uint8_t* src, uint8_t* dst, int len) {
  if (len >= 16) {
    cover_runs<16>(
        len,
        [=](int64_t i) {
          // R, G; B, R; G, B of two pixels become 0, B; G, R; 0, B; G, R.
          const PixelPairs<3> pairs = load_pixel_pairs<3>(src + 3 * i);
          const u16x8 rg = pairs.words[0], br = pairs.words[1], gb = pairs.words[2], even = all_u16(0x00ff),
                      odd = all_u16(0xff00);
          WordChannels<4>{{br << 8, rg << 8 | rg >> 8, gb & odd, (gb & even) | (br & odd)}}.store_pixels(dst + 4 * i,
                                                                                                         false);
        },
        [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(src + 3 * i, dst + 4 * i); });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      dst[4 * i] = 0;
      dst[4 * i + 1] = src[3 * i + 2];
      dst[4 * i + 2] = src[3 * i + 1];
      dst[4 * i + 3] = src[3 * i];
    }
  }
  return PQX_OK;
}

}  // namespace pqx
