#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

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

  /// Fills up the last byte with ones and moves everything on.
  void finish() {
    const int gap = free % 8;
    put((1u << gap) - 1, gap);
    for (; free < 64; free += 8) *next++ = uint8_t(pending >> (56 - free));
  }
};

/// Holds entropy-coded bytes until drain() stuffs them, which lets the cursor do without a look at each byte.
class BitBuffer {
 public:
  /// @param capacity  bytes that are put at most between two drains
  explicit BitBuffer(size_t capacity)
      : bytes_(std::make_unique_for_overwrite<uint8_t[]>(capacity + 8)), cursor_{bytes_.get()} {}

  BitCursor& cursor() { return cursor_; }

  /// Moves the complete bytes to `out`, with a zero behind each 0xFF.
  void drain(std::vector<uint8_t>& out) {
    const uint8_t* from = bytes_.get();
    while (from < cursor_.next) {
      const void* const found = std::memchr(from, 0xFF, size_t(cursor_.next - from));
      const uint8_t* const to = found ? static_cast<const uint8_t*>(found) + 1 : cursor_.next;
      out.insert(out.end(), from, to);
      if (found) out.push_back(0);
      from = to;
    }
    cursor_.next = bytes_.get();
  }

 private:
  std::unique_ptr<uint8_t[]> bytes_;
  BitCursor cursor_;
};

}  // namespace pqx_codec
