#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace pqx_codec {

/// Reads the bits of a span of bytes, highest first. Behind the end stand zeros, as many as are asked for. The bytes
/// must outlive the reader; its copies go on from where they were made.
class BitReader {
 public:
  explicit BitReader(std::span<const uint8_t> bytes)
      : bytes_(bytes.data()), last_word_(ptrdiff_t(bytes.size()) - 8) {}

  /// Makes at least 32 bits ready.
  void refill() {
    if (count_ >= 32) return;
    uint64_t word;
    if (next_ <= last_word_) [[likely]]
      std::memcpy(&word, bytes_ + next_, sizeof word);
    else
      word = bytes_before_end(bytes_, next_, last_word_ + 8);
    ready_ |= __builtin_bswap64(word) >> count_;
    next_ += (63 - count_) >> 3;
    count_ |= 56;
  }
  /// The next n bits, 1 <= n <= 32, which must be ready.
  uint32_t ready(int n) const { return uint32_t(ready_ >> (64 - n)); }
  /// All that are ready, from the highest bit down.
  uint64_t ready() const { return ready_; }
  /// Takes n bits, which must be ready.
  void skip(int n) {
    ready_ <<= n;
    count_ -= n;
  }

  /// The next n bits, 1 <= n <= 32, made ready if need be.
  uint32_t peek(int n) {
    refill();
    return ready(n);
  }
  /// Takes the next n bits, 1 <= n <= 32.
  uint32_t read(int n) {
    const uint32_t bits = peek(n);
    skip(n);
    return bits;
  }

  /// Bits taken so far.
  size_t position() const { return size_t(next_ * 8 - count_); }
  void seek(size_t position) {
    next_ = ptrdiff_t(position / 8);
    ready_ = 0;
    count_ = 0;
    refill();
    skip(int(position % 8));
  }
  /// Bits up to the end; negative if more have been taken.
  ptrdiff_t bits_left() const { return (last_word_ + 8 - next_) * 8 + count_; }
  bool at_end() const { return bits_left() <= 0; }
  bool overrun() const { return bits_left() < 0; }

 private:
  // Static, so that a reader that is copied into registers can stay there.
  [[gnu::noinline]] static uint64_t bytes_before_end(const uint8_t* bytes, ptrdiff_t next, ptrdiff_t end) {
    uint64_t word = 0;
    if (next < end) std::memcpy(&word, bytes + next, size_t(end - next));
    return word;
  }

  const uint8_t* bytes_;
  ptrdiff_t last_word_, next_ = 0;  // byte offsets; next_ runs on behind the end
  uint64_t ready_ = 0;              // from the highest bit down, `count_` bits that count
  int count_ = 0;
};

}  // namespace pqx_codec
