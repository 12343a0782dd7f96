/// Planes to packed pixels and back: samples are moved, never changed.
#pragma once

#include <type_traits>

#include "color/load_pixels.h"
#include "color/store_pixels.h"
#include "common/lanes.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx {

/// Pixels of 2, 3 or 4 bytes in runs of sixteen, which fill the registers of n planes.
template <int n>
struct ByteChannels {
  using Sample = uint8_t;
  static constexpr int run = 16, bytes = n;
  u8x16 plane[n];

  static ByteChannels load_planes(int64_t i, const auto*... src) { return {load<u8x16>(src + i)...}; }
  void store_planes(int64_t i, auto*... dst) const {
    int k = 0;
    (store(dst + i, plane[k++]), ...);
  }

  static ByteChannels load_pixels(const uint8_t* p) {
    if constexpr (n == 3) {
      // Bytes 0, 1; 2, 0; 1, 2 of two pixels.
      const PixelPairs<3> pairs = load_pixel_pairs<3>(p);
      const u16x8 c01 = pairs.words[0], c20 = pairs.words[1], c12 = pairs.words[2], even = all_u16(0x00ff),
                  odd = all_u16(0xff00);
      return {as<u8x16>((c01 & even) | (c20 & odd)), as<u8x16>(c01 >> 8 | c12 << 8),
              as<u8x16>((c20 & even) | (c12 & odd))};
    } else if constexpr (n == 2) {
      return split(load<u8x16>(p), load<u8x16>(p + 16));
    } else {
      return shuffled(shuffled(
          shuffled(shuffled({load<u8x16>(p), load<u8x16>(p + 16), load<u8x16>(p + 32), load<u8x16>(p + 48)}))));
    }
  }
  void store_pixels(uint8_t* p, bool last_of_row) const {
    if constexpr (n == 2) {
      store(p, interleave_low(plane[0], plane[1]));
      store(p + 16, interleave_high(plane[0], plane[1]));
    } else if constexpr (n == 3) {
      pqx::store_pixels<3>(p, quads_of<layout::RGB>(PixelBytes{plane[0], plane[1], plane[2], {}}), last_of_row);
    } else {
      pqx::store_pixels<4>(p, quads_of<layout::RGBA>(PixelBytes{plane[0], plane[1], plane[2], plane[3]}),
                           last_of_row);
    }
  }

  static ByteChannels shuffled(const ByteChannels& c) {
    return {interleave_low(c.plane[0], c.plane[2]), interleave_high(c.plane[0], c.plane[2]),
            interleave_low(c.plane[1], c.plane[3]), interleave_high(c.plane[1], c.plane[3])};
  }

  /// Even and odd bytes of 32.
  static ByteChannels<2> split(u8x16 a, u8x16 b) {
    return {pack(as_signed(even_bytes(a)), as_signed(even_bytes(b))),
            pack(as_signed(odd_bytes(a)), as_signed(odd_bytes(b)))};
  }
};

/// Pixels of 2, 3 or 4 words in runs of eight. Those of three are moved as pairs of three-byte pixels are, and those
/// of four likewise.
template <int n>
struct WordChannels {
  using Sample = int16_t;
  static constexpr int run = 8, bytes = 2 * n;
  u16x8 plane[n];

  static WordChannels load_planes(int64_t i, const auto*... src) { return {load<u16x8>(src + i)...}; }
  void store_planes(int64_t i, auto*... dst) const {
    int k = 0;
    (store(dst + i, plane[k++]), ...);
  }

  static WordChannels load_pixels(const uint8_t* p) {
    WordChannels c;
    if constexpr (n == 2) {
      const auto low = load<i32x4>(p), high = load<i32x4>(p + 16);
      c = {as_unsigned(pack(low << 16 >> 16, high << 16 >> 16)), as_unsigned(pack(low >> 16, high >> 16))};
    } else {
      const PixelPairs<n> pixels = load_pixel_pairs<n>(p);
#pragma GCC unroll 4
      for (int k = 0; k < n; ++k) c.plane[k] = pixels.words[k];
    }
    return c;
  }
  void store_pixels(uint8_t* p, bool last_of_row) const {
    if constexpr (n == 2) {
      store(p, interleave_low(plane[0], plane[1]));
      store(p + 16, interleave_high(plane[0], plane[1]));
    } else if constexpr (n == 3) {
      pqx::store_pixels<3>(p, pairs_of_words(plane[0], plane[1], plane[2]), last_of_row);
    } else {
      const auto low01 = as<i32x4>(interleave_low(plane[0], plane[1])),
                 low23 = as<i32x4>(interleave_low(plane[2], plane[3]));
      const auto high01 = as<i32x4>(interleave_high(plane[0], plane[1])),
                 high23 = as<i32x4>(interleave_high(plane[2], plane[3]));
      store(p, interleave_low(low01, low23));
      store(p + 16, interleave_high(low01, low23));
      store(p + 32, interleave_low(high01, high23));
      store(p + 48, interleave_high(high01, high23));
    }
  }
};

template <class T, int n>
using ChannelsOf = std::conditional_t<sizeof(T) == 1, ByteChannels<n>, WordChannels<n>>;

template <class T, class... Planes>
[[gnu::flatten]] pqx_Status merge(int len, T* dst, const Planes*... planes) {
  constexpr int n = sizeof...(planes);
  using Run = ChannelsOf<T, n>;
  auto* const pixels = reinterpret_cast<uint8_t*>(dst);
  if (len >= Run::run) {
    cover_moving<Run::run>(
        len,
        [=](int64_t i) { Run::load_planes(i, planes...).store_pixels(pixels + i * Run::bytes, i + Run::run == len); },
        [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(planes + i..., pixels + i * Run::bytes); });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      T* pixel = dst + n * i;
      (store_one(pixel++, load_one<T>(planes + i)), ...);
    }
  }
  return PQX_OK;
}

template <class T, class... Planes>
[[gnu::flatten]] pqx_Status split(const T* src, int len, Planes*... planes) {
  constexpr int n = sizeof...(planes);
  using Run = ChannelsOf<T, n>;
  auto* const pixels = reinterpret_cast<const uint8_t*>(src);
  if (len >= Run::run) {
    cover_moving<Run::run>(
        len, [=](int64_t i) { Run::load_pixels(pixels + i * Run::bytes).store_planes(i, planes...); },
        [=](int64_t i) __attribute__((always_inline)) { prefetch_ahead(pixels + i * Run::bytes, planes + i...); });
  } else {
    for (int64_t i = 0; i < len; ++i) {
      const T* pixel = src + n * i;
      (store_one(planes + i, load_one<T>(pixel++)), ...);
    }
  }
  return PQX_OK;
}

}  // namespace pqx
