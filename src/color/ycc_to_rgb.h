/// Rows of full range YCC with 8-bit samples to packed pixels, and YCCK to CMYK.
#pragma once

#include <stdint.h>

#include "color/store_pixels.h"
#include "color/ycc_chroma.h"
#include "common/pixel_layout.h"
#include "pqx_video.h"

namespace pqx {

/// The first eight and the last eight of n bytes, 8 <= n.
inline u8x16 load_ends(const uint8_t* p, int64_t n) {
  return {_mm_unpacklo_epi64(load_half<u8x16>(p).v, load_half<u8x16>(p + n - 8).v)};
}

/// One row of luma and where its pixels go.
struct OpaqueRow {
  const uint8_t* y;
  uint8_t* dst;

  int fourth_at(int64_t) const { return 255; }
  u8x16 fourth(int64_t) const { return all_u8(255); }
  u8x16 fourth_of_ends(int64_t) const { return all_u8(255); }
};
struct RowWithBlack {
  const uint8_t* y;
  uint8_t* dst;
  const uint8_t* k;

  int fourth_at(int64_t i) const { return k[i]; }
  u8x16 fourth(int64_t i) const { return load<u8x16>(k + i); }
  u8x16 fourth_of_ends(int64_t n) const { return load_ends(k, n); }
};

/// Chroma terms of the pixels 0 to 7 and 8 to 15.
struct InOrder {
  PixelWords low, high;
};
/// Chroma terms of pixels at even and odd places.
struct EvenOdd {
  PixelWords even, odd;
};

template <PixelLayout L>
inline constexpr ChromaForms forms = L.inks ? ink : light;

// Inks are 255 less the channels, and a saturated byte is as far from 255 as its complement from 0.
template <PixelLayout L>
PixelWords with_chroma(i16x8 y, const PixelWords& t) {
  if constexpr (L.inks) return {y - t.r, y - t.g, y - t.b};
  return {y + t.r, y + t.g, y + t.b};
}

template <PixelLayout L>
[[gnu::always_inline]] inline Quads<L.bytes> pixels(u8x16 y, const InOrder& terms, u8x16 fourth) {
  if constexpr (L.inks) y = y ^ all_u8(255);
  const PixelWords low = with_chroma<L>(as_signed(low_bytes(y)), terms.low);
  const PixelWords high = with_chroma<L>(as_signed(high_bytes(y)), terms.high);
  return quads_of<L>(PixelBytes{pack(low.r, high.r), pack(low.g, high.g), pack(low.b, high.b), fourth});
}

template <PixelLayout L>
[[gnu::always_inline]] inline Quads<L.bytes> pixels(u8x16 y, const EvenOdd& terms, u8x16) {
  return quads_of<L>(with_chroma<L>(as_signed(even_bytes(y)), terms.even),
                     with_chroma<L>(as_signed(odd_bytes(y)), terms.odd));
}

struct Chroma {
  int cb, cr;
};

/// A chroma sample for each pixel. Pixels of three bytes are put together with fewer instructions from even and odd
/// ones, those of four in order.
template <PixelLayout L>
struct Chroma444 {
  const uint8_t *cb, *cr;

  Chroma at(int64_t i) const { return {cb[i], cr[i]}; }
  auto terms(int64_t i) const { return terms_of(load<u8x16>(cb + i), load<u8x16>(cr + i)); }
  auto terms_of_ends(int64_t n) const { return terms_of(load_ends(cb, n), load_ends(cr, n)); }

 private:
  [[gnu::always_inline]] static auto terms_of(u8x16 b, u8x16 r) {
    using Cb = Operand<forms<L>.cb>;
    using Cr = Operand<forms<L>.cr>;
    if constexpr (L.bytes == 3)
      return EvenOdd{chroma_terms<forms<L>>(Cb::even(b), Cr::even(r)),
                     chroma_terms<forms<L>>(Cb::odd(b), Cr::odd(r))};
    else
      return InOrder{chroma_terms<forms<L>>(Cb::low(b), Cr::low(r)),
                     chroma_terms<forms<L>>(Cb::high(b), Cr::high(r))};
  }
};

using LightCb = Operand<light.cb>;
using LightCr = Operand<light.cr>;

/// A chroma sample for each pair of pixels.
struct ChromaNearest {
  const uint8_t *cb, *cr;

