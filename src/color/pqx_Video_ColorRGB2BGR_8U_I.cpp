#include "common/export.h"
#include "common/lanes.h"

namespace {

using pqx::u8x16, pqx::load, pqx::store;

// Five pixels and one byte that stays.
u8x16 exchanged(u8x16 pixels) {
  const u8x16 first = {_mm_setr_epi8(-1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, 0)};
  const u8x16 last = {_mm_slli_si128(first.v, 2)};
  const u8x16 kept = {_mm_setr_epi8(0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, -1)};
  return (u8x16{_mm_srli_si128(pixels.v, 2)} & first) | (u8x16{_mm_slli_si128(pixels.v, 2)} & last) | (pixels & kept);
}

}  // namespace

pqx_Status pqx_Video_ColorRGB2BGR_8U_I(uint8_t* pSrcDst, int len) {
  uint8_t* p = pSrcDst;
  int64_t left = len;
  if (left >= 6) {
    // The next pixels are loaded before the store that ends in their first byte: a load of bytes that were stored
    // just now in two pieces would wait for both.
    auto pixels = load<u8x16>(p);
    for (; left >= 16; left -= 10, p += 30) {
      const auto second = load<u8x16>(p + 15), third = load<u8x16>(p + 30);
      store(p, exchanged(pixels));
      store(p + 15, exchanged(second));
      pixels = third;
    }
    if (left >= 11) {
      const auto next = load<u8x16>(p + 15);
      store(p, exchanged(pixels));
      pixels = next;
      left -= 5, p += 15;
    }
    store(p, exchanged(pixels));
    p += 15;
    left -= 5;
  }
  for (; left > 0; --left, p += 3) {
    const uint8_t first = p[0];
    p[0] = p[2];
    p[2] = first;
  }
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_Video_ColorRGB2BGR_8U_I);
