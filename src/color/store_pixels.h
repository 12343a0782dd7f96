/// Channels put together to packed pixels of 3 or 4 bytes, sixteen pixels at a time.
#pragma once

#include "common/lanes.h"
#include "common/pixel_layout.h"

namespace pqx {

/// Channels of sixteen pixels in order. Three-byte pixels ignore a.
struct PixelBytes {
  u8x16 r, g, b, a;
};

/// Channels of eight opaque pixels as words that saturate to bytes.
struct PixelWords {
  i16x8 r, g, b;
};

/// Sixteen pixels as they stand in memory, four to a register; of three bytes each, in pairs at bytes 0 and 8.
template <int pixel_bytes>
struct Quads {
  u8x16 quad[4];
};

/// The ends of a row of n bytes, 2 <= n <= 15: its first w, then its last w, w being 8, 4 or 2.
inline u8x16 load_ends(const uint8_t* p, int64_t n) {
  if (n >= 8) return low_halves(load_half<u8x16>(p), load_half<u8x16>(p + n - 8));
  if (n >= 4) return {_mm_unpacklo_epi32(load_bytes<4, u8x16>(p).v, load_bytes<4, u8x16>(p + n - 4).v)};
  return {_mm_cvtsi32_si128(load_one<uint16_t>(p) | load_one<uint16_t>(p + n - 2) << 16)};
}

template <PixelLayout L, class Channel>
Channel channel_at(int byte, Channel r, Channel g, Channel b, Channel a) {
  return byte == L.r ? r : byte == L.g ? g : byte == L.b ? b : a;
}

/// From the words 0, 1 and 2 of eight pairs of three-byte pixels.
[[gnu::always_inline]] inline Quads<3> pairs_of_words(u16x8 w0, u16x8 w1, u16x8 w2) {
  const auto low = as<i32x4>(interleave_low(w0, w1)), low2 = as<i32x4>(interleave_low(w2, w2));
  const auto high = as<i32x4>(interleave_high(w0, w1)), high2 = as<i32x4>(interleave_high(w2, w2));
  return {as<u8x16>(interleave_low(low, low2)), as<u8x16>(interleave_high(low, low2)),
          as<u8x16>(interleave_low(high, high2)), as<u8x16>(interleave_high(high, high2))};
}

template <PixelLayout L>
[[gnu::always_inline]] inline Quads<L.bytes> quads_of(const PixelBytes& p) {
  auto at = [&p](int byte) { return channel_at<L>(byte, p.r, p.g, p.b, p.a); };
  const u8x16 c0 = at(0), c1 = at(1), c2 = at(2);
  if constexpr (L.bytes == 3) {
    const auto w0 = as<u16x8>(c0), w1 = as<u16x8>(c1), w2 = as<u16x8>(c2);
    const u16x8 even = all_u16(0x00ff), odd = all_u16(0xff00);
    return pairs_of_words((w0 & even) | w1 << 8, (w2 & even) | (w0 & odd), w1 >> 8 | (w2 & odd));
  } else {
    const auto low01 = as<u16x8>(interleave_low(c0, c1)), low23 = as<u16x8>(interleave_low(c2, at(3)));
    const auto high01 = as<u16x8>(interleave_high(c0, c1)), high23 = as<u16x8>(interleave_high(c2, at(3)));
    return {as<u8x16>(interleave_low(low01, low23)), as<u8x16>(interleave_high(low01, low23)),
            as<u8x16>(interleave_low(high01, high23)), as<u8x16>(interleave_high(high01, high23))};
  }
}

/// From the pixels at even places and those at odd ones.
template <PixelLayout L>
[[gnu::always_inline]] inline Quads<L.bytes> quads_of(const PixelWords& even, const PixelWords& odd) {
  auto at = [](int byte, const PixelWords& p) { return channel_at<L>(byte, p.r, p.g, p.b, all_i16(255)); };
  auto byte = [at, &even, &odd](int k) { return k < L.bytes ? at(k, even) : at(k - L.bytes, odd); };
  if constexpr (L.bytes == 3) {
    const u8x16 c02 = pack(byte(0), byte(2)), c13 = pack(byte(1), byte(3)), c45 = pack(byte(4), byte(5));
    return pairs_of_words(as<u16x8>(interleave_low(c02, c13)), as<u16x8>(interleave_high(c02, c13)),
                          as<u16x8>(interleave_low(c45, high_halves(c45, c45))));
  } else {
    const u8x16 c04 = pack(byte(0), byte(4)), c15 = pack(byte(1), byte(5));
    const u8x16 c26 = pack(byte(2), byte(6)), c37 = pack(byte(3), byte(7));
    const auto even01 = as<u16x8>(interleave_low(c04, c15)), odd01 = as<u16x8>(interleave_high(c04, c15));
    const auto even23 = as<u16x8>(interleave_low(c26, c37)), odd23 = as<u16x8>(interleave_high(c26, c37));
    const u16x8 low01 = interleave_low(even01, odd01), high01 = interleave_high(even01, odd01);
    const u16x8 low23 = interleave_low(even23, odd23), high23 = interleave_high(even23, odd23);
    return {as<u8x16>(interleave_low(low01, low23)), as<u8x16>(interleave_high(low01, low23)),
            as<u8x16>(interleave_low(high01, high23)), as<u8x16>(interleave_high(high01, high23))};
  }
}

/// Writes four pixels; those of three bytes are followed by two unspecified bytes.
template <int pixel_bytes>
void store_quad(uint8_t* dst, u8x16 quad) {
  if constexpr (pixel_bytes == 3) {
    store_half(dst, quad);
    store_high_half(dst + 6, quad);
  } else {
    store(dst, quad);
  }
}

/// Writes four pixels and nothing after them.
template <int pixel_bytes>
void store_last_quad(uint8_t* dst, u8x16 quad) {
  if constexpr (pixel_bytes == 3) {
    store_half(dst, quad);
    store_first(dst + 6, high_halves(quad, quad), 6);
  } else {
    store(dst, quad);
  }
}

/// Writes sixteen pixels; those of three bytes are followed by two unspecified bytes unless they end the row.
template <int pixel_bytes>
[[gnu::always_inline]] inline void store_pixels(uint8_t* dst, const Quads<pixel_bytes>& p, bool last) {
  constexpr int quad = 4 * pixel_bytes;
  store_quad<pixel_bytes>(dst, p.quad[0]);
  store_quad<pixel_bytes>(dst + quad, p.quad[1]);
  store_quad<pixel_bytes>(dst + 2 * quad, p.quad[2]);
  if (last) [[unlikely]]
    store_last_quad<pixel_bytes>(dst + 3 * quad, p.quad[3]);
  else
    store_quad<pixel_bytes>(dst + 3 * quad, p.quad[3]);
}

/// Writes a row of n pixels, 4 <= n <= 15, from its ends as load_ends() orders them.
template <int pixel_bytes>
[[gnu::always_inline]] inline void store_ends(uint8_t* dst, const Quads<pixel_bytes>& p, int64_t n) {
  constexpr int quad = 4 * pixel_bytes;
  // The pixels of the other end overwrite the bytes that follow a quad.
  if (n >= 8) {
    uint8_t* const last = dst + (n - 8) * pixel_bytes;
    if (n > 8) {
      store_quad<pixel_bytes>(dst, p.quad[0]);
      store_quad<pixel_bytes>(dst + quad, p.quad[1]);
    }
    store_quad<pixel_bytes>(last, p.quad[2]);
    store_last_quad<pixel_bytes>(last + quad, p.quad[3]);
  } else {
    if (n > 4) store_quad<pixel_bytes>(dst, p.quad[0]);
    store_last_quad<pixel_bytes>(dst + (n - 4) * pixel_bytes, p.quad[1]);
  }
}

}  // namespace pqx
