/// RGB-family pixels to full range YCC planes. The three products of a pixel with each row of the matrix are rounded
/// one by one; chroma is converted for every pixel and only then averaged.
#pragma once

#include "color/load_pixels.h"
#include "color/table_form.h"
#include "common/lanes.h"
#include "common/pixel_layout.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx {

/// Table words of one pixel, or the sum of several: luma from bit 0 on, chroma from bits 10 and 21 on.
struct PackedYcc {
  uint32_t word;

  PackedYcc operator+(PackedYcc other) const { return {word + other.word}; }
  uint8_t y() const { return uint8_t(word); }
  // Means of 1 << shift pixels.
  uint8_t cb(int shift = 0) const { return uint8_t(word >> (10 + shift)); }
  uint8_t cr(int shift = 0) const { return uint8_t(word >> (21 + shift)); }
  /// The nine bits of each chroma sum of two pixels; above them stand carries of the signed fields.
  PackedYcc chroma_of_pair() const { return {word & (511u << 10 | 511u << 21)}; }
};

// Means of two or four chroma samples round down at even outputs; at odd ones this is added to the sum.
inline constexpr int odd_rounding_of_pairs = 1, odd_rounding_of_squares = 2;

constexpr PackedYcc in_both_chromas(uint32_t x) { return {x << 10 | x << 21}; }

template <PixelLayout L>
PackedYcc packed_ycc(const uint8_t* pixel) {
  constexpr int flip = L.inks ? 255 : 0;
  return {pqx_t_r2j[pixel[L.r] ^ flip] + pqx_t_g2j[pixel[L.g] ^ flip] + pqx_t_b2j[pixel[L.b] ^ flip]};
}

/// The terms of one channel, as forms of one operand. Chroma terms are subtracted, but for the halves.
struct ChannelForms {
  TableForm y, cb, cr;

  constexpr int bias() const { return y.bias; }
  constexpr bool agree_with(auto rule) const {
    const auto chroma = [](const TableForm& form, auto table) {
      return form.factor == TableForm::half ? form.agrees_with(table) : form.agrees_with(minus(table));
    };
    return y.bias == cb.bias && y.bias == cr.bias && y.agrees_with([=](int x) { return rule(x).y; }) &&
           chroma(cb, [=](int x) { return rule(x).cb; }) && chroma(cr, [=](int x) { return rule(x).cr; });
  }
};
inline constexpr ChannelForms red{
    .y = {0, 32768, 19593, 9796}, .cb = {0, 32768, 11057, 5528}, .cr = {0, 32768, TableForm::half, 16384}};
inline constexpr ChannelForms green{
    .y = {0, 24007, 38468, 14091}, .cb = {0, 24007, 21712, 8081}, .cr = {0, 24007, 27442, 10180}};
inline constexpr ChannelForms blue{
    .y = {0, 32768, 7471, 3735}, .cb = {0, 32768, TableForm::half, 16384}, .cr = {0, 32768, 5327, 2663}};
static_assert(red.agree_with(rule::ycc_from_red));
static_assert(green.agree_with(rule::ycc_from_green));
static_assert(blue.agree_with(rule::ycc_from_blue));

/// What the sums over the channels exceed the samples by.
inline constexpr rule::Ycc excess{.y = red.y.excess + green.y.excess + blue.y.excess,
                                  .cb = blue.cb.excess - red.cb.excess - green.cb.excess,
                                  .cr = red.cr.excess - green.cr.excess - blue.cr.excess};

/// Eight pixels, as operands.
struct RgbOperands {
  u16x8 r, g, b;

  u16x8 y() const { return red.y.product(r) + green.y.product(g) + blue.y.product(b); }
  u16x8 cb() const { return blue.cb.product(b) - red.cb.product(r) - green.cb.product(g); }
  u16x8 cr() const { return red.cr.product(r) - green.cr.product(g) - blue.cr.product(b); }
};

/// Sixteen pixels: the even ones and the odd ones.
template <PixelLayout L>
struct RgbBlock {
  RgbOperands even, odd;
  u16x8 k;

