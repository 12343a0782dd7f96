#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "h261/format.h"

namespace pqx_codec::h261 {

/// Reads bits, highest first. Behind the end stand zeros, which no code of the format begins with for long.
class BitReader {
 public:
  explicit BitReader(std::span<const uint8_t> bytes) : size_(bytes.size() + margin) {
    const auto copy = std::make_shared<uint8_t[]>(size_);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    bytes_ = copy;
  }

  /// The next n bits, 1 <= n <= 32.
  uint32_t peek(int n) const {
    uint64_t word;
    std::memcpy(&word, bytes_.get() + std::min(position_ >> 3, size_ - sizeof word), sizeof word);
    return uint32_t(__builtin_bswap64(word) << (position_ & 7) >> (64 - n));
  }
  void skip(int n) { position_ += size_t(n); }
  uint32_t read(int n) {
    const uint32_t bits = peek(n);
    skip(n);
    return bits;
  }

  bool at_end() const { return position_ >= (size_ - margin) * 8; }
  size_t position() const { return position_; }
  void seek(size_t position) { position_ = position; }

 private:
  static constexpr size_t margin = 64;

  std::shared_ptr<const uint8_t[]> bytes_;  // that of all copies of a reader
  size_t size_, position_ = 0;
};

class BitWriter {
 public:
  void put(uint32_t bits, int n) {
    pending_ = pending_ << n | bits;
    for (count_ += n; count_ >= 8; count_ -= 8) bytes_.push_back(uint8_t(pending_ >> (count_ - 8)));
  }
  void put(Code code) { put(code.bits, code.length); }
  /// Fills up the last byte with zeros and hands all of them over.
  std::vector<uint8_t> take() {
    if (count_ > 0) put(0, 8 - count_);
    return std::exchange(bytes_, {});
  }

 private:
  std::vector<uint8_t> bytes_;
  uint64_t pending_ = 0;
  int count_ = 0;
};

/// Looks a code up by the next bits.
template <class Value, int longest>
class CodeTable {
 public:
  template <size_t n>
  constexpr explicit CodeTable(const std::array<Coded<Value>, n>& codes) {
    for (const Coded<Value>& c : codes) {
      const int free = longest - c.code.length;
      for (uint32_t i = 0; i < 1u << free; ++i) entries_[c.code.bits << free | i] = {c.value, c.code.length};
    }
  }

  Value read(BitReader& bits, const char* what) const {
    const Entry& entry = entries_[bits.peek(longest)];
    if (entry.length == 0) throw Failure(std::string("damaged H.261 stream: impossible ") + what);
    bits.skip(entry.length);
    return entry.value;
  }

 private:
  struct Entry {
    Value value{};
    int length = 0;
  };
  std::array<Entry, 1 << longest> entries_{};
};

}  // namespace pqx_codec::h261
