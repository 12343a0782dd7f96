/// Runs an operation against its plain model on guarded memory, with sizes, steps, placements, overlaps and data by
/// chance.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace test {

/// The integer arguments of a call by their position in it; 0 where the argument is a pointer.
using Ints = const std::vector<int>&;
using Count = std::function<int64_t(Ints)>;
using Random = std::mt19937;

/// Bytes that an operation may touch, at a distance from the pointer it is given.
struct Span {
  int64_t offset;
  int64_t bytes;
  bool operator==(const Span&) const = default;
};
using Spans = std::function<std::vector<Span>(Ints)>;

/// Kinds of data: any value; only the ends of the range; values around its middle; one value everywhere.
enum class Data { random, extreme, small, flat };
using Fill = std::function<void(Random&, Data, uint8_t* bytes, int64_t count)>;

/// One argument of an operation, in the order of its parameters.
struct Argument {
  bool is_pointer = false;
  Spans spans = {};                // pointers: what may be touched, exactly
  Fill fill = {};                  // pointers that are read
  std::vector<int> favoured = {};  // sizes: values of their own kind, tried more often than others
  int lowest = 0, highest = 0;     // sizes: what to try
  Count row_bytes = {};            // steps: the bytes of one row, of which the step is then at least as large

  bool is_size() const { return !is_pointer && !row_bytes; }
};

/// The destination may lie in the source's memory: 0, and all distances in bytes from it that are allowed.
struct Overlap {
  int destination, source;
  std::function<bool(Ints, int64_t distance)> allowed = {};  // none: any
};
inline bool in_place(Ints, int64_t distance) { return distance == 0; }

/// Becomes the argument that a function takes in its place.
union Slot {
  void* pointer;
  int number;
  template <class T>
  operator T*() const {
    return static_cast<T*>(pointer);
  }
  operator int() const { return number; }
};
struct Call : std::function<int64_t(const Slot*)> {
  std::vector<bool> only_reads;  // by argument: a pointer to const
};

struct Operation {
  std::string name;
  Call run, model;
  std::vector<Argument> arguments;
  std::vector<Overlap> overlaps = {};
  bool may_raise = false;  // exceptions of floating point, for it is given numbers that no caller has
};

/// How its call with these sizes looks.
std::string call(const Operation& operation, Ints ints);

/// Fails the running test with the operation's arguments and the first wrong byte.
void check(const Operation& operation);
void check(const std::vector<Operation>& family);

/// What all TEST_OPERATIONS of the program would check.
std::vector<Operation> collect();
bool list(void (*checks)());

/// What operations are given instead of scratch memory of the library, as each asks for it by a name that the test
/// programs define, too.
struct Scratch {
  int refused = 0;  // the request, counted from 1, that is not met
  std::vector<int32_t> requests = {};
  int blocks = 0;  // given and not yet taken back

  void expect(int refuse) { refused = refuse, requests.clear(); }
};
extern thread_local Scratch scratch;

/// Elements of type T from lo to hi.
template <class T>
Fill range(T lo, T hi) {
  return [lo, hi](Random& random, Data data, uint8_t* bytes, int64_t count) {
    const int64_t middle = lo < 0 && hi > 0 ? 0 : (int64_t(lo) + hi) / 2;
    const T flat = T(lo + int64_t(random()) % (int64_t(hi) - lo + 1));
    for (int64_t i = 0; i + int64_t(sizeof(T)) <= count; i += sizeof(T)) {
      const uint32_t r = random();
      T value = flat;
      if (data == Data::random) value = T(lo + int64_t(r) % (int64_t(hi) - lo + 1));
      if (data == Data::extreme) value = r & 1 ? lo : hi;
      if (data == Data::small) value = T(std::min<int64_t>(hi, std::max<int64_t>(lo, middle + int(r % 7) - 3)));
      std::copy_n(reinterpret_cast<const uint8_t*>(&value), sizeof(T), bytes + i);
    }
  };
}

template <class T>
Fill any() {
  return range<T>(std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
}

/// Bytes filled with elements of type T.
template <class T>
Argument touching(Spans spans, Fill fill = any<T>()) {
  return {.is_pointer = true, .spans = std::move(spans), .fill = std::move(fill)};
}

/// A contiguous run of count elements.
template <class T>
Argument buffer(Count count, Fill fill = any<T>()) {
  return touching<T>([=](Ints n) { return std::vector<Span>{{0, count(n) * int64_t(sizeof(T))}}; }, fill);
}

/// As many elements as `elements` makes of the size at that position, `each` times.
template <class T>
Argument row(int64_t (*elements)(int), int size, int each = 1) {
  return buffer<T>([=](Ints n) { return each * elements(n[size_t(size)]); });
}
inline int64_t whole(int len) { return std::max(len, 0); }
inline int64_t pairs(int len) { return whole(len) / 2; }
inline int64_t pixels_of_pairs(int len) { return 2 * pairs(len); }

/// Rows of 8-bit samples at the distance that integer argument `step` tells.
Argument plane(int step, Count columns, Count rows);

/// A size: any, but more often those that have a meaning of their own.
inline Argument size(std::vector<int> favoured = {}, int lowest = -20, int highest = 300) {
  return {.favoured = std::move(favoured), .lowest = lowest, .highest = highest};
}
/// The length of a row. Those of some kilobytes are prefetched, and from 4097 on some operations need scratch memory.
inline Argument length() { return size({4096, 4097, 4113}, -20, 5200); }

/// A step for rows of that many bytes.
inline Argument step(Count row_bytes) { return {.row_bytes = std::move(row_bytes)}; }

template <class R, class... A>
Call erase(R (*function)(A...)) {
  const auto call = [function](const Slot* slots) {
    return [&]<size_t... k>(std::index_sequence<k...>) { return int64_t(function(slots[k]...)); }
    (std::index_sequence_for<A...>{});
  };
  return {call, {std::is_const_v<std::remove_pointer_t<A>>...}};
}

}  // namespace test

/// An operation with its model, both under the operation's own name.
#define OPERATION(NAME, ...) \
  { #NAME, test::erase(pqx_Video_##NAME), test::erase(plain::NAME), __VA_ARGS__ }

/// A test that checks operations, and a list of them for other programs that are linked with it.
#define TEST_OPERATIONS(SUITE, NAME)                                                \
  static void SUITE##NAME();                                                        \
  [[maybe_unused]] static const bool SUITE##NAME##Listed = test::list(SUITE##NAME); \
  TEST(SUITE, NAME) { SUITE##NAME(); }                                              \
  static void SUITE##NAME()
