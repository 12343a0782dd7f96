#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace pqxvideo::jpeg {

/// Gathers bits, highest first, into entropy-coded bytes. They are kept aside until drain() hands them over, which
/// lets put() do without a look at each byte.
class BitWriter {
 public:
  /// @param capacity  bytes that are put at most between two drains
  explicit BitWriter(size_t capacity)
      : bytes_(std::make_unique_for_overwrite<uint8_t[]>(capacity + 8)), next_(bytes_.get()) {}

  /// Appends the lowest n bits, 0 <= n <= 32, above which there must be no others.
  void put(uint64_t bits, int n) {
    pending_ = pending_ << n | bits;
    count_ += n;
    if (count_ >= 32) {
      count_ -= 32;
      const uint32_t word = __builtin_bswap32(uint32_t(pending_ >> count_));
      std::memcpy(next_, &word, sizeof word);
      next_ += sizeof word;
    }
  }

  /// Fills up the last byte with ones.
  void align() {
    put((1u << (-count_ & 7)) - 1, -count_ & 7);
    for (; count_ > 0; count_ -= 8) *next_++ = uint8_t(pending_ >> (count_ - 8));
  }

  /// Moves the complete bytes to `out`, with a zero stuffed behind each 0xFF.
  void drain(std::vector<uint8_t>& out) {
    const uint8_t* from = bytes_.get();
    while (from < next_) {
      const void* const found = std::memchr(from, 0xFF, size_t(next_ - from));
      const uint8_t* const to = found ? static_cast<const uint8_t*>(found) + 1 : next_;
      out.insert(out.end(), from, to);
      if (found) out.push_back(0);
      from = to;
    }
    next_ = bytes_.get();
  }

 private:
  std::unique_ptr<uint8_t[]> bytes_;
  uint8_t* next_;
  uint64_t pending_ = 0;
  int count_ = 0;  // bits in pending_ not yet moved on, below 32 between calls
};

}  // namespace pqxvideo::jpeg
