/// Packed pixels of 3 or 4 bytes taken apart into words of one byte each.
#pragma once

#include "common/lanes.h"
#include "common/pixel_layout.h"

namespace pqx {

/// Sixteen pixels as eight pairs of neighbours: lane i of words[j] holds bytes 2j and 2j + 1 of pair i.
template <int pixel_bytes>
struct PixelPairs {
  u16x8 words[pixel_bytes];

  /// Byte k of every pair. Channel c of the even pixels stands at k = c, that of the odd ones at c + pixel_bytes.
  u16x8 byte(int k) const { return k % 2 ? words[k / 2] >> 8 : words[k / 2] & all_u16(255); }
};

/// Reads 16 pixels and nothing after them.
template <int pixel_bytes>
PixelPairs<pixel_bytes> load_pixel_pairs(const uint8_t* p) {
  u16x8 q04, q15, q26, q37;
  if constexpr (pixel_bytes == 4) {
    const auto two = [=](int i) { return load<u16x8>(p + 16 * i); };
    q04 = interleave_low(two(0), two(2)), q15 = interleave_high(two(0), two(2));
    q26 = interleave_low(two(1), two(3)), q37 = interleave_high(two(1), two(3));
  } else {
    const auto pair = [=](int i) { return load_half<u16x8>(p + 6 * i); };
    // The eight bytes of a pair reach into the next one: the last pair is taken from the end of its eight.
    const u16x8 last = {_mm_srli_epi64(load_half<u16x8>(p + 40).v, 16)};
    q04 = interleave_low(pair(0), pair(4)), q15 = interleave_low(pair(1), pair(5));
    q26 = interleave_low(pair(2), pair(6)), q37 = interleave_low(pair(3), last);
  }
  const u16x8 even_low = interleave_low(q04, q26), even_high = interleave_high(q04, q26);
  const u16x8 odd_low = interleave_low(q15, q37), odd_high = interleave_high(q15, q37);
  PixelPairs<pixel_bytes> pairs;
  pairs.words[0] = interleave_low(even_low, odd_low);
  pairs.words[1] = interleave_high(even_low, odd_low);
  pairs.words[2] = interleave_low(even_high, odd_high);
  if constexpr (pixel_bytes == 4) pairs.words[3] = interleave_high(even_high, odd_high);
  return pairs;
}

}  // namespace pqx
