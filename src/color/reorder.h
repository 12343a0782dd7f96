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

/// In place, where pixels that shrink are written only onto what has been read: no run may overlap the one before.
template <int from, int to>
[[gnu::noinline]] pqx_Status reorder_in_place(const uint8_t* src, uint8_t* dst, int64_t len, auto sixteen, auto one) {
  static_assert(from > to);
  int64_t i = 0;
  for (; i + 16 <= len; i += 16) sixteen(src + from * i, dst + to * i, i + 16 == len);
  for (; i < len; ++i) one(src + from * i, dst + to * i);
  return PQX_OK;
}

/// A row of pixels that change from `from` bytes to `to`: sixteen(p, d, last) does a run, `last` at the end of the row,
/// and one(p, d) a pixel of a shorter row.
template <int from, int to>
[[gnu::always_inline]] inline pqx_Status reorder_pixels(const uint8_t* src, uint8_t* dst, int len, auto sixteen,
                                                        auto one) {
  if (len < 16) {
    for (int64_t i = 0; i < len; ++i) one(src + from * i, dst + to * i);
    return PQX_OK;
  }
  if constexpr (from > to)
    if (src == dst) [[unlikely]]
      return reorder_in_place<from, to>(src, dst, len, sixteen, one);
  cover_moving<16>(
      len, [=](int64_t i) { sixteen(src + from * i, dst + to * i, i + 16 == len); },
      [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(src + from * i, dst + to * i); });
  return PQX_OK;
}

/// All three are read before any is written, for they may come from there.
inline void put_pixel(uint8_t* d, uint8_t r, uint8_t g, uint8_t b) { d[0] = r, d[1] = g, d[2] = b; }

template <PixelLayout From, PixelLayout To>
[[gnu::always_inline]] inline void reorder_one(const uint8_t* p, uint8_t* d) {
  constexpr int first = To.r < To.b ? From.r : From.b, last = To.r < To.b ? From.b : From.r;
  if constexpr (To.a < 0)
    put_pixel(d, p[first], p[From.g], p[last]);
  else
    d[0] = 0, d[1] = p[first], d[2] = p[From.g], d[3] = p[last];
}

/// Sixteen pixels; alpha, where there is any, is the first byte. `reversed`: red and blue change places.
template <PixelLayout From, PixelLayout To, bool reversed = (From.r < From.b) != (To.r < To.b)>
[[gnu::always_inline]] inline void reorder_sixteen(const uint8_t* p, uint8_t* d, bool last) {
  static_assert(From.a <= 0 && To.a <= 0 && From.bytes != To.bytes);
  const u16x8 even = all_u16(0x00ff), odd = all_u16(0xff00);
  if constexpr (To.bytes == 3 && !reversed) {
    store_pixels<3>(d,
                    {without_alpha(load<u8x16>(p)), without_alpha(load<u8x16>(p + 16)),
                     without_alpha(load<u8x16>(p + 32)), without_alpha(load<u8x16>(p + 48))},
                    last);
  } else if constexpr (To.bytes == 3) {
    // A, B; G, R; A, B; G, R of two pixels become R, G; B, R; G, B.
    const PixelPairs<4> pairs = load_pixel_pairs<4>(p);
    const u16x8 ab0 = pairs.words[0], gr0 = pairs.words[1], ab1 = pairs.words[2], gr1 = pairs.words[3];
    store_pixels<3>(d, pairs_of_words(gr0 << 8 | gr0 >> 8, ab0 >> 8 | (gr1 & odd), (gr1 & even) | (ab1 & odd)), last);
  } else if constexpr (!reversed) {
    // The last pixel is taken from the end of its four bytes, so that nothing after the run is read.
    const auto pixel = [p](int k) {
      return k == 15 ? load_bytes<4, i32x4>(p + 44) >> 8 : load_bytes<4, i32x4>(p + 3 * k);
    };
    const auto two = [pixel](int k) { return interleave_low(pixel(k), pixel(k + 1)); };
#pragma GCC unroll 4
    for (int k = 0; k < 16; k += 4) store(d + 4 * k, low_halves(two(k), two(k + 2)) << 8);
  } else {
    // R, G; B, R; G, B of two pixels become 0, B; G, R; 0, B; G, R.
    const PixelPairs<3> pairs = load_pixel_pairs<3>(p);
    const u16x8 rg = pairs.words[0], br = pairs.words[1], gb = pairs.words[2];
    WordChannels<4>{{br << 8, rg << 8 | rg >> 8, gb & odd, (gb & even) | (br & odd)}}.store_pixels(d, false);
  }
}

/// A row of pixels that lose their alpha or gain one, in the same byte order or in the reverse one.
template <PixelLayout From, PixelLayout To>
[[gnu::always_inline]] inline pqx_Status reorder(const uint8_t* src, uint8_t* dst, int len) {
  return reorder_pixels<From.bytes, To.bytes>(
      src, dst, len, [](const uint8_t* p, uint8_t* d, bool last) { reorder_sixteen<From, To>(p, d, last); },
      [](const uint8_t* p, uint8_t* d) { reorder_one<From, To>(p, d); });
}

}  // namespace pqx