  Chroma at(int64_t i) const { return {cb[i >> 1], cr[i >> 1]}; }
  EvenOdd terms(int64_t i) const {
    return terms_of(load_half<u8x16>(cb + (i >> 1)), load_half<u8x16>(cr + (i >> 1)));
  }
  EvenOdd terms_of_ends(int64_t n) const { return terms_of(ends(cb, n >> 1), ends(cr, n >> 1)); }

 private:
  [[gnu::always_inline]] static EvenOdd terms_of(u8x16 b, u8x16 r) {
    const PixelWords both = chroma_terms<light>(LightCb::low(b), LightCr::low(r));
    return {both, both};
  }
  static u8x16 ends(const uint8_t* p, int64_t n) {
    return {
        _mm_unpacklo_epi32(_mm_cvtsi32_si128(load_one<int32_t>(p)), _mm_cvtsi32_si128(load_one<int32_t>(p + n - 4)))};
  }
};

/// A chroma sample for each pair of pixels, which weighs three times what the nearest other one does. The ends of the
/// row are their own neighbours.
struct ChromaLinear {
  const uint8_t *cb, *cr;
  int64_t pairs;

  Chroma at(int64_t i) const { return {filtered(cb, i), filtered(cr, i)}; }

  [[gnu::always_inline]] EvenOdd terms(int64_t i) const {
    const int64_t j = i >> 1;
    const u8x16 c = both(cb + j, cr + j);
    const u8x16 left = j == 0 ? before(c) : both(cb + j - 1, cr + j - 1);
    const u8x16 right = j + 8 == pairs ? behind(c) : both(cb + j + 1, cr + j + 1);
    return terms_of(left, c, right);
  }

  [[gnu::always_inline]] EvenOdd terms_of_ends(int64_t) const {
    const uint64_t b = row(cb), r = row(cr);
    auto left = [](uint64_t x) { return x << 8 | (x & 255); };
    auto right = [this](uint64_t x) { return x >> 8 | (x & uint64_t(255) << 8 * (pairs - 1)); };
    return terms_of(ends(left(b), left(r)), ends(b, r), ends(right(b), right(r)));
  }

 private:
  // Eight samples of Cb, then eight of Cr.
  static u8x16 both(const uint8_t* b, const uint8_t* r) {
    return {_mm_unpacklo_epi64(load_half<u8x16>(b).v, load_half<u8x16>(r).v)};
  }
  static u8x16 before(u8x16 c) { return u8x16{_mm_slli_epi64(c.v, 8)} | (c & u8x16{_mm_set1_epi64x(255)}); }
  static u8x16 behind(u8x16 c) {
    return u8x16{_mm_srli_epi64(c.v, 8)} | (c & u8x16{_mm_set1_epi64x(int64_t(uint64_t(255) << 56))});
  }

  [[gnu::always_inline]] static EvenOdd terms_of(u8x16 left, u8x16 c, u8x16 right) {
    // (3 c + left + 1) >> 2 and (3 c + right + 2) >> 2.
    const u8x16 even = mean_down(c, mean_up(c, left)), odd = mean_up(c, mean_down(c, right));
    return {chroma_terms<light>(LightCb::low(even), LightCr::high(even)),
            chroma_terms<light>(LightCb::low(odd), LightCr::high(odd))};
  }

  // Four to seven samples, and the first four and the last four of them.
  uint64_t row(const uint8_t* c) const {
    return load_one<uint32_t>(c) | uint64_t(load_one<uint32_t>(c + pairs - 4)) << 8 * (pairs - 4);
  }
  u8x16 ends(uint64_t b, uint64_t r) const {
    auto four_and_four = [this](uint64_t x) { return int64_t(uint32_t(x) | x >> 8 * (pairs - 4) << 32); };
    return {_mm_unpacklo_epi64(_mm_cvtsi64_si128(four_and_four(b)), _mm_cvtsi64_si128(four_and_four(r)))};
  }

