/// Rows of full range YCC with 8-bit samples to packed pixels, and YCCK to CMYK.
#pragma once

#include <stdint.h>

#include "color/store_pixels.h"
#include "color/ycc_chroma.h"
#include "common/pixel_layout.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx::ycc {

/// A row of luma and where its pixels go.
struct Row {
  const uint8_t* y;
  uint8_t* dst;
};

/// The fourth channel of four-byte pixels: opaque alpha, or black as it is.
struct Opaque {
  int at(int64_t) const { return 255; }
  u8x16 sixteen(int64_t) const { return all_u8(255); }
  u8x16 ends(int64_t) const { return all_u8(255); }
};
struct Black {
  const uint8_t* k;

  int at(int64_t i) const { return k[i]; }
  u8x16 sixteen(int64_t i) const {
    prefetch_ahead(k + i);
    return load<u8x16>(k + i);
  }
  u8x16 ends(int64_t n) const { return load_ends(k, n); }
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

inline PixelWords operator+(u16x8 y, const PixelWords& t) {
  const i16x8 luma = as_signed(y);
  return {luma + t.r, luma + t.g, luma + t.b};
}
inline PixelWords operator-(u16x8 y, const PixelWords& t) {
  const i16x8 luma = as_signed(y);
  return {luma - t.r, luma - t.g, luma - t.b};
}

template <PixelLayout L>
[[gnu::always_inline]] inline Quads<L.bytes> pixels(u8x16 y, const InOrder& terms, u8x16 fourth) {
  PixelWords low, high;
  if constexpr (L.inks) {
    const u8x16 from_255 = y ^ all_u8(255);
    low = low_bytes(from_255) - terms.low;
    high = high_bytes(from_255) - terms.high;
  } else {
    low = low_bytes(y) + terms.low;
    high = high_bytes(y) + terms.high;
  }
  return quads_of<L>(PixelBytes{pack(low.r, high.r), pack(low.g, high.g), pack(low.b, high.b), fourth});
}

template <PixelLayout L>
[[gnu::always_inline]] inline Quads<L.bytes> pixels(u8x16 y, const EvenOdd& terms, u8x16) {
  static_assert(!L.inks);
  return quads_of<L>(even_bytes(y) + terms.even, odd_bytes(y) + terms.odd);
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
  auto sixteen(int64_t i) const {
    prefetch_ahead(cb + i, cr + i);
    return terms_of(load<u8x16>(cb + i), load<u8x16>(cr + i));
  }
  auto ends(int64_t n) const { return terms_of(load_ends(cb, n), load_ends(cr, n)); }

 private:
  [[gnu::always_inline]] static auto terms_of(u8x16 b, u8x16 r) {
    const TableForm &Cb = forms<L>.blue_cb, &Cr = forms<L>.red_cr;
    if constexpr (L.bytes == 3)
      return EvenOdd{chroma_terms(forms<L>, Cb.even(b), Cr.even(r)), chroma_terms(forms<L>, Cb.odd(b), Cr.odd(r))};
    else
      return InOrder{chroma_terms(forms<L>, Cb.low(b), Cr.low(r)), chroma_terms(forms<L>, Cb.high(b), Cr.high(r))};
  }
};

/// A chroma sample for each pair of pixels.
struct ChromaNearest {
  const uint8_t *cb, *cr;

  Chroma at(int64_t i) const { return {cb[i >> 1], cr[i >> 1]}; }
  EvenOdd sixteen(int64_t i) const {
    return terms_of(load_half<u8x16>(cb + (i >> 1)), load_half<u8x16>(cr + (i >> 1)));
  }
  EvenOdd ends(int64_t n) const { return terms_of(load_ends(cb, n >> 1), load_ends(cr, n >> 1)); }

