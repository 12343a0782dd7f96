#include "case.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <thread>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#define PQX_HIDE(p, n) ASAN_POISON_MEMORY_REGION(p, n)
#define PQX_SHOW(p, n) ASAN_UNPOISON_MEMORY_REGION(p, n)
#elif __has_feature(memory_sanitizer)
#include <sanitizer/msan_interface.h>
#define PQX_HIDE(p, n) __msan_poison(p, n)
#define PQX_SHOW(p, n) __msan_unpoison(p, n)
#define PQX_FIRST_UNDEFINED(p, n) __msan_test_shadow(p, n)
#endif
#endif
#ifndef PQX_HIDE
#define PQX_HIDE(p, n) (void)(p), (void)(n)
#define PQX_SHOW(p, n) (void)(p), (void)(n)
#endif
#ifndef PQX_FIRST_UNDEFINED
#define PQX_FIRST_UNDEFINED(p, n) ((void)(p), (void)(n), intptr_t(-1))
#endif

namespace test {
namespace {

constexpr int64_t most_bytes = 1 << 22;  // of a block
constexpr size_t model_room = 1024;      // around its blocks

/// Takes numbers from bytes; behind the last one all are 0.
class Numbers {
 public:
  explicit Numbers(std::span<const uint8_t> bytes) : rest_(bytes) {}

  uint32_t take(size_t bytes) {
    uint32_t number = 0;
    for (size_t k = 0; k < std::min(bytes, rest_.size()); ++k) number |= uint32_t(rest_[k]) << 8 * k;
    rest_ = rest_.subspan(std::min(bytes, rest_.size()));
    return number;
  }
  std::span<const uint8_t> rest() const { return rest_; }

