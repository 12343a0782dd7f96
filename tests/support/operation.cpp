#include "operation.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <fstream>

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

#if __has_include(<valgrind/memcheck.h>)
#include <valgrind/memcheck.h>
#else
#define RUNNING_ON_VALGRIND 0
#define VALGRIND_COUNT_ERRORS 0
#define VALGRIND_MAKE_MEM_NOACCESS(address, bytes) (void)(bytes)
#define VALGRIND_MAKE_MEM_DEFINED(address, bytes) (void)(bytes)
#endif

namespace test {

thread_local Scratch scratch;

namespace {

std::vector<void (*)()>& listed() {
  static std::vector<void (*)()> checks;
  return checks;
}
std::vector<Operation>* collected = nullptr;

constexpr int64_t margin = 192;  // watched bytes on both sides of a buffer

/// Readable memory between two unreadable pages, and a copy of the same size for the model. It may be larger than the
/// machine's memory, as long as little of it is touched.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  ~Arena() { release(); }

  void reserve(int64_t bytes) {
    if (bytes <= size_) return;
    release();
    size_ = (bytes + page - 1) / page * page;
    const auto mapped = size_t(2 * size_ + 3 * page);
    void* map = mmap(nullptr, mapped, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    madvise(map, mapped, MADV_NOHUGEPAGE);
    begin_ = static_cast<uint8_t*>(map) + page;
    for (uint8_t* half : {begin(), copy(begin())}) mprotect(half, size_t(size_), PROT_READ | PROT_WRITE);
  }

  uint8_t* begin() { return begin_; }
  uint8_t* end() { return begin_ + size_; }
  uint8_t* copy(uint8_t* original) { return original + size_ + page; }
  int64_t clamp(int64_t offset) const { return std::clamp<int64_t>(offset, 0, size_); }

 private:
  void release() {
    if (begin_) munmap(begin_ - page, size_t(2 * size_ + 3 * page));
  }

  const int64_t page = sysconf(_SC_PAGESIZE);
  uint8_t* begin_ = nullptr;
  int64_t size_ = 0;
};

struct Buffer {
  Arena* arena = nullptr;
  uint8_t* pointer = nullptr;
  std::vector<Span> spans, watched;  // the latter from the arena's beginning
};

/// A few of the cases are enough where each of them takes long; their results are added to a digest where one is asked
/// for.
const bool few_cases = std::getenv("PQX_TEST_FEW_CASES");
const char* const digest_file = std::getenv("PQX_TEST_DIGEST");

enum Placement { ends_at_guard = -2, begins_at_guard = -1, misaligned = 0 };  // 0..15: misalignment

class Checker {
 public:
  explicit Checker(const Operation& operation) : op_(operation), arenas_(operation.arguments.size()) {}

  void run() {
    for (const Argument& a : op_.arguments) {
      if (a.is_size()) combinations_ *= a.values.size();
      if (a.row_bytes) ++step_arguments_;
    }
    std::vector<int> ints(op_.arguments.size(), 0);
    for_all_sizes(op_.arguments, ints, [&] {
      ++combination_;
      if (!few_cases || among(24)) placements(ints);
      if (!few_cases && among(24)) far_rows(ints);
      if (!few_cases && among(4)) extremes(ints);
    });
    if (digest_file) std::ofstream(digest_file, std::ios::app) << op_.name << " " << digest_ << "\n";
  }

 private:
  /// Whether the combination of sizes at hand is among so many, which are spread evenly.
  bool among(uint64_t count) const { return combination_ * 7919 % combinations_ < count; }

  void placements(std::vector<int>& ints) {
    for (int turn : {0, 1, 2}) {
      steps(ints, turn, false);
      compare_with_manual(op_, ints);
    }
    placements(ints, false);
    if (step_arguments_ > 1) placements(ints, true);
  }

  void placements(std::vector<int>& ints, bool equal_steps) {
    for (int placement = ends_at_guard; placement < 16; ++placement) {
      steps(ints, placement, equal_steps);
      for (Data data : {Data::random, Data::extreme, Data::small, Data::flat}) {
        if (placement >= misaligned && placement % 4 != int(data)) continue;  // one kind of data is enough there
        one_case(ints, placement, data, nullptr, 0);
      }
    }
    for (const Overlap& overlap : op_.overlaps)
      for (int distance : overlap.distances) {
        steps(ints, distance, equal_steps);
        one_case(ints, distance & 15, Data::random, &overlap, distance);
      }
  }