 private:
  [[gnu::always_inline]] static EvenOdd terms_of(u8x16 b, u8x16 r) {
    const PixelWords both = chroma_terms(light, light.blue_cb.low(b), light.red_cr.low(r));
    return {both, both};
  }
};

/// A chroma sample for each pair of pixels, which weighs three times what the nearest other one does. The ends of the
/// row are their own neighbours.
struct ChromaLinear {
  const uint8_t *cb, *cr;
  int64_t pairs;

  Chroma at(int64_t) const { return {cb[0], cr[0]}; }  // a lone pair has no neighbour
  [[gnu::always_inline]] EvenOdd sixteen(int64_t i) const {
    const int64_t j = i >> 1;
    const u8x16 c = join(cb + j, cr + j);
    u8x16 left = up(c) | (c & both(255)), right = down(c) | (c & both(uint64_t(255) << 56));
    if (j > 0) [[likely]]
      left = join(cb + j - 1, cr + j - 1);
    if (j + 8 < pairs) [[likely]]
      right = join(cb + j + 1, cr + j + 1);
    return terms_of(left, c, right);
  }
  EvenOdd ends(int64_t) const { return pairs >= 4 ? terms_of_ends<4>() : terms_of_ends<2>(); }

 private:
  // Registers hold up to eight samples of Cb, then as many of Cr.
  static u8x16 join(u8x16 b, u8x16 r) { return low_halves(b, r); }
  static u8x16 join(const uint8_t* b, const uint8_t* r) { return join(load_half<u8x16>(b), load_half<u8x16>(r)); }
  static u8x16 up(u8x16 c, int places = 1) { return {_mm_slli_epi64(c.v, 8 * places)}; }
  static u8x16 down(u8x16 c) { return {_mm_srli_epi64(c.v, 8)}; }
  static u8x16 both(uint64_t bytes) { return {_mm_set1_epi64x(int64_t(bytes))}; }

  [[gnu::always_inline]] static EvenOdd terms_of(u8x16 left, u8x16 c, u8x16 right) {
    // (3 c + left + 1) >> 2 and (3 c + right + 2) >> 2. A mean that rounds up, of c and a sample less by one, rounds
    // down; where that sample is 0 already, so is c.
    const u8x16 even = mean_up(c, u8x16{_mm_subs_epu8(mean_up(c, left).v, all_u8(1).v)});
    const u8x16 odd = mean_up(c, mean_down(c, right));
    return {chroma_terms(light, light.blue_cb.low(even), light.red_cr.high(even)),
            chroma_terms(light, light.blue_cb.low(odd), light.red_cr.high(odd))};
  }

