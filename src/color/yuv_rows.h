/// Rows of studio range YUV to rows of packed pixels.
#pragma once

#include <stdint.h>

#include "color/store_pixels.h"
#include "color/yuv_arithmetic.h"
#include "common/lanes.h"
#include "common/pixel_layout.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx::yuv {

/// How many pixels share one U and one V.
struct Sampling {
  int columns, rows;
};

/// Rows that share their chroma, and where their pixels go, or the squares that they become.
struct Rows {
  const uint8_t* y;
  int64_t y_step;
  const uint8_t *u, *v;
  uint8_t* dst;
  int64_t dst_step;
};

/// From such rows to the next: bytes of luma, of chroma and of the destination.
struct Advance {
  int64_t y, uv, dst;
};
inline Rows operator+(const Rows& r, const Advance& by) {
  return {r.y + by.y, r.y_step, r.u + by.uv, r.v + by.uv, r.dst + by.dst, r.dst_step};
}

/// The samples of sixteen pixels of which so many have one in common: one for each pixel, else one for each pair.
template <int shared>
u8x16 samples(const uint8_t* p) {
  const auto s = load_bytes<16 / shared, u8x16>(p);
  return shared == 4 ? interleave_low(s, s) : s;
}
/// Likewise of the first eight and the last eight of n pixels.
template <int shared>
u8x16 samples_of_ends(const uint8_t* p, int64_t n) {
  const uint8_t* const last = p + uint64_t(n - 8) / shared;
  if constexpr (shared == 1) return low_halves(load_half<u8x16>(p), load_half<u8x16>(last));
  if constexpr (shared == 2) return {_mm_unpacklo_epi32(load_bytes<4, u8x16>(p).v, load_bytes<4, u8x16>(last).v)};
  const u8x16 s{_mm_cvtsi32_si128(load_one<uint16_t>(p) | load_one<uint16_t>(last) << 16)};
  return interleave_low(s, s);
}

/// The chroma of sixteen pixels, as far as it can be converted without their luma.
template <PixelLayout L, bool shared>
struct Chroma {
  Halves<Rgb> terms;

  Chroma(u8x16 u, u8x16 v) : terms(doubled<L>(shared_chroma::terms(low_bytes(u), low_bytes(v)))) {}
  Quads<L.bytes> with(u8x16 luma) const {
    const auto y = operands<L>(shared_chroma::luma, luma);
    return put_together<L>(shared_chroma::channels(y.first, terms.first),
                           shared_chroma::channels(y.last, terms.last));
  }
};
template <PixelLayout L>
struct Chroma<L, false> {
  Halves<u16x8> u, v;

  Chroma(u8x16 us, u8x16 vs) : u(operands<L>(own_chroma::blue_u, us)), v(operands<L>(own_chroma::red_v, vs)) {}
  Quads<L.bytes> with(u8x16 luma) const {
    const auto y = operands<L>(own_chroma::red_y, luma);
    return put_together<L>(own_chroma::channels(y.first, u.first, v.first),
                           own_chroma::channels(y.last, u.last, v.last));
  }
};

/// The bytes of one pixel, written zoom times across and down.
template <PixelLayout L, int zoom>
void store_pixel(uint8_t* dst, int64_t step, uint8_t r, uint8_t g, uint8_t b) {
  if constexpr (zoom == 1) {
    dst[L.r] = r;
    dst[L.g] = g;
    dst[L.b] = b;
    if constexpr (L.a >= 0) dst[L.a] = 0;
  } else {
    const uint32_t pixel = uint32_t(r) << 8 * L.r | uint32_t(g) << 8 * L.g | uint32_t(b) << 8 * L.b;
#pragma GCC unroll 9
    for (int copy = 0; copy < zoom * zoom; ++copy) store_one(dst + copy / zoom * step + 4 * (copy % zoom), pixel);
  }
}

/// By the tables: one pixel of each row, or more that share their chroma.
template <PixelLayout L, Sampling S, int zoom, int count = S.columns>
[[gnu::always_inline]] inline void convert_group(const Rows& rows, int64_t x) {
  const int u = rows.u[uint64_t(x) / S.columns], v = rows.v[uint64_t(x) / S.columns];
  const int r = pqx_tRV[v] - rule::yuv_red_constant, g = pqx_tGU[u] - pqx_tGV[v],
            b = pqx_tBU[u] - rule::yuv_blue_constant;
#pragma GCC unroll 2
  for (int row = 0; row < S.rows; ++row)
#pragma GCC unroll 4
    for (int k = 0; k < count; ++k) {
      const uint8_t* clipped = pqx_tClip + rule::clip_origin + pqx_tYY[rows.y[row * rows.y_step + x + k]];
      store_pixel<L, zoom>(rows.dst + zoom * (row * rows.dst_step + L.bytes * (x + k)), rows.dst_step, clipped[r],
                           clipped[g], clipped[b]);
    }
}
template <PixelLayout L, Sampling S, int zoom, int count = 1>
requires(S.columns == 1) void convert_group(const Rows& rows, int64_t x) {
  const int32_t sum = pqx_t_Yuv2rgb[rows.y[x]] + pqx_t_yUv2rgb[rows.u[x]] + pqx_t_yuV2rgb[rows.v[x]];
  const int b = sum >> 20;
  const auto blue = uint8_t(b < 0 ? 0 : b > 255 ? 255 : b);
  store_pixel<L, zoom>(rows.dst + L.bytes * x, rows.dst_step, pqx_video_pClipOff256[sum & 1023],
                       pqx_video_pClipOff256[sum >> 10 & 1023], blue);
}

