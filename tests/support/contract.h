/// What operations may touch, as the comments of the public header say.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace test {

/// The integer arguments of a call by their position in it; 0 where the argument is a pointer.
using Ints = const std::vector<int>&;
using Random = std::mt19937;

/// Kinds of data: any value; only the ends of the range; values around its middle; one value everywhere.
enum class Data { random, extreme, small, flat };
using Fill = std::function<void(Random&, Data, uint8_t* bytes, int64_t count)>;

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
using Call = std::function<int64_t(const Slot*)>;

template <class R, class... A>
Call erase(R (*function)(A...)) {
  return [function](const Slot* slots) {
    return [&]<size_t... k>(std::index_sequence<k...>) { return int64_t(function(slots[k]...)); }
    (std::index_sequence_for<A...>{});
  };
}

/// Bytes at a distance from the pointer that an operation is given.
struct Span {
  int64_t offset, bytes;
  bool operator==(const Span&) const = default;
};
/// So many rows of so many bytes, from an offset on.
struct Rows {
  int64_t count, bytes, apart, offset;
};
/// The same bytes in ascending spans that neither touch nor overlap.
std::vector<Span> joined(std::vector<Span> spans);
std::vector<Span> joined(const std::vector<Rows>& rows);

/// What may lie in another buffer's memory: what starts where that does; also where only rows that are done are written
/// over; anything.
enum class Overlaps { equal, done, any };

struct Parameter {
  std::string name;
  bool reads = false, writes = false;  // pointers
  bool always = false;                 // every call touches all of it
  Fill (*fill)() = nullptr;            // pointers: any elements of their type
  bool is_step = false;
  std::vector<std::pair<size_t, Overlaps>> overlaps = {};  // by the other's position

  bool is_pointer() const { return reads || writes; }
};
struct Contract {
  std::vector<Parameter> parameters;
  std::vector<std::vector<Rows>> (*touched)(const int* ints);  // by parameter; none for a number
  bool (*needs)(const int* ints);                              // what the caller has to see to
  Call run;

  /// The bytes of a row at which that step has to be at least, so that rows do not overlap.
  int64_t row_bytes(size_t step, std::vector<int> ints) const;
};
/// By the names of the functions.
const std::map<std::string, Contract>& contracts();

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
/// Any elements of type T; of floating-point numbers any bytes.
template <class T>
Fill any() {
  using Element = std::conditional_t<std::is_integral_v<T>, T, uint8_t>;
  return range(std::numeric_limits<Element>::min(), std::numeric_limits<Element>::max());
}

}  // namespace test