  // The first w samples and the last w. Where the two have others between them, those are neighbours too.
  template <int w>
  [[gnu::always_inline]] EvenOdd terms_of_ends() const {
    auto one_of_each = [=, this](int64_t of_first, int64_t of_last) {
      auto bytes = [=](const uint8_t* s) {
        return u8x16{_mm_cvtsi64_si128(int64_t(s[of_first] | uint64_t(s[of_last]) << 8 * w))};
      };
      return join(bytes(cb), bytes(cr));
    };
    constexpr uint64_t lowest = 255 | uint64_t(255) << 8 * w, highest = lowest << 8 * (w - 1);
    const u8x16 c = join(load_ends(cb, pairs), load_ends(cr, pairs));
    const u8x16 outer_left = one_of_each(0, pairs > w ? pairs - w - 1 : 0);
    const u8x16 outer_right = one_of_each(pairs > w ? w : w - 1, pairs - 1);
    return terms_of((up(c) & both(~lowest)) | outer_left, c, (down(c) & both(~highest)) | up(outer_right, w - 1));
  }
};

/// A row of up to three pixels, by the tables: vectors are no faster here.
template <PixelLayout L, class Chromas, class Fourth>
[[gnu::noinline]] pqx_Status store_few_pixels(int64_t n, Chromas chroma, Fourth fourth, Row row) {
  uint8_t* pixel = row.dst;
  for (int64_t i = 0; i < n; ++i, pixel += L.bytes) {
    constexpr int sign = L.inks ? -1 : 1;
    const uint8_t* const clipped = pqx_tClip + rule::clip_origin + 2 * (L.inks ? 255 - row.y[i] : row.y[i]);
    const Chroma c = chroma.at(i);
    pixel[L.r] = clipped[sign * (pqx_tRCr[c.cr] - rule::ycc_red_constant)];
    pixel[L.g] = clipped[sign * (pqx_tGCb[c.cb] - pqx_tGCr[c.cr])];
    pixel[L.b] = clipped[sign * (pqx_tBCb[c.cb] - rule::ycc_blue_constant)];
    if constexpr (L.a >= 0) pixel[L.a] = uint8_t(fourth.at(i));
  }
  return PQX_OK;
}

/// Converts n pixels of each row; the rows share their chroma.
template <PixelLayout L, class Chromas, class Fourth, class... Rows>
[[gnu::always_inline]] inline pqx_Status convert_rows(int64_t n, Chromas chroma, Fourth fourth, Rows... row) {
  if (n < 4) return (store_few_pixels<L>(n, chroma, fourth, row), ...);
  if (n < 16) {
    const auto terms = chroma.ends(n);
    (store_ends<L.bytes>(row.dst, pixels<L>(load_ends(row.y, n), terms, fourth.ends(n)), n), ...);
    return PQX_OK;
  }
  cover_in_one_loop<16>(
      n, [=](int64_t i, bool last) __attribute__((always_inline)) {
        prefetch_ahead((row.y + i)..., (row.dst + L.bytes * i)...);
        const auto terms = chroma.sixteen(i);
        (store_pixels(row.dst + L.bytes * i, pixels<L>(load<u8x16>(row.y + i), terms, fourth.sixteen(i)), last), ...);
      });
  return PQX_OK;
}

template <PixelLayout L>
[[gnu::always_inline]] inline pqx_Status convert_444(const uint8_t* y, const uint8_t* cb, const uint8_t* cr,
                                                     uint8_t* dst, int len) {
  return convert_rows<L>(len, Chroma444<L>{cb, cr}, Opaque{}, Row{y, dst});
}

// Where pairs of pixels share a chroma sample, an odd last pixel is left alone.

template <PixelLayout L>
[[gnu::always_inline]] inline pqx_Status convert_422_nearest(const uint8_t* y, const uint8_t* cb, const uint8_t* cr,
                                                             uint8_t* dst, int len) {
  return convert_rows<L>(len & ~1, ChromaNearest{cb, cr}, Opaque{}, Row{y, dst});
}

template <PixelLayout L>
[[gnu::always_inline]] inline pqx_Status convert_420_nearest(const uint8_t* y0, const uint8_t* y1, const uint8_t* cb,
                                                             const uint8_t* cr, uint8_t* dst0, uint8_t* dst1,
                                                             int len) {
  return convert_rows<L>(len & ~1, ChromaNearest{cb, cr}, Opaque{}, Row{y0, dst0}, Row{y1, dst1});
}

template <PixelLayout L>
[[gnu::always_inline]] inline pqx_Status convert_422_linear(const uint8_t* y, const uint8_t* cb, const uint8_t* cr,
                                                            uint8_t* dst, int len) {
  const int64_t pairs = len < 2 ? 1 : len / 2;
  return convert_rows<L>(2 * pairs, ChromaLinear{cb, cr, pairs}, Opaque{}, Row{y, dst});
}

[[gnu::always_inline]] inline pqx_Status convert_444_with_black(const uint8_t* y, const uint8_t* cb,
                                                                const uint8_t* cr, const uint8_t* k, uint8_t* dst,
                                                                int len) {
  return convert_rows<layout::CMYK>(len, Chroma444<layout::CMYK>{cb, cr}, Black{k}, Row{y, dst});
}

}  // namespace pqx::ycc
