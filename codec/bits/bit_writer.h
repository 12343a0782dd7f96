#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace pqx_codec {

/// Where bits go, highest first. A copy of it can live in registers.
struct BitCursor {
  uint8_t* next;
  uint64_t pending = 0;
  int free = 64;  // bits of `pending`, 1..64 between calls

  /// Appends the lowest n bits, 0 <= n <= 32, above which there must be no others.
  void put(uint32_t bits, int n) {
    free -= n;
    if (free > 0) {
      pending = pending << n | bits;
      return;
    }
    const uint64_t word = __builtin_bswap64(pending << (n + free) | bits >> -free);
    std::memcpy(next, &word, sizeof word);
    next += sizeof word;
    free += 64;
    pending = bits;
  }

  /// Fills up the last byte with ones or zeros and moves everything on.
  void finish(bool ones) {
    const int gap = free % 8;
    put(ones ? (1u << gap) - 1 : 0, gap);
    for (; free < 64; free += 8) *next++ = uint8_t(pending >> (56 - free));
  }
};

/// Memory for a cursor to write to, which lets it do without a look at each byte.
class BitBuffer {
 public:
  /// @param capacity  bytes that are put at most before clear()
  explicit BitBuffer(size_t capacity)
      : bytes_(std::make_unique_for_overwrite<uint8_t[]>(capacity + 8)), cursor_{bytes_.get()} {}

  BitCursor& cursor() { return cursor_; }

  /// The complete bytes; up to 63 bits may wait in the cursor.
  std::span<const uint8_t> bytes() const { return {bytes_.get(), cursor_.next}; }
  /// Makes room in place of the complete bytes.
  void clear() { cursor_.next = bytes_.get(); }

 private:
  std::unique_ptr<uint8_t[]> bytes_;
  BitCursor cursor_;
};

}  // namespace pqx_codec