  explicit RgbBlock(const uint8_t* src) {
    const PixelPairs<L.bytes> pairs = load_pixel_pairs<L.bytes>(src);
    const auto biased = [&](int byte, int bias) {
      return L.inks ? all_u16(bias + 255) - pairs.byte(byte) : pairs.byte(byte) + all_u16(bias);
    };
    const auto pixels_at = [&](int byte) {
      return RgbOperands{biased(byte + L.r, red.bias()), biased(byte + L.g, green.bias()),
                         biased(byte + L.b, blue.bias())};
    };
    even = pixels_at(0);
    odd = pixels_at(L.bytes);
    if constexpr (L.inks) k = pairs.byte(L.a) | pairs.byte(L.a + L.bytes) << 8;
  }

  u16x8 y() const { return join(even.y(), odd.y(), excess.y); }
  u16x8 cb() const { return join(even.cb(), odd.cb(), excess.cb); }
  u16x8 cr() const { return join(even.cr(), odd.cr(), excess.cr); }
  u16x8 cb_of_pairs() const { return even.cb() + odd.cb(); }
  u16x8 cr_of_pairs() const { return even.cr() + odd.cr(); }

 private:
  // Without the excess the samples are bytes, so that even and odd ones join without a pack.
  static u16x8 join(u16x8 even, u16x8 odd, int excess) { return even + (odd << 8) - all_u16(257 * excess); }
};

/// Means of sums of 1 << shift samples, with the sums' excess still in them. The first output is an even one.
inline u16x8 means(u16x8 sums, int shift, int odd_rounding, int excess) {
  const int even_term = -(excess << shift), odd_term = even_term + odd_rounding;
  return (sums + alternating<u16x8>(even_term, odd_term)) >> shift;
}

inline void store_means(uint8_t* cb, uint8_t* cr, u16x8 cb_means, u16x8 cr_means) {
  const u8x16 both = pack(as_signed(cb_means), as_signed(cr_means));
  store_half(cb, both);
  store_high_half(cr, both);
}

// Rows of fewer than 16 pixels, and the pixels after the blocks of longer ones, are converted one by one. Both ways are
// functions of their own, so that a short row does not save registers for the other.

template <PixelLayout L>
[[gnu::noinline]] pqx_Status single_pixels_to_444(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len,
                                                  uint8_t* k) {
  for (int i = 0; i < len; ++i, src += L.bytes) {
    const PackedYcc pixel = packed_ycc<L>(src);
    y[i] = pixel.y();
    cb[i] = pixel.cb();
    cr[i] = pixel.cr();
    if constexpr (L.inks) k[i] = src[L.a];
  }
  return PQX_OK;
}

template <PixelLayout L>
[[gnu::noinline]] pqx_Status single_pixels_to_422(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len) {
  for (int j = 0; j < len / 2; ++j, src += 2 * L.bytes) {
    const PackedYcc a = packed_ycc<L>(src), b = packed_ycc<L>(src + L.bytes);
    y[2 * j] = a.y();
    y[2 * j + 1] = b.y();
    PackedYcc sum = a + b;
    if (j % 2) sum = sum + in_both_chromas(odd_rounding_of_pairs);
    cb[j] = sum.cb(1);
    cr[j] = sum.cr(1);
  }
  return PQX_OK;
}

template <PixelLayout L>
[[gnu::noinline]] pqx_Status single_pixels_to_420(const uint8_t* src0, const uint8_t* src1, uint8_t* y0, uint8_t* y1,
                                                  uint8_t* cb, uint8_t* cr, int len) {
  for (int j = 0; j < len / 2; ++j, src0 += 2 * L.bytes, src1 += 2 * L.bytes) {
    const PackedYcc a = packed_ycc<L>(src0), b = packed_ycc<L>(src0 + L.bytes);
    const PackedYcc c = packed_ycc<L>(src1), d = packed_ycc<L>(src1 + L.bytes);
    y0[2 * j] = a.y();
    y0[2 * j + 1] = b.y();
    y1[2 * j] = c.y();
    y1[2 * j + 1] = d.y();
    PackedYcc sum = (a + b).chroma_of_pair() + (c + d).chroma_of_pair();
    if (j % 2) sum = sum + in_both_chromas(odd_rounding_of_squares);
    cb[j] = sum.cb(2);
    cr[j] = sum.cr(2);
  }
  return PQX_OK;
}

/// How many pixels of a row of 16 or more go in blocks of 16 that start at multiples of align: all whole groups, or
/// those of whole blocks where the rest is too small to be worth a block of its own.
template <int align>
int pixels_in_blocks(int len) {
  constexpr int few = 8;
  const int aligned = len - len % align;
  return aligned % 16 > few ? aligned : aligned - aligned % 16;
}

