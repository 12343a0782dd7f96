/// Calls of operations that bytes tell: any bytes are some call. Each has exactly the memory that it may touch.
#pragma once

#include <cstdlib>
#include <memory>
#include <span>

#include "draw.h"

namespace test {

/// What all tests check, once.
const std::vector<Operation>& all_operations();

class Case {
 public:
  explicit Case(std::span<const uint8_t> bytes);

  /// Where in all_operations() its operation stands.
  size_t number() const { return number_; }

  /// Runs the operation in as many threads, which share what it only reads, and the model. Ends the program where they
  /// differ. Under AddressSanitizer and MemorySanitizer bytes between rows are out of reach.
  void check(int threads) const;

 private:
  struct Free {
    void operator()(uint8_t* memory) const { std::free(memory); }
  };
  using Memory = std::unique_ptr<uint8_t, Free>;

  /// What a pointer points into.
  struct Block {
    std::vector<uint8_t> contents;
    int64_t pointer = 0;      // from the first byte
    std::vector<Span> spans;  // from the first byte, without overlap
    bool shared = false;
  };
  struct Arguments {
    std::vector<std::shared_ptr<uint8_t>> blocks;
    std::vector<Slot> slots;
  };

  Block make_block(const std::vector<Span>& spans, int misalignment) const;
  Arguments make_arguments(bool guarded, const Arguments* sharing) const;
  void expect(const Arguments& found, int64_t result, const Arguments& expected, int64_t expected_result) const;
  [[noreturn, gnu::format(printf, 2, 3)]] void fail(const char* what, ...) const;

  size_t number_;
  Drawn drawn_;
  std::vector<Block> blocks_;
  std::vector<size_t> block_of_;      // by argument
  std::vector<int64_t> distance_of_;  // of the argument from the pointer of its block
};

}  // namespace test
