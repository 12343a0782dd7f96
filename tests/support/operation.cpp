#include "operation.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <sstream>

#include "footprint.h"
#include "pqx_video.h"

extern "C" void* __pqx_Malloc(int32_t size) {
  test::Scratch& scratch = test::scratch;
  scratch.requests.push_back(size);
  if (int(scratch.requests.size()) == scratch.refused) return nullptr;
  ++scratch.blocks;
  return pqx_Malloc(size);
}
extern "C" void __pqx_Free(void* block) {
  --test::scratch.blocks;
  pqx_Free(block);
}

namespace test {

thread_local Scratch scratch;

namespace {

std::vector<void (*)()>& listed() {
  static std::vector<void (*)()> checks;
  return checks;
}
std::vector<Operation>* collected = nullptr;

constexpr int64_t margin = 192;  // watched bytes on both sides of a buffer

/// Readable memory between two unreadable pages, and a copy of the same size for the model.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  ~Arena() { release(); }

  void reserve(int64_t bytes) {
    if (bytes <= size_) return;
    release();
    size_ = (bytes + page - 1) / page * page;
    void* map = mmap(nullptr, size_t(size_ + 2 * page), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    begin_ = static_cast<uint8_t*>(map) + page;
    mprotect(begin_, size_t(size_), PROT_READ | PROT_WRITE);
    copy_.assign(size_t(size_), 0);
  }

  uint8_t* begin() { return begin_; }
  uint8_t* end() { return begin_ + size_; }
  uint8_t* copy(const uint8_t* original) { return copy_.data() + (original - begin_); }
  int64_t clamp(int64_t offset) const { return std::clamp<int64_t>(offset, 0, size_); }

 private:
  void release() {
    if (begin_) munmap(begin_ - page, size_t(size_ + 2 * page));
  }

  const int64_t page = sysconf(_SC_PAGESIZE);
  uint8_t* begin_ = nullptr;
  int64_t size_ = 0;
  std::vector<uint8_t> copy_;
};

struct Buffer {
  Arena* arena = nullptr;
  uint8_t* pointer = nullptr;
  std::vector<Span> spans;
  uint8_t *low = nullptr, *high = nullptr;  // watched
};

enum Placement { ends_at_guard = -2, begins_at_guard = -1, misaligned = 0 };  // 0..15: misalignment

class Checker {
 public:
  explicit Checker(const Operation& operation) : op_(operation), arenas_(operation.arguments.size()) {}

  void run() {
    std::vector<int> ints(op_.arguments.size(), 0);
    sizes(0, ints);
  }

 private:
  void sizes(size_t k, std::vector<int>& ints) {
    if (k == op_.arguments.size()) return placements(ints);
    const Argument& a = op_.arguments[k];
    if (a.is_pointer || a.row_bytes) return sizes(k + 1, ints);
    for (int value : a.values) {
      ints[k] = value;
      sizes(k + 1, ints);
    }
  }

  void placements(std::vector<int>& ints) {
    for (int turn : {0, 1, 2}) {
      steps(ints, turn);
      compare_with_manual(op_, ints);
    }
    for (int placement = ends_at_guard; placement < 16; ++placement) {
      steps(ints, placement);
      for (Data data : {Data::random, Data::extreme, Data::small, Data::flat}) {
        if (placement >= misaligned && placement % 4 != int(data)) continue;  // one kind of data is enough there
        one_case(ints, placement, data, nullptr, 0);
      }
    }
    for (const Overlap& overlap : op_.overlaps)
      for (int distance : overlap.distances) {
        steps(ints, distance);
        one_case(ints, distance & 15, Data::random, &overlap, distance);
      }
  }

  // Tight and padded rows, odd distances, upward and downward, in turn.
  void steps(std::vector<int>& ints, int turn) {
    for (size_t k = 0; k < ints.size(); ++k)
      if (op_.arguments[k].row_bytes) {
        const auto row = int(std::max<int64_t>(op_.arguments[k].row_bytes(ints), 0));
        const int distance = row + std::vector<int>{0, 1, 16, 5, 27}[size_t(turn + int(k) + 2) % 5];
        ints[k] = (turn + int(k)) % 3 == 0 ? -distance : distance;
      }
  }

  void one_case(Ints ints, int placement, Data data, const Overlap* overlap, int distance) {
    if (::testing::Test::HasFailure()) return;
    const size_t count = op_.arguments.size();
    std::vector<Buffer> buffers(count);
    std::vector<Slot> slots(count), model_slots(count);
    int64_t room = 0;  // on both sides, for a destination in the source's memory
    if (overlap) {
      room = std::abs(distance);
      for (const Span& s : op_.arguments[size_t(overlap->destination)].spans(ints))
        room += std::max<int64_t>(s.bytes, 0);
    }
    for (size_t k = 0; k < count; ++k) {
      const Argument& a = op_.arguments[k];
      if (!a.is_pointer)
        slots[k].number = model_slots[k].number = ints[k];
      else if (!overlap || overlap->destination != int(k))
        place(buffers[k], k, a.spans(ints), placement, room);
    }
    if (overlap) {
      Buffer& b = buffers[size_t(overlap->destination)];
      b = buffers[size_t(overlap->source)];
      b.pointer += distance;
      b.spans = op_.arguments[size_t(overlap->destination)].spans(ints);
      watch(b);
    }
    for (Buffer& b : buffers)
      if (b.arena) std::generate(b.low, b.high, [this] { return uint8_t(random_()); });
    for (size_t k = 0; k < count; ++k)
      for (const Span& s : buffers[k].spans)
        op_.arguments[k].fill(random_, data, buffers[k].pointer + s.offset, s.bytes);
    for (size_t k = 0; k < count; ++k)
      if (Buffer& b = buffers[k]; b.arena) {
        std::copy(b.low, b.high, b.arena->copy(b.low));
        slots[k].pointer = b.pointer;
        model_slots[k].pointer = b.arena->copy(b.pointer);
      }
    const int64_t expected = op_.model(model_slots.data());
    run_and_compare(0, slots, expected, buffers, describe(ints, placement, distance));
    // Without memory it does nothing: what it has just left stays.
    for (int refused = int(scratch.requests.size()); refused > 0; --refused) {
      for (const Buffer& b : buffers)
        if (b.arena) std::copy(b.low, b.high, b.arena->copy(b.low));
      run_and_compare(refused, slots, PQX_ERR_MEMORY, buffers,
                      describe(ints, placement, distance) + ", request for memory refused");
    }
  }

