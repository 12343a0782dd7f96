#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pqx_codec {

/// Reads bits, highest first, from entropy-coded bytes without stuffing. Reading on behind the end gives what stands
/// there, which must be allowed for `margin` bytes; overrun() then tells.
class BitReader {
 public:
  static constexpr size_t margin = 256;

  BitReader(const uint8_t* bytes, size_t size) : next_(bytes), end_(bytes + size) {}

  /// Makes at least 32 bits ready.
  void refill() {
    if (count_ >= 32) return;
    ready_ |= load_big_endian(next_) >> count_;
    next_ += (63 - count_) >> 3;
    count_ |= 56;
  }

  /// The next n ready bits, n > 0.
  uint32_t peek(int n) const { return uint32_t(ready_ >> (64 - n)); }
  /// All the ready bits from the highest down.
  uint64_t ready() const { return ready_; }

  void skip(int n) {
    ready_ <<= n;
    count_ -= n;
  }

  bool overrun() const { return bits_left() < 0; }
  ptrdiff_t bits_left() const { return (end_ - next_) * 8 + count_; }

 private:
  static uint64_t load_big_endian(const uint8_t* bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return __builtin_bswap64(word);
  }

  const uint8_t* next_;
  const uint8_t* end_;
  uint64_t ready_ = 0;
  int count_ = 0;
};

}  // namespace pqx_codec
