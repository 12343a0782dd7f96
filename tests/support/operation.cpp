#include "operation.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cfenv>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <fstream>

#include "draw.h"
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
    if (bytes <= size_ && (size_ <= dense || bytes > dense)) return;
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

  static constexpr int64_t dense = 1 << 24;
  const int64_t page = sysconf(_SC_PAGESIZE);
  uint8_t* begin_ = nullptr;
  int64_t size_ = 0;
};

struct Buffer {
  Arena* arena = nullptr;
  uint8_t* pointer = nullptr;
  std::vector<Span> spans, watched;  // the latter from the arena's beginning
};

/// Few cases are enough where each of them takes long. They are always the same, and their results are added to a digest
/// where one is asked for.
const bool few_cases = std::getenv("PQX_TEST_FEW_CASES");
const char* const digest_file = std::getenv("PQX_TEST_DIGEST");
const int seed = !few_cases && std::getenv("PQX_TEST_SEED") ? std::atoi(std::getenv("PQX_TEST_SEED")) : 12345;
const bool needs_valgrind = std::getenv("PQX_TEST_ON_VALGRIND");

constexpr int64_t most_cases = 6000, most_work = 24 << 20, enough_cases = 300;

uint64_t hash(uint64_t before, uint64_t value) { return (before ^ value) * 0x100000001b3; }
uint64_t hash(const std::string& text) {
  uint64_t h = 0xcbf29ce484222325;
  for (char c : text) h = hash(h, uint8_t(c));
  return h;
}

class Checker {
 public:
  /// By a seed and its own name each has cases of its own, whatever else is checked.
  explicit Checker(const Operation& operation)
      : op_(operation),
        arenas_(operation.arguments.size()),
        random_(uint32_t(hash(operation.name) >> 16) + uint32_t(seed)),
        noise_(1 << 16) {
    std::generate(noise_.begin(), noise_.end(), [this] { return uint8_t(random_()); });
  }

  void run() {
    if (needs_valgrind && !RUNNING_ON_VALGRIND) ADD_FAILURE() << "does not know that it runs on valgrind";
    const Choose choose = [this](uint32_t below) { return random_() % below; };
    for (int64_t i = 0, work = 0; i < (few_cases ? enough_cases : most_cases) && work < most_work; ++i) {
      const Drawn drawn = draw(op_, choose, !few_cases);
      one_case(drawn);
      if (::testing::Test::HasFailure()) return;
      for (const auto& spans : drawn.spans)
        for (const Span& s : spans) work += s.bytes + 64;
    }
    if (digest_file) std::ofstream(digest_file, std::ios::app) << op_.name << " " << std::hex << digest_ << "\n";
    nothing_to_do();
  }

 private:
  /// Whatever the other sizes are: rows of no bytes, counted, take seconds. The contract tells what touches nothing.
  void nothing_to_do() {
    std::vector<int> ordinary;
    std::vector<Slot> slots(op_.arguments.size());
    for (const Argument& a : op_.arguments) ordinary.push_back(a.is_size() ? a.highest : 4096);
    for (size_t k = 0; k < ordinary.size(); ++k)
      for (size_t j = 0; j < ordinary.size(); ++j)
        for (int none : {INT_MIN, -4, 0, 1}) {
          if (j == k || !op_.arguments[k].is_size() || !op_.arguments[j].is_size()) continue;
          std::vector<int> ints = ordinary;
          ints[k] = none;
          ints[j] = INT_MAX;
          const auto rows = op_.contract->touched(ints.data());
          if (!std::all_of(rows.begin(), rows.end(), nothing)) continue;
          for (size_t i = 0; i < slots.size(); ++i) {
            arenas_[i].reserve(1);
            slots[i].number = ints[i];
            if (op_.arguments[i].is_pointer) slots[i].pointer = arenas_[i].end();
          }
          const clock_t start = clock();
          EXPECT_EQ(op_.run(slots.data()), 0) << call(op_, ints);
          EXPECT_LT(clock() - start, CLOCKS_PER_SEC / 4) << call(op_, ints);
        }
  }
  static bool nothing(const std::vector<Rows>& rows) {
    return std::all_of(rows.begin(), rows.end(), [](const auto& r) { return r.count <= 0 || r.bytes <= 0; });
  }