  // Rows a gigabyte apart, downward and upward: their products with the steps need 64 bits.
  void far_rows(std::vector<int>& ints) {
    for (int sign : {1, -1}) {
      int steps = 0;
      for (size_t k = 0; k < ints.size(); ++k)
        if (op_.arguments[k].row_bytes) {
          ++steps;
          ints[k] = (steps % 3 ? sign : -sign) * ((1 << 30) + 5 * steps);
        }
      if (steps) one_case(ints, misaligned, Data::random, nullptr, 0);
    }
  }

  // The least and the greatest numbers as each two of the sizes, wherever the manual has little work for them, or none.
  void extremes(Ints ordinary) {
    for (size_t k = 0; k < ordinary.size(); ++k)
      for (size_t j = k; j < ordinary.size(); ++j)
        for (int one : extremes_of(op_.arguments[k]))
          for (int other : extremes_of(op_.arguments[j])) {
            std::vector<int> ints = ordinary;
            for (size_t i = 0; i < ints.size(); ++i)
              if (op_.arguments[i].row_bytes) ints[i] = i % 2 ? 4096 : -4096;
            ints[j] = other;
            ints[k] = one;
            by_manual_ = rows_by_manual(op_, ints);
            if (!by_manual_.empty() && std::all_of(by_manual_.begin(), by_manual_.end(), little))
              one_case(ints, misaligned, Data::random, nullptr, 0);
          }
    by_manual_.clear();
  }

  /// No numbers below 1 where none has a meaning.
  static std::vector<int> extremes_of(const Argument& a) {
    if (!a.is_size()) return {};
    if (*std::min_element(a.values.begin(), a.values.end()) > 0) return {INT_MAX - 1, INT_MAX};
    return {INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX};
  }

  static bool little(const std::vector<Footprint::Rows>& rows) {
    return std::all_of(rows.begin(), rows.end(), [](const Footprint::Rows& r) {
      const bool reachable = r.bytes <= 4096 && std::abs(r.offset) <= int64_t(1) << 34;
      return r.count <= 0 || (r.count <= 4096 && reachable);
    });
  }

  // Tight and padded rows, odd distances, upward and downward, in turn; or one of them for all.
  void steps(std::vector<int>& ints, int turn, bool equal) {
    int64_t widest = 0;
    for (const Argument& a : op_.arguments)
      if (equal && a.row_bytes) widest = std::max(widest, a.row_bytes(ints));
    for (size_t k = 0; k < ints.size(); ++k)
      if (op_.arguments[k].row_bytes) {
        const int from = turn + (equal ? 0 : int(k));
        const auto row = int(std::max(op_.arguments[k].row_bytes(ints), widest));
        const int distance = row + std::vector<int>{0, 1, 16, 5, 27}[size_t(from + 2) % 5];
        ints[k] = from % 3 == 0 ? -distance : distance;
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
        place(buffers[k], k, by_manual_.empty() ? a.spans(ints) : joined(by_manual_[k]), placement, room);
    }
    if (overlap) {
      Buffer& b = buffers[size_t(overlap->destination)];
      b = buffers[size_t(overlap->source)];
      b.pointer += distance;
      b.spans = op_.arguments[size_t(overlap->destination)].spans(ints);
      watch(b);
    }
    for (Buffer& b : buffers)
      for (const Span& s : b.watched)
        std::generate_n(b.arena->begin() + s.offset, s.bytes, [this] { return uint8_t(random_()); });
    for (size_t k = 0; k < count; ++k)
      for (const Span& s : buffers[k].spans)
        op_.arguments[k].fill(random_, data, buffers[k].pointer + s.offset, s.bytes);
    for (size_t k = 0; k < count; ++k)
      if (Buffer& b = buffers[k]; b.arena) {
        copy_for_model(b);
        slots[k].pointer = b.pointer;
        model_slots[k].pointer = b.arena->copy(b.pointer);
      }
    const int64_t expected = op_.model(model_slots.data());
    run_and_compare(0, slots, expected, buffers, describe(ints, placement, distance));
    // Without memory it does nothing: what it has just left stays.
    for (int refused = int(scratch.requests.size()); refused > 0; --refused) {
      for (const Buffer& b : buffers) copy_for_model(b);
      run_and_compare(refused, slots, PQX_ERR_MEMORY, buffers,
                      describe(ints, placement, distance) + ", request for memory refused");
    }
  }

