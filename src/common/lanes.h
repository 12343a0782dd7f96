/// 128-bit registers that know what their lanes hold, so that overloads pick the instruction.
#pragma once

#include <emmintrin.h>
#include <stdint.h>
#include <string.h>

namespace pqx {

struct u8x16 {
  __m128i v;
};
struct i16x8 {
  __m128i v;
};
struct u16x8 {
  __m128i v;
};
struct i32x4 {
  __m128i v;
};
struct f32x4 {
  __m128 v;
};
struct f64x2 {
  __m128d v;
};

// Loads and stores take any address.
template <class R>
R load(const void* p) {
  typedef decltype(R::v) Anywhere __attribute__((aligned(1), may_alias));
  return {*static_cast<const Anywhere*>(p)};
}
template <class R>
void store(void* p, R r) {
  typedef decltype(R::v) Anywhere __attribute__((aligned(1), may_alias));
  *static_cast<Anywhere*>(p) = r.v;
}

/// The low 8 bytes; the rest of the register is zero.
template <class R>
R load_half(const void* p) {
  return {_mm_loadl_epi64(static_cast<const __m128i*>(p))};
}
template <class R>
void store_half(void* p, R r) {
  _mm_storel_epi64(static_cast<__m128i*>(p), r.v);
}
template <class R>
void store_high_half(void* p, R r) {
  const auto high = r.v[1];
  memcpy(p, &high, sizeof high);
}

/// One value in a place of any alignment.
template <class T>
T load_one(const void* p) {
  T value;
  memcpy(&value, p, sizeof value);
  return value;
}
template <class T>
void store_one(void* p, T value) {
  memcpy(p, &value, sizeof value);
}

/// The low 4, 8 or 16 bytes; the rest of the register is zero.
template <int bytes, class R>
R load_bytes(const void* p) {
  static_assert(bytes == 4 || bytes == 8 || bytes == 16);
  if constexpr (bytes == 16) return load<R>(p);
  if constexpr (bytes == 8) return load_half<R>(p);
  if constexpr (bytes == 4) return {_mm_cvtsi32_si128(load_one<int32_t>(p))};
}
template <int bytes, class R>
void store_bytes(void* p, R r) {
  static_assert(bytes == 4 || bytes == 8 || bytes == 16);
  if constexpr (bytes == 16) store(p, r);
  if constexpr (bytes == 8) store_half(p, r);
  if constexpr (bytes == 4) store_one(p, _mm_cvtsi128_si32(r.v));
}

/// The first n bytes, 0 <= n <= 15, and zeros; no other byte is read.
template <class R>
R load_first(const void* p, int n) {
  const char* end = static_cast<const char*>(p) + n;
  __m128i r = _mm_setzero_si128();
  if (n & 1) r = _mm_cvtsi32_si128(*reinterpret_cast<const uint8_t*>(end -= 1));
  if (n & 2) r = _mm_or_si128(_mm_slli_si128(r, 2), _mm_cvtsi32_si128(load_one<uint16_t>(end -= 2)));
  if (n & 4) r = _mm_or_si128(_mm_slli_si128(r, 4), _mm_cvtsi32_si128(load_one<int32_t>(end -= 4)));
  if (n & 8) r = _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(end - 8)), r);
  return {r};
}

/// Stores the first n bytes, 0 <= n <= 15, and no other.
template <class R>
void store_first(void* p, R value, int n) {
  char* d = static_cast<char*>(p);
  __m128i r = value.v;
  if (n & 8) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d), r);
    r = _mm_unpackhi_epi64(r, r);
    d += 8;
  }
  if (n & 4) {
    store_one(d, _mm_cvtsi128_si32(r));
    r = _mm_srli_si128(r, 4);
    d += 4;
  }
  if (n & 2) {
    store_one(d, uint16_t(_mm_cvtsi128_si32(r)));
    r = _mm_srli_si128(r, 2);
    d += 2;
  }
  if (n & 1) *d = char(_mm_cvtsi128_si32(r));
}

/// The same bits as other lanes.
template <class R, class X>
R as(X x) {
  return {x.v};
}

inline u8x16 all_u8(int x) { return {_mm_set1_epi8(char(x))}; }
inline i16x8 all_i16(int x) { return {_mm_set1_epi16(short(x))}; }
inline u16x8 all_u16(int x) { return {_mm_set1_epi16(short(x))}; }
inline i32x4 all_i32(int x) { return {_mm_set1_epi32(x)}; }

