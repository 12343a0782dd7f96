/// Packed pixels with and without alpha, and channels exchanged in place: bytes are moved, never changed.
#pragma once

#include "color/interleave.h"
#include "color/store_pixels.h"
#include "common/lanes.h"
#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

// Bytes of a register's halves, toward higher and lower addresses.
inline u8x16 moved_up(u8x16 a, int bytes) { return {_mm_slli_epi64(a.v, 8 * bytes)}; }
inline u8x16 moved_down(u8x16 a, int bytes) { return {_mm_srli_epi64(a.v, 8 * bytes)}; }
inline u8x16 in_each_half(uint64_t mask) { return {_mm_set1_epi64x(int64_t(mask))}; }

/// Four pixels that begin with alpha, red and blue exchanged: the upper byte of each word for that of the other.
inline u8x16 exchanged(u8x16 pixels) {
  constexpr int other = _MM_SHUFFLE(2, 3, 0, 1);
  const u8x16 other_words = {_mm_shufflehi_epi16(_mm_shufflelo_epi16(pixels.v, other), other)};
  return pixels ^ ((pixels ^ other_words) & as<u8x16>(all_u16(0xff00)));
}

/// Four pixels R, G, B from four of layout L.
template <PixelLayout L>
u8x16 without_alpha(u8x16 pixels) {
  constexpr uint64_t first = 0x0000000000ffffff, second = first << 24;
  if constexpr (L.a == 0 && L.r == 1)
    return (moved_down(pixels, 1) & in_each_half(first)) | (moved_down(pixels, 2) & in_each_half(second));
  else
    return without_alpha<layout::ARGB>(exchanged(pixels));
}

/// Four pixels of layout L, alpha 0, from four R, G, B.
template <PixelLayout L>
u8x16 with_alpha(u8x16 pairs) {
  constexpr uint64_t first = 0x00000000ffffff00, second = first << 32;
  if constexpr (L.a == 0 && L.r == 1)
    return (moved_up(pairs, 1) & in_each_half(first)) | (moved_up(pairs, 2) & in_each_half(second));
  else
    return exchanged(with_alpha<layout::ARGB>(pairs));
}

template <PixelLayout L>
pqx_Status drop_alpha(const uint8_t* src, uint8_t* dst, int len) {
  if (len >= 16) {
    cover_runs<16>(len, [=](int64_t i) {
      const uint8_t* p = src + 4 * i;
      store_pixels<3>(dst + 3 * i,
                      {without_alpha<L>(load<u8x16>(p)), without_alpha<L>(load<u8x16>(p + 16)),
                       without_alpha<L>(load<u8x16>(p + 32)), without_alpha<L>(load<u8x16>(p + 48))},
                      i + 16 == len);
    });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      const uint8_t* p = src + 4 * i;
      dst[3 * i] = p[L.r];
      dst[3 * i + 1] = p[L.g];
      dst[3 * i + 2] = p[L.b];
    }
  }
  return PQX_OK;
}

template <PixelLayout L>
pqx_Status add_alpha(const uint8_t* src, uint8_t* dst, int len) {
  if (len >= 16) {
    cover_runs<16>(len, [=](int64_t i) {
      const uint8_t* p = src + 3 * i;
      const auto pairs = [p](int k, u8x16 second) {
        return u8x16{_mm_unpacklo_epi64(load_half<u8x16>(p + 12 * k).v, second.v)};
      };
      // The last pair is taken from the end of its eight bytes, so that nothing behind the run is read.
      const u8x16 last = moved_down(load_half<u8x16>(p + 40), 2);
      uint8_t* const d = dst + 4 * i;
#pragma GCC unroll 3
      for (int k = 0; k < 3; ++k) store(d + 16 * k, with_alpha<L>(pairs(k, load_half<u8x16>(p + 12 * k + 6))));
      store(d + 48, with_alpha<L>(pairs(3, last)));
    });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      uint8_t* d = dst + 4 * i;
      d[L.a] = 0;
      d[L.r] = src[3 * i];
      d[L.g] = src[3 * i + 1];
      d[L.b] = src[3 * i + 2];
    }
  }
  return PQX_OK;
}

}  // namespace pqx