 private:
  std::span<const uint8_t> rest_;
};

/// Calls part(offset, bytes) for what lies between spans.
template <class Part>
void between(const std::vector<Span>& spans, size_t end, Part part) {
  int64_t at = 0;
  for (const Span& s : spans) {
    if (s.offset > at) part(at, s.offset - at);
    at = s.offset + s.bytes;
  }
  if (int64_t(end) > at) part(at, int64_t(end) - at);
}

}  // namespace

const std::vector<Operation>& all_operations() {
  static const auto& operations = *new std::vector<Operation>(collect());
  return operations;
}

Case::Case(std::span<const uint8_t> bytes) {
  Numbers numbers(bytes);
  number_ = numbers.take(2) % all_operations().size();
  const Operation& operation = all_operations()[number_];
  const size_t count = operation.arguments.size();
  drawn_ = draw(
      operation, [&](uint32_t below) { return numbers.take(below > 256 ? 3 : 1) % below; }, false);
  const Overlap* const overlap = drawn_.overlap;
  block_of_.assign(count, 0);
  distance_of_.assign(count, 0);
  for (size_t k = 0; k < count; ++k) {
    if (!operation.arguments[k].is_pointer || (overlap && overlap->destination == k)) continue;
    std::vector<Span> spans = drawn_.spans[k];
    const bool shared = overlap && overlap->source == k;
    block_of_[k] = blocks_.size();
    if (shared) {
      const size_t destination = overlap->destination;
      block_of_[destination] = blocks_.size();
      distance_of_[destination] = drawn_.distance;
      for (const Span& s : drawn_.spans[destination]) spans.push_back({s.offset + drawn_.distance, s.bytes});
    }
    blocks_.push_back(make_block(joined(spans), drawn_.place == Place::aligned ? 0 : int(numbers.take(1) % 16)));
    blocks_.back().shared = !operation.contract->parameters[k].writes && !shared;
  }

  // Contents as the tests fill them, or nearly all 0, or as they come.
  const uint32_t seed = numbers.take(2), kind = numbers.take(1) % 4;
  Random random(seed);
  for (Block& b : blocks_) std::generate(b.contents.begin(), b.contents.end(), [&] { return uint8_t(random()); });
  for (size_t k = 0; k < count; ++k) {
    if (!operation.arguments[k].is_pointer) continue;
    Block& b = blocks_[block_of_[k]];
    size_t next = k;
    for (const Span& s : drawn_.spans[k]) {
      uint8_t* const first = b.contents.data() + b.pointer + distance_of_[k] + s.offset;
      if (kind < 2) {
        operation.arguments[k].fill(random, drawn_.data, first, s.bytes);
      } else if (kind == 2) {
        std::fill_n(first, s.bytes, uint8_t(0));
        for (int times = int(random() % 8); times > 0; --times) first[random() % s.bytes] = uint8_t(random());
      } else if (const auto rest = numbers.rest(); !rest.empty()) {
        std::generate_n(first, s.bytes, [&] { return rest[next++ % rest.size()]; });
      }
    }
  }
}

Case::Block Case::make_block(const std::vector<Span>& spans, int misalignment) const {
  Block b;
  if (spans.empty()) return b;
  const int64_t low = spans.front().offset, high = spans.back().offset + spans.back().bytes;
  if (high - low > most_bytes) fail("more memory than expected");
  const int64_t lead = (low + misalignment) & 15;
  b.contents.resize(size_t(lead + high - low));
  b.pointer = lead - low;
  for (const Span& s : spans) b.spans.push_back({b.pointer + s.offset, s.bytes});
  return b;
}

Case::Arguments Case::make_arguments(bool guarded, const Arguments* sharing) const {
  const Operation& operation = all_operations()[number_];
  const size_t room = guarded ? 0 : model_room;
  Arguments arguments;
  for (size_t i = 0; i < blocks_.size(); ++i) {
    const Block& b = blocks_[i];
    if (sharing && b.shared) {
      arguments.blocks.push_back(sharing->blocks[i]);
      continue;
    }
    auto* const memory = static_cast<uint8_t*>(std::calloc(1, b.contents.size() + 2 * room + !b.contents.size()));
    std::copy(b.contents.begin(), b.contents.end(), memory + room);
    if (guarded)
      between(b.spans, b.contents.size() + !b.contents.size(),
              [&](int64_t at, int64_t bytes) { PQX_HIDE(memory + at, size_t(bytes)); });
    arguments.blocks.emplace_back(memory, Free());
  }
  for (size_t k = 0; k < drawn_.ints.size(); ++k)
    if (operation.arguments[k].is_pointer)
      arguments.slots.push_back(
          {.pointer = arguments.blocks[block_of_[k]].get() + room + blocks_[block_of_[k]].pointer + distance_of_[k]});
    else
      arguments.slots.push_back({.number = drawn_.ints[k]});
  return arguments;
}

void Case::check(int threads) const {
  const Operation& operation = all_operations()[number_];
  const Arguments expected = make_arguments(false, nullptr);
  const int64_t expected_result = operation.model(expected.slots.data());
  std::vector<Arguments> found;
  for (int t = 0; t < threads; ++t) found.push_back(make_arguments(true, t ? &found[0] : nullptr));
  std::vector<int64_t> results(size_t(threads), 0);
  std::vector<std::thread> others;
  for (size_t t = 1; t < size_t(threads); ++t)
    others.emplace_back([&, t] { results[t] = operation.run(found[t].slots.data()); });
  results[0] = operation.run(found[0].slots.data());
  for (std::thread& t : others) t.join();
  for (size_t t = 0; t < size_t(threads); ++t) expect(found[t], results[t], expected, expected_result);
}

void Case::expect(const Arguments& found, int64_t result, const Arguments& expected, int64_t expected_result) const {
  if (result != expected_result) fail("returned %lld", static_cast<long long>(result));
  for (size_t i = 0; i < blocks_.size(); ++i) {
    const Block& b = blocks_[i];
    uint8_t* const memory = found.blocks[i].get();
    for (const Span& s : b.spans)
      if (PQX_FIRST_UNDEFINED(memory + s.offset, size_t(s.bytes)) >= 0) fail("left undefined bytes");
    PQX_SHOW(memory, b.contents.size());
    const uint8_t* const right = expected.blocks[i].get() + model_room;
    const auto at = std::mismatch(memory, memory + b.contents.size(), right).first - memory;
    if (at != int64_t(b.contents.size()))
      fail("block %zu, byte %lld is %d instead of %d", i, static_cast<long long>(at - b.pointer), memory[at],
           right[at]);
  }
}

void Case::fail(const char* what, ...) const {
  std::fprintf(stderr, "%s: ", call(all_operations()[number_], drawn_.ints).c_str());
  va_list values;
  va_start(values, what);
  std::vfprintf(stderr, what, values);
  va_end(values);
  std::fprintf(stderr, "\n");
  std::abort();
}

}  // namespace test
