/// Doubles a row of chroma by repetition (nearest neighbour) or linear interpolation, along the row (4:2:2) or in both
/// directions (4:2:0).
#pragma once

#include "common/lanes.h"
#include "common/overlap.h"
#include "common/walk.h"
#include "pqx_video.h"

namespace pqx {

/// Stores the first lanes of a and b, that many bytes of each, in turn.
template <int bytes, class R>
void store_interleaved(void* dst, R a, R b) {
  if constexpr (bytes == 16) {
    store(dst, interleave_low(a, b));
    store(static_cast<char*>(dst) + 16, interleave_high(a, b));
  } else {
    store_bytes<2 * bytes>(dst, interleave_low(a, b));
  }
}

inline u8x16 lanes_of(uint8_t);
inline u16x8 lanes_of(int16_t);
template <class T>
using LanesOf = decltype(lanes_of(T()));

/// Whether n samples at src and the 2n that they become at dst have no byte in common.
template <class T>
bool apart_when_doubled(const T* src, int64_t n, const T* dst) {
  const int64_t bytes = n * int64_t(sizeof(T));
  return apart(src, bytes, dst, 2 * bytes);
}

// Repetition. The 8-bit operations look only at the lowest bit of a negative length.
inline int64_t repeated_samples(int len, uint8_t) { return len >= 0 ? len : len & 1; }
inline int64_t repeated_samples(int len, int16_t) { return len >= 0 ? len : 0; }

/// Repeats every sample of a row in each of the destinations.
template <class T, class... Dst>
[[gnu::flatten]] static pqx_Status up_sample_nn(const T* src, int len, Dst*... dst) {
  const int64_t n = repeated_samples(len, T());
  const auto piece = [=]<int bytes>(int64_t j) {
    const auto samples = load_bytes<bytes, LanesOf<T>>(src + j);
    (store_interleaved<bytes>(dst + 2 * j, samples, samples), ...);
  };
  const auto one = [=](int64_t j) {
    const T sample = load_one<T>(src + j);
    ((store_one(dst + 2 * j, sample), store_one(dst + 2 * j + 1, sample)), ...);
  };
  if (n >= shortest_covered<T> && (apart_when_doubled(src, n, dst) && ...))
    cover_row<T>(n, piece);
  else
    for (int64_t j = 0; j < n; ++j) one(j);
  return PQX_OK;
}

// Interpolation. Between two neighbours a and b lie two outputs, the left one nearer to a, the right one nearer to b.
// Their rounding terms differ, so that rounding leaves no bias along a row. At its ends an edge sample is its own
// neighbour.
inline int left_of_two(int a, int b) { return (3 * a + b + 2) >> 2; }
inline int right_of_two(int a, int b) { return (a + 3 * b + 1) >> 2; }

// The same as means of means: the inner one is rounded against the outer one.
template <class R>
R left_of_two(R a, R b) {
  return mean_up(a, mean_down(a, b));
}
template <class R>
R right_of_two(R a, R b) {
  return mean_down(b, mean_up(a, b));
}

/// Signed words in the order of unsigned ones, which is that of the means, and back again.
inline u8x16 in_unsigned_order(u8x16 samples) { return samples; }
inline u16x8 in_unsigned_order(u16x8 samples) { return samples ^ all_u16(0x8000); }

template <class T>
[[gnu::flatten]] static pqx_Status up_sample_422_bl(const T* src, int len, T* dst) {
  const int64_t n = len < 3 ? 2 : len;
  const auto sample = [=](int64_t j) { return load_one<T>(src + j); };
  const auto piece = [=]<int bytes>(int64_t j) {
    const auto a = in_unsigned_order(load_bytes<bytes, LanesOf<T>>(src + j)),
               b = in_unsigned_order(load_bytes<bytes, LanesOf<T>>(src + j + 1));
    store_interleaved<bytes>(dst + 2 * j + 1, in_unsigned_order(left_of_two(a, b)),
                             in_unsigned_order(right_of_two(a, b)));
  };
  const auto one = [=](int64_t j) {
    store_one(dst + 2 * j + 1, T(left_of_two(int(sample(j)), int(sample(j + 1)))));
    store_one(dst + 2 * j + 2, T(right_of_two(int(sample(j)), int(sample(j + 1)))));
  };
  const bool pieces = n > shortest_covered<T> && apart_when_doubled(src, n, dst);
  store_one(dst, sample(0));
  if (pieces)
    cover_row<T>(n - 1, piece);
  else
    for (int64_t j = 0; j < n - 1; ++j) one(j);
  store_one(dst + 2 * n - 1, sample(n - 1));
  return PQX_OK;
}

// In both directions: two rows lie between the current row and its neighbours. A column's sum is 3 times its current
// sample and once that of the neighbour, unrounded; the outputs between two columns weigh their sums.
inline int left_of_sums(int a, int b) { return (3 * a + b + 7) >> 4; }
inline int right_of_sums(int a, int b) { return (a + 3 * b + 8) >> 4; }

/// Bytes: three columns in a row, from every other one on. Four times a sum, at most 4080, is far below 16 bits.
struct ThreeColumns {
  u16x8 a, b, c;
};
inline ThreeColumns operator+(ThreeColumns x, ThreeColumns y) { return {x.a + y.a, x.b + y.b, x.c + y.c}; }

template <int bytes>
ThreeColumns load_three_columns(const uint8_t* p) {
  const auto ab = load_bytes<bytes, u8x16>(p), bc = load_bytes<bytes, u8x16>(p + 1);
  return {even_bytes(ab), odd_bytes(ab), odd_bytes(bc)};
}

/// The left output in the low byte of each word, the right one in the high byte. The mean is (a + 3b + 8) >> 1.
inline u16x8 between_sums(u16x8 a, u16x8 b, u16x8 a_b_7) {
  return (a_b_7 + (a + a)) >> 4 | (mean_up(a_b_7, b + b) << 5 & all_u16(0xff00));
}

template <int bytes>
void store_between(ThreeColumns sums, uint8_t* dst) {
  const u16x8 b_7 = sums.b + all_u16(7);
  store_interleaved<bytes>(dst, between_sums(sums.a, sums.b, b_7 + sums.a),
                           between_sums(sums.b, sums.c, b_7 + sums.c));
}

template <int bytes>
void between_columns(const uint8_t* prev, const uint8_t* cur, const uint8_t* next, uint8_t* upper, uint8_t* lower) {
  const auto cur_x1 = load_three_columns<bytes>(cur), cur_x3 = cur_x1 + cur_x1 + cur_x1;
  store_between<bytes>(load_three_columns<bytes>(prev) + cur_x3, upper);
  store_between<bytes>(load_three_columns<bytes>(next) + cur_x3, lower);
}

/// Words: 32-bit sums of the outputs between every other column and the next one.
struct Between {
  i32x4 left, right;
};
inline Between between_words(i16x8 near, i16x8 far) {
  const auto weigh = [](i16x8 pairs, int first, int second) {
    return pair_products(pairs, alternating<i16x8>(first, second));
  };
  return {(weigh(near, 9, 3) + all_i32(7) + weigh(far, 3, 1)) >> 4,
          (weigh(near, 3, 9) + all_i32(8) + weigh(far, 1, 3)) >> 4};
}

template <int bytes>
void store_between(const int16_t* near, const int16_t* far, int16_t* dst) {
  const auto [even_left, even_right] = between_words(load_bytes<bytes, i16x8>(near), load_bytes<bytes, i16x8>(far));
  const auto [odd_left, odd_right] =
      between_words(load_bytes<bytes, i16x8>(near + 1), load_bytes<bytes, i16x8>(far + 1));
  const u16x8 left = as<u16x8>(pack(even_left, odd_left)), right = as<u16x8>(pack(even_right, odd_right));
  store_interleaved<bytes>(dst, as<i32x4>(interleave_low(left, right)), as<i32x4>(interleave_high(left, right)));
}

template <int bytes>
void between_columns(const int16_t* prev, const int16_t* cur, const int16_t* next, int16_t* upper, int16_t* lower) {
  store_between<bytes>(cur, prev, upper);
  store_between<bytes>(cur, next, lower);
}

template <class T>
[[gnu::flatten]] static pqx_Status up_sample_420_bl(const T* prev, const T* cur, const T* next, int len, T* upper,
                                                    T* lower) {
  const int64_t n = len < 3 ? 2 : len;
  const auto sum = [=](const T* far, int64_t j) { return 3 * load_one<T>(cur + j) + load_one<T>(far + j); };
  const auto piece = [=]<int bytes>(int64_t j) {
    if constexpr (bytes == 16) prefetch_ahead(prev + j, cur + j, next + j, upper + 2 * j, lower + 2 * j);
    between_columns<bytes>(prev + j, cur + j, next + j, upper + 2 * j + 1, lower + 2 * j + 1);
  };
  const auto one = [=](int64_t j) {
    const int above[] = {sum(prev, j), sum(prev, j + 1)}, below[] = {sum(next, j), sum(next, j + 1)};
    store_one(upper + 2 * j + 1, T(left_of_sums(above[0], above[1])));
    store_one(upper + 2 * j + 2, T(right_of_sums(above[0], above[1])));
    store_one(lower + 2 * j + 1, T(left_of_sums(below[0], below[1])));
    store_one(lower + 2 * j + 2, T(right_of_sums(below[0], below[1])));
  };
  store_one(upper, T(right_of_sums(sum(prev, 0), sum(prev, 0))));
  store_one(lower, T(right_of_sums(sum(next, 0), sum(next, 0))));
  if (n > shortest_covered<T>)
    cover_row<T>(n - 1, piece);
  else
    for (int64_t j = 0; j < n - 1; ++j) one(j);
  store_one(upper + 2 * n - 1, T(left_of_sums(sum(prev, n - 1), sum(prev, n - 1))));
  store_one(lower + 2 * n - 1, T(left_of_sums(sum(next, n - 1), sum(next, n - 1))));
  return PQX_OK;
}

}  // namespace pqx
