/// RGB-family pixels to full range YCC planes. The three products of a pixel with each row of the matrix are rounded
/// one by one; chroma is converted for every pixel and only then averaged.
#pragma once

#include "color/load_pixels.h"
#include "color/table_rules.h"
#include "common/lanes.h"
#include "common/pixel_layout.h"
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

constexpr PackedYcc in_both_chromas(int x) { return {uint32_t(x) << 10 | uint32_t(x) << 21}; }

template <PixelLayout L>
PackedYcc packed_ycc(const uint8_t* pixel) {
  constexpr int flip = L.inks ? 255 : 0;
  return {pqx_t_r2j[pixel[L.r] ^ flip] + pqx_t_g2j[pixel[L.g] ^ flip] + pqx_t_b2j[pixel[L.b] ^ flip]};
}

/// Every rounded product is one 16-bit high product of the biased sample, but for a constant: the bias supplies the
/// fraction from which the floor rounds. A factor of 0 stands for the halves, which are shifts.
struct Factors {
  int bias, y, cb, cr;

  constexpr rule::Ycc products(int x) const {
    const auto floor_of = [=, this](int factor) {
      return factor ? int(uint32_t(x + bias) * uint32_t(factor) >> 16) : -((x + bias) >> 1);
    };
    return {floor_of(y), -floor_of(cb), -floor_of(cr)};
  }
  /// What the products exceed the rule by.
  constexpr rule::Ycc excess(rule::Ycc rule_of_0) const {
    const rule::Ycc p = products(0);
    return {p.y - rule_of_0.y, p.cb - rule_of_0.cb, p.cr - rule_of_0.cr};
  }
  constexpr bool follow(auto rule) const {
    const rule::Ycc e = excess(rule(0));
    return rule::agree([=, this](int x) { return products(x).y - e.y; }, [=](int x) { return rule(x).y; }) &&
           rule::agree([=, this](int x) { return products(x).cb - e.cb; }, [=](int x) { return rule(x).cb; }) &&
           rule::agree([=, this](int x) { return products(x).cr - e.cr; }, [=](int x) { return rule(x).cr; });
  }
};
inline constexpr Factors red{32768, 19593, 11057, 0}, green{24007, 38468, 21712, 27442}, blue{32768, 7471, 0, 5327};
static_assert(red.follow(rule::ycc_from_red));
static_assert(green.follow(rule::ycc_from_green));
static_assert(blue.follow(rule::ycc_from_blue));

constexpr rule::Ycc sum(rule::Ycc a, rule::Ycc b, rule::Ycc c) {
  return {a.y + b.y + c.y, a.cb + b.cb + c.cb, a.cr + b.cr + c.cr};
}
inline constexpr rule::Ycc excess = sum(red.excess(rule::ycc_from_red(0)), green.excess(rule::ycc_from_green(0)),
                                        blue.excess(rule::ycc_from_blue(0)));

/// Eight pixels, as biased words.
struct BiasedRgb {
  u16x8 r, g, b;

  u16x8 y() const {
    return high_product(r, all_u16(red.y)) + high_product(g, all_u16(green.y)) + high_product(b, all_u16(blue.y));
  }
  u16x8 cb() const { return (b >> 1) - high_product(r, all_u16(red.cb)) - high_product(g, all_u16(green.cb)); }
  u16x8 cr() const { return (r >> 1) - high_product(g, all_u16(green.cr)) - high_product(b, all_u16(blue.cr)); }
};

/// Sixteen pixels: the even ones and the odd ones.
template <PixelLayout L>
struct RgbBlock {
  BiasedRgb even, odd;
  u16x8 k;