/// Four pixels as four squares.
template <int zoom>
void store_squares(uint8_t* dst, int64_t step, u8x16 pixels) {
  u8x16 part[zoom];
  if constexpr (zoom == 2) {
    part[0] = {_mm_shuffle_epi32(pixels.v, _MM_SHUFFLE(1, 1, 0, 0))};
    part[1] = {_mm_shuffle_epi32(pixels.v, _MM_SHUFFLE(3, 3, 2, 2))};
  } else {
    part[0] = {_mm_shuffle_epi32(pixels.v, _MM_SHUFFLE(1, 0, 0, 0))};
    part[1] = {_mm_shuffle_epi32(pixels.v, _MM_SHUFFLE(2, 2, 1, 1))};
    part[2] = {_mm_shuffle_epi32(pixels.v, _MM_SHUFFLE(3, 3, 3, 2))};
  }
#pragma GCC unroll 3
  for (int row = 0; row < zoom; ++row)
#pragma GCC unroll 3
    for (int k = 0; k < zoom; ++k) store(dst + row * step + 16 * k, part[k]);
}

/// Sixteen pixels or more of each row.
template <PixelLayout L, Sampling S, int zoom>
[[gnu::always_inline]] inline void convert_wide(const Rows& rows, int64_t n) {
  cover_in_one_loop<16>(
      n, [ =, &rows ](int64_t x, bool last) __attribute__((always_inline)) {
        const uint64_t group = uint64_t(x) / S.columns;
        prefetch_ahead(rows.u + group, rows.v + group);
        const Chroma<L, (S.columns > 1)> chroma(samples<S.columns>(rows.u + group),
                                                samples<S.columns>(rows.v + group));
#pragma GCC unroll 2
        for (int row = 0; row < S.rows; ++row) {
          const uint8_t* const luma = rows.y + row * rows.y_step + x;
          uint8_t* const dst = rows.dst + zoom * row * rows.dst_step + L.bytes * zoom * x;
          prefetch_ahead(luma);
          const auto pixels = chroma.with(load<u8x16>(luma));
          if constexpr (zoom == 1) {
            prefetch_ahead(dst);
            store_pixels<L.bytes>(dst, pixels, last);
          } else {
#pragma GCC unroll 4
            for (int k = 0; k < 4; ++k) store_squares<zoom>(dst + 16 * zoom * k, rows.dst_step, pixels.quad[k]);
          }
        }
      });
}

/// Eight to sixteen pixels of each row.
template <PixelLayout L, Sampling S, int zoom>
[[gnu::always_inline]] inline void convert_ends(const Rows& rows, int64_t n) {
  const Chroma<L, (S.columns > 1)> chroma(samples_of_ends<S.columns>(rows.u, n),
                                          samples_of_ends<S.columns>(rows.v, n));
#pragma GCC unroll 2
  for (int row = 0; row < S.rows; ++row) {
    const auto pixels = chroma.with(samples_of_ends<1>(rows.y + row * rows.y_step, n));
    uint8_t* const dst = rows.dst + zoom * row * rows.dst_step;
    if constexpr (zoom == 1)
      store_ends<L.bytes>(dst, pixels, n);
    else
#pragma GCC unroll 4
      for (int k = 0; k < 4; ++k)
        store_squares<zoom>(dst + 4 * zoom * (k < 2 ? 4 * k : n - 16 + 4 * k), rows.dst_step, pixels.quad[k]);
  }
}

/// Converts n columns of a picture, `count` times the rows that share their chroma.
template <PixelLayout L, Sampling S, int zoom = 1>
[[gnu::always_inline]] inline void convert(Rows rows, const Advance& next, int64_t count, int64_t n) {
  if (n >= 16) {
    for (; count > 0; --count, rows = rows + next) convert_wide<L, S, zoom>(rows, n);
  } else if (n >= 8) {
    for (; count > 0; --count, rows = rows + next) convert_ends<L, S, zoom>(rows, n);
  } else if (n > 0) {
    for (; count > 0; --count, rows = rows + next)
      for (int64_t x = 0; x < n; x += S.columns) convert_group<L, S, zoom>(rows, x);
  }
}

/// Converts the columns x0 <= x < x1, of which there is one at least, where chroma serves pairs of them.
template <Sampling S, int zoom>
[[gnu::flatten]] void convert_columns(const Rows& rows, const Advance& next, int64_t count, int64_t x0, int64_t x1) {
  const auto from = [&rows](int64_t x) { return rows + Advance{x, x / 2, 4 * zoom * x}; };  // x is even
  const auto column = [&](Rows pair, int64_t x) {
    for (int64_t k = count; k > 0; --k, pair = pair + next) convert_group<layout::ABGR, S, zoom, 1>(pair, x);
  };
  const int64_t begin = (x0 + 1) & ~int64_t(1), end = x1 & ~int64_t(1);
  if (x0 & 1) column(from(begin - 2), 1);
  convert<layout::ABGR, S, zoom>(from(begin), next, count, end - begin);
  if (x1 & 1) column(from(end), 0);
}

}  // namespace pqx::yuv