  void one_case(const Drawn& drawn) {
    const size_t count = op_.arguments.size();
    std::vector<Buffer> buffers(count);
    std::vector<Slot> slots(count), model_slots(count);
    for (size_t k = 0; k < count; ++k) {
      slots[k].number = model_slots[k].number = drawn.ints[k];
      if (!op_.arguments[k].is_pointer || (drawn.overlap && drawn.overlap->destination == k)) continue;
      std::vector<Span> spans = drawn.spans[k];
      const bool shared = drawn.overlap && drawn.overlap->source == k;
      const size_t other = shared ? drawn.overlap->destination : k;
      if (shared)
        for (const Span& s : drawn.spans[other]) spans.push_back({s.offset + drawn.distance, s.bytes});
      place(buffers[k], k, spans, drawn.place);
      watch(buffers[k], drawn.spans[k]);
      if (!shared) continue;
      buffers[other].arena = buffers[k].arena;
      buffers[other].pointer = buffers[k].pointer + drawn.distance;
      watch(buffers[other], drawn.spans[other]);
    }
    for (Buffer& b : buffers)
      for (const Span& s : b.watched) make_noise(b.arena->begin() + s.offset, s.bytes);
    for (size_t k = 0; k < count; ++k)
      for (const Span& s : buffers[k].spans)
        op_.arguments[k].fill(random_, drawn.data, buffers[k].pointer + s.offset, s.bytes);
    for (size_t k = 0; k < count; ++k)
      if (Buffer& b = buffers[k]; b.arena) {
        copy_for_model(b);
        slots[k].pointer = b.pointer;
        model_slots[k].pointer = b.arena->copy(b.pointer);
      }
    const int64_t expected = op_.model(model_slots.data());
    run_and_compare(0, slots, expected, buffers, drawn);
    // Without memory it does nothing: what it has just left stays.
    for (int refused = int(scratch.requests.size()); refused > 0; --refused) {
      for (const Buffer& b : buffers) copy_for_model(b);
      run_and_compare(refused, slots, PQX_ERR_MEMORY, buffers, drawn);
    }
  }

  void run_and_compare(int refused, const std::vector<Slot>& slots, int64_t expected, std::vector<Buffer>& buffers,
                       const Drawn& drawn) {
    scratch.expect(refused);
    forbid_all_but_spans(buffers);
    const auto errors = VALGRIND_COUNT_ERRORS;
    std::feclearexcept(FE_ALL_EXCEPT);
    const int64_t result = op_.run(slots.data());
    if (const int raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW); raised && !op_.may_raise)
      ADD_FAILURE() << describe(drawn) << "raises exceptions " << raised;
    if (VALGRIND_COUNT_ERRORS != errors) ADD_FAILURE() << describe(drawn) << "touches too much";
    for (Buffer& b : buffers)
      if (b.arena) VALGRIND_MAKE_MEM_DEFINED(b.arena->begin(), b.arena->end() - b.arena->begin());
    digest_ = hash(digest_, uint64_t(result));
    if (result != expected) ADD_FAILURE() << describe(drawn) << "returned " << result;
    if (scratch.blocks != 0) ADD_FAILURE() << describe(drawn) << "kept memory";
    for (size_t k = 0; k < buffers.size(); ++k)
      if (buffers[k].arena) compare(buffers[k], k, drawn);
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

  void place(Buffer& b, size_t k, const std::vector<Span>& spans, Place place) {
    int64_t low = spans.empty() ? 0 : spans[0].offset, high = low;
    for (const Span& s : spans) low = std::min(low, s.offset), high = std::max(high, s.offset + s.bytes);
    b.arena = &arenas_[k];
    b.arena->reserve(high - low + 2 * margin + 64);
    if (place == Place::ends_at_guard)
      b.pointer = b.arena->end() - high;
    else if (place == Place::begins_at_guard)
      b.pointer = b.arena->begin() - low;
    else
      b.pointer = b.arena->begin() + (margin - low + 15) / 16 * 16 + (place == Place::aligned ? 0 : random_() % 16);
  }

