/// Runs an operation against its plain model on guarded memory, with sizes, steps, placements, overlaps and data by
/// chance.
#pragma once

#include "contract.h"

namespace test {

using Count = std::function<int64_t(Ints)>;

/// One argument of an operation, in the order of its parameters.
struct Argument {
  bool is_pointer = false;
  Fill fill = {};                  // pointers
  std::vector<int> favoured = {};  // sizes: values of their own kind, tried more often than others
  int lowest = 0, highest = 0;     // sizes: what to try
  Count row_bytes = {};            // steps: the bytes of one row, of which the step is then at least as large

  bool is_size() const { return !is_pointer && !row_bytes; }
};

/// The destination may lie in the source's memory, at distances in bytes from it that are allowed.
struct Overlap {
  size_t destination, source;
  Overlaps allowed;
};

struct Operation {
  std::string name;
  const Contract* contract;
  Call run, model;
  std::vector<Argument> arguments;
  std::vector<Overlap> overlaps;
  bool may_raise = false;  // exceptions of floating point, for it is given numbers that no caller has
};

/// A size: any, but more often those that have a meaning of their own.
inline Argument size(std::vector<int> favoured = {}, int lowest = -20, int highest = 300) {
  return {.favoured = std::move(favoured), .lowest = lowest, .highest = highest};
}

/// The length of a row. Those of some kilobytes are prefetched, and from 4097 on some operations need scratch memory.
inline Argument length() { return size({4096, 4097, 4113}, -20, 5200); }

/// What to try, apart from what the contract says of an operation.
struct Tries {
  Argument sizes = size();                         // all of them
  std::map<std::string, Argument> arguments = {};  // instead of all others, by the name of the parameter
  std::map<std::string, Fill> fills = {};          // instead of any elements
  bool may_raise = false;
};
Operation operation(const std::string& name, Call model, const Tries& tries = {});

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

}  // namespace test

/// An operation with its model, both under the operation's own name, and what to try.
#define OPERATION(NAME, ...) test::operation(#NAME, test::erase(plain::NAME), {__VA_ARGS__})

/// A test that checks operations, and a list of them for other programs that are linked with it.
#define TEST_OPERATIONS(SUITE, NAME)                                                \
  static void SUITE##NAME();                                                        \
  [[maybe_unused]] static const bool SUITE##NAME##Listed = test::list(SUITE##NAME); \
  TEST(SUITE, NAME) { SUITE##NAME(); }                                              \
  static void SUITE##NAME()