template <PixelLayout L>
[[gnu::noinline, gnu::flatten]] pqx_Status blocks_to_444(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr,
                                                         int len, uint8_t* k) {
  const int done = pixels_in_blocks<1>(len);
  cover<16>(done, [=](int64_t i) {
    prefetch_ahead(src + i * L.bytes, y + i, cb + i, cr + i);
    const RgbBlock<L> pixels(src + i * L.bytes);
    store(y + i, pixels.y());
    store(cb + i, pixels.cb());
    store(cr + i, pixels.cr());
    if constexpr (L.inks) {
      prefetch_ahead(k + i);
      store(k + i, pixels.k);
    }
  });
  if (done == len) return PQX_OK;
  if constexpr (L.inks) k += done;
  return single_pixels_to_444<L>(src + int64_t(done) * L.bytes, y + done, cb + done, cr + done, len - done, k);
}

template <PixelLayout L>
[[gnu::noinline, gnu::flatten]] pqx_Status blocks_to_422(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr,
                                                         int len) {
  const int done = pixels_in_blocks<4>(len);
  cover<16>(done, [=](int64_t i) {
    prefetch_ahead(src + i * L.bytes, y + i, cb + i / 2, cr + i / 2);
    const RgbBlock<L> pixels(src + i * L.bytes);
    store(y + i, pixels.y());
    store_means(cb + i / 2, cr + i / 2, means(pixels.cb_of_pairs(), 1, odd_rounding_of_pairs, excess.cb),
                means(pixels.cr_of_pairs(), 1, odd_rounding_of_pairs, excess.cr));
  });
  if (done == len) return PQX_OK;
  return single_pixels_to_422<L>(src + int64_t(done) * L.bytes, y + done, cb + done / 2, cr + done / 2, len - done);
}

template <PixelLayout L>
[[gnu::noinline, gnu::flatten]] pqx_Status blocks_to_420(const uint8_t* src0, const uint8_t* src1, uint8_t* y0,
                                                         uint8_t* y1, uint8_t* cb, uint8_t* cr, int len) {
  const int done = pixels_in_blocks<4>(len);
  cover<16>(done, [=](int64_t i) {
    prefetch_ahead(src0 + i * L.bytes, src1 + i * L.bytes, y0 + i, y1 + i, cb + i / 2, cr + i / 2);
    const RgbBlock<L> upper(src0 + i * L.bytes);
    store(y0 + i, upper.y());
    const u16x8 cb_upper = upper.cb_of_pairs(), cr_upper = upper.cr_of_pairs();
    const RgbBlock<L> lower(src1 + i * L.bytes);
    store(y1 + i, lower.y());
    store_means(cb + i / 2, cr + i / 2, means(cb_upper + lower.cb_of_pairs(), 2, odd_rounding_of_squares, excess.cb),
                means(cr_upper + lower.cr_of_pairs(), 2, odd_rounding_of_squares, excess.cr));
  });
  const int64_t done_bytes = int64_t(done) * L.bytes;
  if (done == len) return PQX_OK;
  return single_pixels_to_420<L>(src0 + done_bytes, src1 + done_bytes, y0 + done, y1 + done, cb + done / 2,
                                 cr + done / 2, len - done);
}

/// The black channel of inks is copied to k.
template <PixelLayout L>
pqx_Status rgb_to_ycc444(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len, uint8_t* k = nullptr) {
  return len < 16 ? single_pixels_to_444<L>(src, y, cb, cr, len, k) : blocks_to_444<L>(src, y, cb, cr, len, k);
}

template <PixelLayout L>
pqx_Status rgb_to_ycc422(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len) {
  return len < 16 ? single_pixels_to_422<L>(src, y, cb, cr, len) : blocks_to_422<L>(src, y, cb, cr, len);
}

template <PixelLayout L>
pqx_Status rgb_to_ycc420(const uint8_t* src0, const uint8_t* src1, uint8_t* y0, uint8_t* y1, uint8_t* cb, uint8_t* cr,
                         int len) {
  return len < 16 ? single_pixels_to_420<L>(src0, src1, y0, y1, cb, cr, len)
                  : blocks_to_420<L>(src0, src1, y0, y1, cb, cr, len);
}

}  // namespace pqx