/// Lanes of two values in turn.
template <class R>
R alternating(int even, int odd);
template <>
inline u8x16 alternating<u8x16>(int even, int odd) {
  return {_mm_set1_epi16(short(odd << 8 | even))};
}
template <>
inline u16x8 alternating<u16x8>(int even, int odd) {
  return {_mm_set1_epi32(int(uint32_t(odd) << 16 | uint16_t(even)))};
}
template <>
inline i16x8 alternating<i16x8>(int even, int odd) {
  return {alternating<u16x8>(even, odd).v};
}
template <>
inline i32x4 alternating<i32x4>(int even, int odd) {
  return {_mm_set_epi32(odd, even, odd, even)};
}

inline u8x16 operator&(u8x16 a, u8x16 b) { return {_mm_and_si128(a.v, b.v)}; }
inline u8x16 operator|(u8x16 a, u8x16 b) { return {_mm_or_si128(a.v, b.v)}; }
inline u8x16 operator^(u8x16 a, u8x16 b) { return {_mm_xor_si128(a.v, b.v)}; }
inline u8x16 operator+(u8x16 a, u8x16 b) { return {_mm_add_epi8(a.v, b.v)}; }
inline u8x16 operator-(u8x16 a, u8x16 b) { return {_mm_sub_epi8(a.v, b.v)}; }

// 16-bit sums wrap; the choice of i16x8 or u16x8 tells how shifts, comparisons and packs read the lanes.
inline i16x8 operator+(i16x8 a, i16x8 b) { return {_mm_add_epi16(a.v, b.v)}; }
inline i16x8 operator-(i16x8 a, i16x8 b) { return {_mm_sub_epi16(a.v, b.v)}; }
inline i16x8 operator&(i16x8 a, i16x8 b) { return {_mm_and_si128(a.v, b.v)}; }
inline i16x8 operator|(i16x8 a, i16x8 b) { return {_mm_or_si128(a.v, b.v)}; }
inline i16x8 operator>>(i16x8 a, int k) { return {_mm_srai_epi16(a.v, k)}; }
inline i16x8 operator<<(i16x8 a, int k) { return {_mm_slli_epi16(a.v, k)}; }
inline u16x8 operator+(u16x8 a, u16x8 b) { return {_mm_add_epi16(a.v, b.v)}; }
inline u16x8 operator-(u16x8 a, u16x8 b) { return {_mm_sub_epi16(a.v, b.v)}; }
inline u16x8 operator&(u16x8 a, u16x8 b) { return {_mm_and_si128(a.v, b.v)}; }
inline u16x8 operator|(u16x8 a, u16x8 b) { return {_mm_or_si128(a.v, b.v)}; }
inline u16x8 operator^(u16x8 a, u16x8 b) { return {_mm_xor_si128(a.v, b.v)}; }
inline u16x8 operator>>(u16x8 a, int k) { return {_mm_srli_epi16(a.v, k)}; }
inline u16x8 operator<<(u16x8 a, int k) { return {_mm_slli_epi16(a.v, k)}; }

inline i32x4 operator+(i32x4 a, i32x4 b) { return {_mm_add_epi32(a.v, b.v)}; }
inline i32x4 operator-(i32x4 a, i32x4 b) { return {_mm_sub_epi32(a.v, b.v)}; }
inline i32x4 operator&(i32x4 a, i32x4 b) { return {_mm_and_si128(a.v, b.v)}; }
inline i32x4 operator|(i32x4 a, i32x4 b) { return {_mm_or_si128(a.v, b.v)}; }
inline i32x4 operator>>(i32x4 a, int k) { return {_mm_srai_epi32(a.v, k)}; }
inline i32x4 operator<<(i32x4 a, int k) { return {_mm_slli_epi32(a.v, k)}; }

inline f32x4 operator+(f32x4 a, f32x4 b) { return {_mm_add_ps(a.v, b.v)}; }
inline f32x4 operator-(f32x4 a, f32x4 b) { return {_mm_sub_ps(a.v, b.v)}; }
inline f32x4 operator*(f32x4 a, f32x4 b) { return {_mm_mul_ps(a.v, b.v)}; }
inline f64x2 operator+(f64x2 a, f64x2 b) { return {_mm_add_pd(a.v, b.v)}; }
inline f64x2 operator-(f64x2 a, f64x2 b) { return {_mm_sub_pd(a.v, b.v)}; }
inline f64x2 operator*(f64x2 a, f64x2 b) { return {_mm_mul_pd(a.v, b.v)}; }