  void run_and_compare(int refused, const std::vector<Slot>& slots, int64_t expected, std::vector<Buffer>& buffers,
                       const std::string& what) {
    scratch.expect(refused);
    const int64_t result = op_.run(slots.data());
    if (result != expected) ADD_FAILURE() << what << ": returned " << result;
    if (scratch.blocks != 0) ADD_FAILURE() << what << ": kept memory";
    for (size_t k = 0; k < buffers.size(); ++k)
      if (buffers[k].arena) compare(buffers[k], k, what);
  }

  void place(Buffer& b, size_t k, std::vector<Span> spans, int placement, int64_t room) {
    std::erase_if(spans, [](const Span& s) { return s.bytes <= 0; });
    int64_t low = spans.empty() ? 0 : spans[0].offset, high = low;
    for (const Span& s : spans) low = std::min(low, s.offset), high = std::max(high, s.offset + s.bytes);
    b.arena = &arenas_[k];
    b.arena->reserve(high - low + 2 * (margin + room) + 64);
    if (placement == ends_at_guard)
      b.pointer = b.arena->end() - high - room;
    else if (placement == begins_at_guard)
      b.pointer = b.arena->begin() - low + room;
    else
      b.pointer = b.arena->begin() + (margin + room + 15) / 16 * 16 - low + (placement + 5 * int64_t(k)) % 16;
    b.spans = std::move(spans);
    watch(b);
  }

  static void watch(Buffer& b) {
    uint8_t* const begin = b.arena->begin();
    int64_t low = b.pointer - begin, high = low;
    for (const Span& s : b.spans) {
      low = std::min(low, b.pointer - begin + s.offset);
      high = std::max(high, b.pointer - begin + s.offset + s.bytes);
    }
    b.low = begin + b.arena->clamp(low - margin);
    b.high = begin + b.arena->clamp(high + margin);
  }

  void compare(Buffer& b, size_t k, const std::string& what) {
    const uint8_t* expected = b.arena->copy(b.low);
    const auto [wrong, right] = std::mismatch(b.low, b.high, expected);
    if (wrong == b.high) return;
    ADD_FAILURE() << what << ": argument " << k << ", byte " << wrong - b.pointer << " is " << int(*wrong)
                  << " instead of " << int(*right);
  }

  std::string describe(Ints ints, int placement, int distance) const {
    std::ostringstream text;
    text << op_.name << "(";
    for (size_t k = 0; k < ints.size(); ++k)
      text << (k ? ", " : "") << (op_.arguments[k].is_pointer ? "*" : std::to_string(ints[k]));
    text << "), placement " << placement << ", overlap distance " << distance;
    return text.str();
  }

  const Operation& op_;
  std::vector<Arena> arenas_;
  Random random_{12345};
};

}  // namespace

void check(const Operation& operation) {
  if (collected)
    collected->push_back(operation);
  else
    Checker(operation).run();
}

void check(const std::vector<Operation>& family) {
  for (const Operation& operation : family) check(operation);
}

bool list(void (*checks)()) {
  listed().push_back(checks);
  return true;
}

std::vector<Operation> collect() {
  std::vector<Operation> operations;
  collected = &operations;
  for (auto* checks : listed()) checks();
  collected = nullptr;
  return operations;
}

Argument plane(int step, Count columns, Count rows, Fill fill) {
  Argument argument;
  argument.is_pointer = true;
  argument.fill = fill;
  argument.spans = [=](Ints n) {
    std::vector<Span> spans;
    for (int64_t row = 0; row < rows(n); ++row) spans.push_back({row * n[size_t(step)], columns(n)});
    return spans;
  };
  return argument;
}

Argument size(std::vector<int> values) {
  Argument argument;
  argument.values = std::move(values);
  return argument;
}

Argument step(Count row_bytes) {
  Argument argument;
  argument.row_bytes = std::move(row_bytes);
  return argument;
}

std::vector<int> row_lengths() {
  std::vector<int> lengths = {-2147483647 - 1, -100, -17, -3, -2};
  for (int n = -1; n <= 72; ++n) lengths.push_back(n);
  for (int n : {79, 80, 81, 95, 96, 97, 127, 128, 129, 130, 131, 132, 255, 256, 257, 511, 1023}) lengths.push_back(n);
  return lengths;
}

}  // namespace test