  void run_and_compare(int refused, const std::vector<Slot>& slots, int64_t expected, std::vector<Buffer>& buffers,
                       const std::string& what) {
    scratch.expect(refused);
    forbid_all_but_spans(buffers);
    const auto errors = VALGRIND_COUNT_ERRORS;
    const int64_t result = op_.run(slots.data());
    if (VALGRIND_COUNT_ERRORS != errors) ADD_FAILURE() << what << ": touches too much";
    for (Buffer& b : buffers)
      if (b.arena) VALGRIND_MAKE_MEM_DEFINED(b.arena->begin(), b.arena->end() - b.arena->begin());
    add_to_digest(uint64_t(result));
    if (result != expected) ADD_FAILURE() << what << ": returned " << result;
    if (scratch.blocks != 0) ADD_FAILURE() << what << ": kept memory";
    for (size_t k = 0; k < buffers.size(); ++k)
      if (buffers[k].arena) compare(buffers[k], k, what);
  }

  /// Valgrind sees more than pages do: what lies between rows, and reads.
  static void forbid_all_but_spans(std::vector<Buffer>& buffers) {
    if (!RUNNING_ON_VALGRIND) return;
    for (Buffer& b : buffers)
      if (b.arena) VALGRIND_MAKE_MEM_NOACCESS(b.arena->begin(), b.arena->end() - b.arena->begin());
    for (Buffer& b : buffers)
      for (const Span& s : b.spans)
        if (s.bytes > 0) VALGRIND_MAKE_MEM_DEFINED(b.pointer + s.offset, s.bytes);
  }

  void add_to_digest(uint64_t value) { digest_ = (digest_ ^ value) * 0x100000001b3; }

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
    const int64_t pointer = b.pointer - b.arena->begin();
    b.watched = {{b.arena->clamp(pointer - margin), 0}};
    b.watched[0].bytes = b.arena->clamp(pointer + margin) - b.watched[0].offset;
    for (const Span& s : b.spans) {
      const int64_t low = b.arena->clamp(pointer + s.offset - margin);
      b.watched.push_back({low, b.arena->clamp(pointer + s.offset + s.bytes + margin) - low});
    }
    b.watched = joined(std::move(b.watched));
  }

  static void copy_for_model(const Buffer& b) {
    for (const Span& s : b.watched)
      std::copy_n(b.arena->begin() + s.offset, s.bytes, b.arena->copy(b.arena->begin() + s.offset));
  }

  void compare(Buffer& b, size_t k, const std::string& what) {
    for (const Span& s : b.watched) {
      uint8_t *const low = b.arena->begin() + s.offset, *const high = low + s.bytes;
      if (digest_file)
        for (const uint8_t* p = low; p < high; ++p) add_to_digest(*p);
      const auto [wrong, right] = std::mismatch(low, high, b.arena->copy(low));
      if (wrong == high) continue;
      ADD_FAILURE() << what << ": argument " << k << ", byte " << wrong - b.pointer << " is " << int(*wrong)
                    << " instead of " << int(*right);
      return;
    }
  }

  std::string describe(Ints ints, int placement, int distance) const {
    return call(op_, ints) + ", placement " + std::to_string(placement) + ", overlap distance " +
           std::to_string(distance);
  }

  const Operation& op_;
  std::vector<Arena> arenas_;
  Random random_{12345};
  std::vector<std::vector<Footprint::Rows>> by_manual_;  // instead of the operation's own spans
  int step_arguments_ = 0;
  uint64_t combinations_ = 1, combination_ = 0, digest_ = 0xcbf29ce484222325;
};

}  // namespace

std::string call(const Operation& operation, Ints ints) {
  std::string text = operation.name;
  for (size_t k = 0; k < ints.size(); ++k)
    text += (k ? ", " : "(") + (operation.arguments[k].is_pointer ? "*" : std::to_string(ints[k]));
  return text + ")";
}

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

Argument plane(int step, Count columns, Count rows) {
  return touching<uint8_t>([=](Ints n) {
    std::vector<Span> spans;
    for (int64_t row = 0; row < rows(n); ++row) spans.push_back({row * n[size_t(step)], columns(n)});
    return spans;
  });
}

std::vector<int> row_lengths(const std::vector<int>& more) {
  std::vector<int> lengths = {-2147483647 - 1, -100, -17, -3, -2};
  for (int n = -1; n <= 72; ++n) lengths.push_back(n);
  for (int n : {79, 80, 81, 95, 96, 97, 127, 128, 129, 130, 131, 132, 255, 256, 257, 511, 1023}) lengths.push_back(n);
  lengths.insert(lengths.end(), more.begin(), more.end());
  return lengths;
}

}  // namespace test