/// (a * m) >> 16.
inline u16x8 high_product(u16x8 a, u16x8 m) { return {_mm_mulhi_epu16(a.v, m.v)}; }
/// a * m, the low 16 bits. gcc must not know m: it would take the product apart into shifts and sums, which are more.
inline u16x8 low_product(u16x8 a, u16x8 m) {
  asm("" : "+x"(m.v));
  return {_mm_mullo_epi16(a.v, m.v)};
}
/// (a + b + 1) >> 1.
inline u8x16 mean_up(u8x16 a, u8x16 b) { return {_mm_avg_epu8(a.v, b.v)}; }
inline u16x8 mean_up(u16x8 a, u16x8 b) { return {_mm_avg_epu16(a.v, b.v)}; }
/// (a + b) >> 1.
inline u8x16 mean_down(u8x16 a, u8x16 b) { return mean_up(a, b) - ((a ^ b) & all_u8(1)); }
inline u16x8 mean_down(u16x8 a, u16x8 b) { return mean_up(a, b) - ((a ^ b) & all_u16(1)); }
/// Sums of two neighbouring products, in 32 bits.
inline i32x4 pair_products(i16x8 a, i16x8 b) { return {_mm_madd_epi16(a.v, b.v)}; }

/// Bytes 0, 2, 4, ... and 1, 3, 5, ... as words.
inline u16x8 even_bytes(u8x16 a) { return {_mm_and_si128(a.v, _mm_set1_epi16(255))}; }
inline u16x8 odd_bytes(u8x16 a) { return {_mm_srli_epi16(a.v, 8)}; }
/// Bytes 0 to 7 and 8 to 15 as words.
inline u16x8 low_bytes(u8x16 a) { return {_mm_unpacklo_epi8(a.v, _mm_setzero_si128())}; }
inline u16x8 high_bytes(u8x16 a) { return {_mm_unpackhi_epi8(a.v, _mm_setzero_si128())}; }
/// Lanes of a and b in turn.
inline u8x16 interleave_low(u8x16 a, u8x16 b) { return {_mm_unpacklo_epi8(a.v, b.v)}; }
inline u8x16 interleave_high(u8x16 a, u8x16 b) { return {_mm_unpackhi_epi8(a.v, b.v)}; }
inline i16x8 interleave_low(i16x8 a, i16x8 b) { return {_mm_unpacklo_epi16(a.v, b.v)}; }
inline i16x8 interleave_high(i16x8 a, i16x8 b) { return {_mm_unpackhi_epi16(a.v, b.v)}; }
inline u16x8 interleave_low(u16x8 a, u16x8 b) { return {_mm_unpacklo_epi16(a.v, b.v)}; }
inline u16x8 interleave_high(u16x8 a, u16x8 b) { return {_mm_unpackhi_epi16(a.v, b.v)}; }
inline i32x4 interleave_low(i32x4 a, i32x4 b) { return {_mm_unpacklo_epi32(a.v, b.v)}; }
inline i32x4 interleave_high(i32x4 a, i32x4 b) { return {_mm_unpackhi_epi32(a.v, b.v)}; }

/// The low, or the high, 8 bytes of a, then those of b.
template <class R>
R low_halves(R a, R b) {
  return {_mm_unpacklo_epi64(a.v, b.v)};
}
template <class R>
R high_halves(R a, R b) {
  return {_mm_unpackhi_epi64(a.v, b.v)};
}

/// The lanes of a, then those of b, saturated to the narrower type.
inline u8x16 pack(i16x8 a, i16x8 b) { return {_mm_packus_epi16(a.v, b.v)}; }
inline i16x8 pack(i32x4 a, i32x4 b) { return {_mm_packs_epi32(a.v, b.v)}; }

inline f32x4 floats(i32x4 a) { return {_mm_cvtepi32_ps(a.v)}; }

inline i16x8 as_signed(u16x8 a) { return {a.v}; }
inline u16x8 as_unsigned(i16x8 a) { return {a.v}; }

}  // namespace pqx