  explicit RgbBlock(const uint8_t* src) {
    const PixelPairs<L.bytes> pairs = load_pixel_pairs<L.bytes>(src);
    const auto biased = [&](int byte, int bias) {
      return L.inks ? all_u16(bias + 255) - pairs.byte(byte) : pairs.byte(byte) + all_u16(bias);
    };
    const auto pixels_at = [&](int byte) {
      return BiasedRgb{biased(byte + L.r, red.bias), biased(byte + L.g, green.bias), biased(byte + L.b, blue.bias)};
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

// Halves go down at even outputs and up at odd ones.
constexpr int rounding_of_pair(int64_t output) { return int(output % 2); }
constexpr int rounding_of_square(int64_t output) { return int(output % 2 * 2); }

/// Means of sums of 1 << shift samples, with the sums' excess still in them. The first output is an even one.
inline u16x8 means(u16x8 sums, int shift, int odd_rounding, int excess) {
  const int even_term = -(excess << shift), odd_term = even_term + odd_rounding;
  return (sums + u16x8{_mm_set1_epi32(int(uint32_t(odd_term) << 16 | uint16_t(even_term)))}) >> shift;
}

inline void store_means(uint8_t* cb, uint8_t* cr, u16x8 cb_means, u16x8 cr_means) {
  const u8x16 both = pack(as_signed(cb_means), as_signed(cr_means));
  store_half(cb, both);
  store_high_half(cr, both);
}

/// Calls block(i) for runs of 16 pixels and one(i) for single steps, so that together they cover 0 <= i < n. The
/// last run may overlap the one before it, which takes no longer than a few single steps; all start at a multiple of
/// align.
template <int align, int step, class Block, class One>
void cover(int64_t n, Block block, One one) {
  constexpr int few = 8;
  int64_t i = 0;
  if (n >= 16) {
    const int64_t aligned = n - n % align, end = aligned % 16 < few ? aligned - aligned % 16 : aligned;
    for (; i < end; i += 16) block(i < end - 16 ? i : end - 16);
    i = end;
  }
  for (; i < n; i += step) one(i);
}

/// The black channel of inks is copied to k.
template <PixelLayout L>
[[gnu::flatten]] pqx_Status rgb_to_ycc444(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len,
                                          uint8_t* k = nullptr) {
  const auto block = [=](int64_t i) {
    const RgbBlock<L> pixels(src + i * L.bytes);
    store(y + i, pixels.y());
    store(cb + i, pixels.cb());
    store(cr + i, pixels.cr());
    if constexpr (L.inks) store(k + i, pixels.k);
  };
  const auto one = [=](int64_t i) {
    const uint8_t* p = src + i * L.bytes;
    const PackedYcc pixel = packed_ycc<L>(p);
    y[i] = pixel.y();
    cb[i] = pixel.cb();
    cr[i] = pixel.cr();
    if constexpr (L.inks) k[i] = p[L.a];
  };
  cover<1, 1>(len, block, one);
  return PQX_OK;
}

template <PixelLayout L>
[[gnu::flatten]] pqx_Status rgb_to_ycc422(const uint8_t* src, uint8_t* y, uint8_t* cb, uint8_t* cr, int len) {
  const auto block = [=](int64_t i) {
    const RgbBlock<L> pixels(src + i * L.bytes);
    store(y + i, pixels.y());
    store_means(cb + i / 2, cr + i / 2, means(pixels.cb_of_pairs(), 1, rounding_of_pair(1), excess.cb),
                means(pixels.cr_of_pairs(), 1, rounding_of_pair(1), excess.cr));
  };
  const auto pair = [=](int64_t i) {
    const uint8_t* p = src + i * L.bytes;
    const PackedYcc a = packed_ycc<L>(p), b = packed_ycc<L>(p + L.bytes);
    const PackedYcc sum = a + b + in_both_chromas(rounding_of_pair(i / 2));
    y[i] = a.y();
    y[i + 1] = b.y();
    cb[i / 2] = sum.cb(1);
    cr[i / 2] = sum.cr(1);
  };
  cover<4, 2>(len - (len & 1), block, pair);
  return PQX_OK;
}

template <PixelLayout L>
[[gnu::flatten]] pqx_Status rgb_to_ycc420(const uint8_t* src0, const uint8_t* src1, uint8_t* y0, uint8_t* y1,
                                          uint8_t* cb, uint8_t* cr, int len) {
  const auto block = [=](int64_t i) {
    const RgbBlock<L> upper(src0 + i * L.bytes);
    store(y0 + i, upper.y());
    const u16x8 cb_upper = upper.cb_of_pairs(), cr_upper = upper.cr_of_pairs();
    const RgbBlock<L> lower(src1 + i * L.bytes);
    store(y1 + i, lower.y());
    store_means(cb + i / 2, cr + i / 2, means(cb_upper + lower.cb_of_pairs(), 2, rounding_of_square(1), excess.cb),
                means(cr_upper + lower.cr_of_pairs(), 2, rounding_of_square(1), excess.cr));
  };
  const auto square = [=](int64_t i) {
    const uint8_t *upper = src0 + i * L.bytes, *lower = src1 + i * L.bytes;
    const PackedYcc a = packed_ycc<L>(upper), b = packed_ycc<L>(upper + L.bytes);
    const PackedYcc c = packed_ycc<L>(lower), d = packed_ycc<L>(lower + L.bytes);
    const PackedYcc sum =
        (a + b).chroma_of_pair() + (c + d).chroma_of_pair() + in_both_chromas(rounding_of_square(i / 2));
    y0[i] = a.y();
    y0[i + 1] = b.y();
    y1[i] = c.y();
    y1[i + 1] = d.y();
    cb[i / 2] = sum.cb(2);
    cr[i / 2] = sum.cr(2);
  };
  cover<4, 2>(len - (len & 1), block, square);
  return PQX_OK;
}

}  // namespace pqx
