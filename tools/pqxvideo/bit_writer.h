#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace pqxvideo::jpeg {

/// Where bits go, highest first. A copy of it can live in registers.
struct BitCursor {
  uint8_t* next;
  uint64_t pending = 0;
  int count = 0;  // bits in `pending` not yet moved on, below 32 between calls

  /// Appends the lowest n bits, 0 <= n <= 32, above which there must be no others.
  void put(uint32_t bits, int n) {
    pending = pending << n | bits;
    count += n;
    if (count < 32) return;
    count -= 32;
    const uint32_t word = __builtin_bswap32(uint32_t(pending >> count));
    std::memcpy(next, &word, sizeof word);
    next += sizeof word;
  }

  /// Fills up the last byte with ones.
  void align() {
    put((1u << (-count & 7)) - 1, -count & 7);
    for (; count > 0; count -= 8) *next++ = uint8_t(pending >> (count - 8));
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

}  // namespace pqxvideo::jpeg