  static void watch(Buffer& b, const std::vector<Span>& spans) {
    b.spans = spans;
    const int64_t pointer = b.pointer - b.arena->begin();
    b.watched = {{b.arena->clamp(pointer - margin), 0}};
    b.watched[0].bytes = b.arena->clamp(pointer + margin) - b.watched[0].offset;
    for (const Span& s : b.spans) {
      const int64_t low = b.arena->clamp(pointer + s.offset - margin);
      b.watched.push_back({low, b.arena->clamp(pointer + s.offset + s.bytes + margin) - low});
    }
    b.watched = joined(std::move(b.watched));
  }

  void make_noise(uint8_t* first, int64_t bytes) {
    for (int64_t piece; bytes > 0; first += piece, bytes -= piece) {
      const size_t from = random_() % noise_.size();
      piece = std::min(bytes, int64_t(noise_.size() - from));
      std::copy_n(&noise_[from], piece, first);
    }
  }

  static void copy_for_model(const Buffer& b) {
    for (const Span& s : b.watched)
      std::copy_n(b.arena->begin() + s.offset, s.bytes, b.arena->copy(b.arena->begin() + s.offset));
  }

  void compare(Buffer& b, size_t k, const Drawn& drawn) {
    for (const Span& s : b.watched) {
      uint8_t *const low = b.arena->begin() + s.offset, *const high = low + s.bytes;
      if (digest_file)
        for (const uint8_t* p = low; p < high; ++p) digest_ = hash(digest_, *p);
      const auto [wrong, right] = std::mismatch(low, high, b.arena->copy(low));
      if (wrong == high) continue;
      ADD_FAILURE() << describe(drawn) << "argument " << k << ", byte " << wrong - b.pointer << " is " << int(*wrong)
                    << " instead of " << int(*right);
      return;
    }
  }

  std::string describe(const Drawn& drawn) const {
    std::string text = call(op_, drawn.ints) + ", PQX_TEST_SEED=" + std::to_string(seed);
    if (drawn.overlap)
      text += ", argument " + std::to_string(drawn.overlap->destination) + " " + std::to_string(drawn.distance) +
              " bytes from argument " + std::to_string(drawn.overlap->source);
    if (scratch.refused) text += ", request for memory refused";
    return text + ": ";
  }

  const Operation& op_;
  std::vector<Arena> arenas_;
  Random random_;
  std::vector<uint8_t> noise_;
  uint64_t digest_ = 0xcbf29ce484222325;
};

}  // namespace

Operation operation(const std::string& name, Call model, const Tries& tries) {
  const Contract& contract = contracts().at(name.rfind("pqx_", 0) == 0 ? name : "pqx_Video_" + name);
  Operation op = {name, &contract, contract.run, std::move(model), {}, {}, tries.may_raise};
  for (size_t k = 0; k < contract.parameters.size(); ++k) {
    const Parameter& p = contract.parameters[k];
    Argument a;
    if (const auto given = tries.arguments.find(p.name); given != tries.arguments.end()) {
      a = given->second;
    } else if (p.is_pointer()) {
      a.is_pointer = true;
      const auto fill = tries.fills.find(p.name);
      a.fill = fill == tries.fills.end() ? p.fill() : fill->second;
    } else if (p.is_step) {
      a.row_bytes = [&contract, k](Ints ints) { return contract.row_bytes(k, ints); };
    } else {
      a = p.name == "len" ? length() : tries.sizes;
      std::vector<int> ints(contract.parameters.size(), 64);
      ints[k] = 0;
      if (!contract.needs(ints.data())) a.lowest = 1;
    }
    op.arguments.push_back(a);
    for (const auto& [other, allowed] : p.overlaps)
      op.overlaps.push_back(p.writes ? Overlap{k, other, allowed} : Overlap{other, k, allowed});
  }
  return op;
}

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

}  // namespace test
