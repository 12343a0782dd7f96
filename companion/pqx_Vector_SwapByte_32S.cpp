#include <emmintrin.h>
#include <stdint.h>
#include <string.h>

extern "C" {
__attribute__((visibility("default"))) int32_t pqx_Vector_SwapByte_32S(const int32_t* pSrc, int32_t* pDst,
                                                                       int32_t len);
__attribute__((visibility("default"))) decltype(pqx_Vector_SwapByte_32S) __pqx_Vector_SwapByte_32S
    __attribute__((alias("pqx_Vector_SwapByte_32S")));
}

namespace {

__m128i swap_bytes(__m128i words) {
  words = _mm_or_si128(_mm_slli_epi16(words, 8), _mm_srli_epi16(words, 8));
  constexpr int halves = _MM_SHUFFLE(2, 3, 0, 1);
  return _mm_shufflehi_epi16(_mm_shufflelo_epi16(words, halves), halves);
}

}  // namespace

/// Reverses the byte order of each of len 32-bit elements, from the first on; pDst may equal pSrc.
int32_t pqx_Vector_SwapByte_32S(const int32_t* pSrc, int32_t* pDst, int32_t len) {
  auto* src = reinterpret_cast<const char*>(pSrc);
  auto* dst = reinterpret_cast<char*>(pDst);
  int32_t left = len;
  for (; left >= 4; left -= 4, src += 16, dst += 16) {
    const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), swap_bytes(words));
  }
  for (; left > 0; --left, src += 4, dst += 4) {
    uint32_t word;
    memcpy(&word, src, 4);
    word = __builtin_bswap32(word);
    memcpy(dst, &word, 4);
  }
  return 0;
}
