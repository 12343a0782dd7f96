/// One loop over the rows of a block, for all that yield predictions (sources) and what becomes of them (sinks).
#pragma once

#include "mc/samples.h"
#include "pqx_video.h"

namespace pqx::mc {

/// Rows of T, at(k) being the k-th ahead. The loop goes on by so many at a time.
template <class T>
struct Rows {
  static constexpr int at_a_time = 4;
  T* first;
  int64_t step;

  [[gnu::always_inline]] T* at(int k) const { return first + k * step; }
  [[gnu::always_inline]] void leave(int k) {
    first += k * step;
#ifdef __clang__
    asm("" : "+r"(first));  // else it keeps an address for each of the four
#endif
  }
};

/// Rows beside others of another step. The compiler does not know that the step stays the same, so it advances by
/// addresses of twice the step; three times each step would be too much for the registers.
template <class T>
struct OwnRows : Rows<T> {
  static constexpr int at_a_time = 2;

  [[gnu::always_inline]] void leave(int k) {
    this->first += k * this->step;
    asm("" : "+r"(this->first), "+r"(this->step));
  }
};

/// Rows of a packed block.
template <int columns>
struct PackedRows {
  static constexpr int at_a_time = 4;
  int16_t* first;

  [[gnu::always_inline]] int16_t* at(int k) const { return first + k * columns; }
  [[gnu::always_inline]] void leave(int k) { first += k * columns; }
};

// A source yields the k-th row ahead by row(k), asked for in order, and leaves rows behind. Predictions at half samples
// are told the distance of a sample from the other; not every source suits every distance.

/// Samples and their neighbours at any distance.
template <int n, class From>
struct Beside {
  Rows<const uint8_t> rows;
  int64_t other;

  static bool suits(int, int) { return true; }
  [[gnu::always_inline]] u8x16 row(int k) const {
    return From::between(From::template row<n>(rows.at(k)), From::template row<n>(rows.at(k) + other));
  }
  [[gnu::always_inline]] void leave(int k) { rows.leave(k); }
};

/// The same where neighbours are those of the next row: each is loaded once for both of its uses.
template <int n, class From>
struct InTurn {
  Rows<const uint8_t> rows;
  int64_t other;
  decltype(From::template row<n>(nullptr)) above = From::template row<n>(rows.first);

  static bool suits(int other, int step) { return other == step; }
  [[gnu::always_inline]] u8x16 row(int k) {
    const auto upper = above;
    above = From::template row<n>(rows.at(k + 1));
    return From::between(upper, above);
  }
  [[gnu::always_inline]] void leave(int k) { rows.leave(k); }
};

// A sink joins a row with what stands there and puts it.

template <int n, class To>
struct Put {
  To rows;

  [[gnu::always_inline]] static u8x16 joined(int, u8x16 samples) { return samples; }
  [[gnu::always_inline]] void put(int k, u8x16 samples) const { store_samples<n>(rows.at(k), samples); }
};

/// Averages into the prediction that stands there. Two rounded means in turn give what one mean with one rounding gives:
/// ((a + b + 1) / 2 + d + 1) / 2 = (a + b + 2d + 3) / 4, all rounded down, and likewise for squares.
template <int n, class To>
struct Average : Put<n, To> {
  [[gnu::always_inline]] u8x16 joined(int k, u8x16 samples) const {
    return mean_up(samples, load_samples<n>(this->rows.at(k)));
  }
};

/// A positive number of rows. Two are read before the first of them is written, which keeps loads clear of stores. For
/// `often` rows there is no loop.
template <int often = 0, class From, template <int, class> class Sink, int n, class To>
[[gnu::always_inline]] inline pqx_Status each_row(From from, Sink<n, To> to, unsigned rows) {
  const auto leave = [&](int k) __attribute__((always_inline)) { from.leave(k), to.rows.leave(k); };
  const auto four = [&]() __attribute__((always_inline)) {
    constexpr int ahead = To::at_a_time;
#pragma GCC unroll 2
    for (int k = 0; k < 4; k += 2) {
      const u8x16 upper = to.joined(k % ahead, from.row(k % ahead)),
                  lower = to.joined(k % ahead + 1, from.row(k % ahead + 1));
      to.put(k % ahead, upper);
      to.put(k % ahead + 1, lower);
      if ((k + 2) % ahead == 0) leave(ahead);
    }
  };
  if (often == 8 && rows == 8) {
    four();
    four();
    return PQX_OK;
  }
  for (; rows % 4 != 0; --rows) {
    to.put(0, to.joined(0, from.row(0)));
    leave(1);
  }
  for (; rows > 0; rows -= 4) four();
  return PQX_OK;
}

}  // namespace pqx::mc
