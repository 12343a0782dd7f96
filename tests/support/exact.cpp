#include "exact.h"

#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>

#include <memory>
#include <stdexcept>

namespace test {
namespace {

sigjmp_buf before_fault;
void jump_back(int) { siglongjmp(before_fault, 1); }

enum class Place { inside, begins_at_guard, ends_at_guard, begins_in_guard, ends_in_guard };

/// The memory of one parameter: what it may touch, and as much around it, between unreadable memory.
struct Buffer {
  Buffer(const std::vector<Span>& touched) : spans(touched) {
    if (spans.empty()) spans.push_back({0, 0});
    low = spans.front().offset;
    extent = spans.back().offset + spans.back().bytes - low;
    size = (extent + 2 * guard) / guard * guard;
    map = static_cast<uint8_t*>(
        mmap(nullptr, size_t(size + 2 * guard), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    if (map == MAP_FAILED) throw std::bad_alloc();
    mprotect(begin(), size_t(size), PROT_READ | PROT_WRITE);
  }
  Buffer(const Buffer&) = delete;
  ~Buffer() { munmap(map, size_t(size + 2 * guard)); }

  uint8_t* begin() const { return map + guard; }
  uint8_t* end() const { return begin() + size; }
  uint8_t* pointer(Place place) const {
    switch (place) {
      case Place::begins_at_guard:
        return begin() - low;
      case Place::begins_in_guard:
        return begin() - 1 - low;
      case Place::ends_at_guard:
        return end() - extent - low;
      case Place::ends_in_guard:
        return end() + 1 - extent - low;
      default:
        return begin() + (size - extent) / 2 - low;
    }
  }
  template <class Each>
  void for_each(uint8_t* pointer, Each each) const {
    for (const Span& s : spans)
      for (int64_t i = 0; i < s.bytes; ++i) each(pointer[s.offset + i]);
  }

  static constexpr int64_t guard = 4096;
  std::vector<Span> spans;
  int64_t low, extent, size;
  uint8_t* map;
};

class Exact {
 public:
  explicit Exact(const Contract& contract) : op_(contract) {}

  void run() {
    struct Ends {
      int calls = 0;
      bool first = false, last = false;
    };
    std::map<std::pair<size_t, bool>, Ends> reached;  // by parameter, and whether its rows go upward
    const bool sometimes = std::any_of(op_.parameters.begin(), op_.parameters.end(),
                                       [](const Parameter& p) { return p.is_pointer() && !p.always; });
    int64_t most = 0;
    std::vector<int> best;
    for (int turn = 0; turn < (sometimes ? 150 : 40); ++turn) {
      draw(turn);
      allocate();
      fill();
      for (Place place : {Place::begins_at_guard, Place::ends_at_guard})
        if (faults(std::vector(op_.parameters.size(), place))) fail("touches more, or less is needed");
      for (size_t k = 0; k < buffers_.size(); ++k) {
        if (!buffers_[k] || buffers_[k]->extent == 0) continue;
        const bool front = faults(only(k, Place::begins_in_guard)), back = faults(only(k, Place::ends_in_guard));
        Ends& ends = reached[{k, upward()}];
        ++ends.calls;
        ends.first |= front;
        ends.last |= back;
        if (!op_.parameters[k].always) continue;
        if (!front) fail(op_.parameters[k].name + ": the first byte is not touched");
        if (!back) fail(op_.parameters[k].name + ": the last byte is not touched");
      }
      check_written();
      int64_t bytes = 0;
      for (const auto& b : buffers_)
        if (b)
          for (const Span& s : b->spans) bytes += s.bytes;
      if (bytes > most && bytes <= 1400) most = bytes, best = ints_;
    }
    for (const auto& [key, ends] : reached)
      if (ends.calls > 9 && !(ends.first && ends.last))
        fail(op_.parameters[key.first].name + ": no call touched the " + (ends.first ? "last byte" : "first byte"));
    if (best.empty()) fail("no call touches little");
    ints_ = best;
    allocate();
    check_that_all_matters();
  }

 private:
  void draw(int turn) {
    do {
      ints_.clear();
      const int highest = turn < 15 ? 12 : 70;
      for (const Parameter& p : op_.parameters)
        if (p.is_step)
          ints_.push_back((1000 + int(random_() % 100)) * (random_() % 2 ? 1 : -1));
        else
          ints_.push_back(random_() % 8 ? int(random_() % uint32_t(highest)) : -int(random_() % 20));
    } while (!op_.needs(ints_.data()));
  }

  bool upward() const {
    for (size_t k = 0; k < ints_.size(); ++k)
      if (op_.parameters[k].is_step) return ints_[k] < 0;
    return false;
  }

  void allocate() {
    buffers_.clear();
    const auto rows = op_.touched(ints_.data());
    for (size_t k = 0; k < rows.size(); ++k)
      buffers_.push_back(op_.parameters[k].is_pointer() ? std::make_unique<Buffer>(joined(rows[k])) : nullptr);
  }

  /// In turn any bytes, 12-bit numbers and 9-bit numbers. No zeros, of which some operations need nothing else.
  void fill() {
    const uint32_t limits[] = {255, 15, 2};
    const uint32_t limit = limits[random_() % 3];
    for (const auto& b : buffers_)
      if (b)
        for (uint8_t* p = b->begin(); p < b->end(); ++p)
          *p = uint8_t((p - b->pointer(Place::inside)) % 2 ? random_() % (limit + 1) : 1 + random_() % 255);
  }

  std::vector<Place> only(size_t k, Place place) const {
    std::vector<Place> places(op_.parameters.size(), Place::inside);
    places[k] = place;
    return places;
  }

  int64_t call(const std::vector<Place>& places) const {
    std::vector<Slot> slots(ints_.size());
    for (size_t k = 0; k < ints_.size(); ++k)
      if (buffers_[k])
        slots[k].pointer = buffers_[k]->pointer(places[k]);
      else
        slots[k].number = ints_[k];
    return op_.run(slots.data());
  }
  bool faults(const std::vector<Place>& places) const {
    if (sigsetjmp(before_fault, 1)) return true;
    call(places);
    return false;
  }

  /// Over 0 and over 255 the same comes out, wherever something is to be written, and nothing elsewhere.
  void check_written() {
    const std::vector<Place> inside(op_.parameters.size(), Place::inside);
    std::vector<std::vector<uint8_t>> first(buffers_.size());
    for (int background : {0, 255}) {
      for (size_t k = 0; k < buffers_.size(); ++k)
        if (buffers_[k] && !op_.parameters[k].reads) std::fill(buffers_[k]->begin(), buffers_[k]->end(), background);
      std::vector<std::vector<uint8_t>> old(buffers_.size());
      for (size_t k = 0; k < buffers_.size(); ++k)
        if (op_.parameters[k].writes) old[k].assign(buffers_[k]->begin(), buffers_[k]->end());
      call(inside);
      for (size_t k = 0; k < buffers_.size(); ++k) {
        if (!op_.parameters[k].writes) continue;
        const Buffer& b = *buffers_[k];
        std::vector<uint8_t> found(b.begin(), b.end()), touched;
        uint8_t* const pointer = found.data() + (b.pointer(Place::inside) - b.begin());
        b.for_each(pointer, [&](uint8_t& byte) { touched.push_back(byte), byte = 0; });
        b.for_each(old[k].data() + (pointer - found.data()), [](uint8_t& byte) { byte = 0; });
        if (found != old[k]) fail(op_.parameters[k].name + ": more is written");
        if (op_.parameters[k].reads) continue;
        if (background && touched != first[k]) fail(op_.parameters[k].name + ": not every byte is written");
        first[k] = touched;
      }
    }
  }

  /// Every byte that every call only reads changes the result, at least for some of the values around it. That finds, too,
  /// bytes between others that are read.
  void check_that_all_matters() {
    const std::vector<Place> inside(op_.parameters.size(), Place::inside);
    struct Byte {
      size_t parameter;
      uint8_t* address;
    };
    std::vector<Byte> open;
    for (size_t k = 0; k < buffers_.size(); ++k)
      if (const Parameter& p = op_.parameters[k]; p.reads && !p.writes && p.always)
        buffers_[k]->for_each(buffers_[k]->pointer(Place::inside), [&](uint8_t& byte) {
          open.push_back({k, &byte});
        });
    for (int round = 0; round < 100 && (round < 3 || !open.empty()); ++round) {
      fill();
      const auto original = written();
      const int64_t result = call(inside);
      const auto expected = written();
      restore(original);
      for (size_t k = 0; k < buffers_.size(); ++k)
        if (op_.parameters[k].reads && !op_.parameters[k].writes) change_others(*buffers_[k]);
      if (call(inside) != result || written() != expected) fail("bytes matter that are not read");
      std::erase_if(open, [&](const Byte& byte) {
        restore(original);
        const uint8_t old = *byte.address;
        *byte.address = uint8_t(old + 1 + random_() % 255);
        const bool same = call(inside) == result && written() == expected;
        *byte.address = old;
        return !same;
      });
    }
    for (const Byte& byte : open)
      fail(op_.parameters[byte.parameter].name + ": byte " +
           std::to_string(byte.address - buffers_[byte.parameter]->pointer(Place::inside)) + " does not matter");
  }
  /// What lies around the bytes of a contract and between them.
  void change_others(const Buffer& b) {
    std::vector<uint8_t> kept;
    uint8_t* const pointer = b.pointer(Place::inside);
    b.for_each(pointer, [&](uint8_t& byte) { kept.push_back(byte); });
    std::generate(b.begin(), b.end(), [this] { return uint8_t(random_()); });
    auto next = kept.begin();
    b.for_each(pointer, [&](uint8_t& byte) { byte = *next++; });
  }
  /// All memory that is not only read.
  std::vector<std::vector<uint8_t>> written() const {
    std::vector<std::vector<uint8_t>> all(buffers_.size());
    for (size_t k = 0; k < buffers_.size(); ++k)
      if (op_.parameters[k].writes) all[k].assign(buffers_[k]->begin(), buffers_[k]->end());
    return all;
  }
  void restore(const std::vector<std::vector<uint8_t>>& all) {
    for (size_t k = 0; k < buffers_.size(); ++k)
      if (op_.parameters[k].writes) std::copy(all[k].begin(), all[k].end(), buffers_[k]->begin());
  }

  [[noreturn]] void fail(const std::string& what) const {
    std::string text = "(";
    for (size_t k = 0; k < ints_.size(); ++k)
      text += (k ? ", " : "") + (op_.parameters[k].is_pointer() ? "*" : std::to_string(ints_[k]));
    throw std::runtime_error(text + "): " + what);
  }

  const Contract& op_;
  Random random_{1};
  std::vector<int> ints_;
  std::vector<std::unique_ptr<Buffer>> buffers_;
};

}  // namespace

std::string exact(const Contract& contract) {
  struct sigaction action = {}, old_action;
  action.sa_handler = jump_back;
  sigaction(SIGSEGV, &action, &old_action);
  std::string wrong;
  try {
    Exact(contract).run();
  } catch (const std::runtime_error& error) {
    wrong = error.what();
  }
  sigaction(SIGSEGV, &old_action, nullptr);
  return wrong;
}

}  // namespace test