  int filtered(const uint8_t* c, int64_t i) const {
    const int64_t j = i >> 1, before = j == 0 ? 0 : j - 1, behind = j == pairs - 1 ? j : j + 1;
    return i & 1 ? (3 * c[j] + c[behind] + 2) >> 2 : (3 * c[j] + c[before] + 1) >> 2;
  }
};

template <PixelLayout L>
void store_pixel(uint8_t* pixel, int y, Chroma c, int fourth) {
  const int y2 = 2 * (L.inks ? 255 - y : y);
  auto byte = [y2](int term) { return pqx_tClip[576 + y2 + (L.inks ? -term : term)]; };
  pixel[L.r] = byte(pqx_tRCr[c.cr] - rule::ycc_red_constant);
  pixel[L.g] = byte(pqx_tGCb[c.cb] - pqx_tGCr[c.cr]);
  pixel[L.b] = byte(pqx_tBCb[c.cb] - rule::ycc_blue_constant);
  if constexpr (L.a >= 0) pixel[L.a] = uint8_t(fourth);
}

/// Converts n pixels of each row; the rows share their chroma.
template <PixelLayout L, class Chromas, class... Rows>
[[gnu::always_inline]] inline pqx_Status ycc_to_pixels(int64_t n, Chromas chroma, Rows... row) {
  if (n >= 16) {
    // The last sixteen pixels may take in some of those before them once more.
    for (int64_t i = 0, next; i < n; i = next) {
      next = i + 32 <= n || i + 16 == n ? i + 16 : n - 16;
      const auto terms = chroma.terms(i);
      (store_pixels<L.bytes>(row.dst + L.bytes * i, pixels<L>(load<u8x16>(row.y + i), terms, row.fourth(i)),
                             next == n),
       ...);
    }
  } else if (n >= 8) {
    const auto terms = chroma.terms_of_ends(n);
    (store_ends<L.bytes>(row.dst, pixels<L>(load_ends(row.y, n), terms, row.fourth_of_ends(n)), n), ...);
  } else {
    for (int64_t i = 0; i < n; ++i)
      (store_pixel<L>(row.dst + L.bytes * i, row.y[i], chroma.at(i), row.fourth_at(i)), ...);
  }
  return PQX_OK;
}

// With an odd length the last pixel of rows that share chroma in pairs is left alone.

template <PixelLayout L>
pqx_Status ycc444_to_rgb(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  return ycc_to_pixels<L>(len, Chroma444<L>{cb, cr}, OpaqueRow{y, dst});
}

template <PixelLayout L>
pqx_Status ycc422_to_rgb(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  return ycc_to_pixels<L>(len & ~1, ChromaNearest{cb, cr}, OpaqueRow{y, dst});
}

template <PixelLayout L>
pqx_Status ycc420_to_rgb(const uint8_t* y0, const uint8_t* y1, const uint8_t* cb, const uint8_t* cr, uint8_t* dst0,
                         uint8_t* dst1, int len) {
  return ycc_to_pixels<L>(len & ~1, ChromaNearest{cb, cr}, OpaqueRow{y0, dst0}, OpaqueRow{y1, dst1});
}

template <PixelLayout L>
pqx_Status ycc422_to_rgb_bilinear(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* dst, int len) {
  const int64_t pairs = len < 2 ? 1 : len / 2;
  return ycc_to_pixels<L>(2 * pairs, ChromaLinear{cb, cr, pairs}, OpaqueRow{y, dst});
}

inline pqx_Status ycck444_to_cmyk(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, const uint8_t* k,
                                  uint8_t* dst, int len) {
  return ycc_to_pixels<layout::CMYK>(len, Chroma444<layout::CMYK>{cb, cr}, RowWithBlack{y, dst, k});
}

}  // namespace pqx
