/// What operations may touch, as the comments of the public header say.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "operation.h"

namespace test {

/// So many rows of so many bytes, from an offset on.
struct Rows {
  int64_t count, bytes, apart, offset;
};
namespace Footprint {
using test::Rows;
}

/// What may lie in a source's memory: what starts where the source does; also where only rows that are done are
/// written over; anything.
enum class Overlaps { equal, done, any };

struct Parameter {
  std::string name;
  bool reads = false, writes = false;  // pointers
  bool always = false;                 // every call reads all of it
  int step = 0;                        // steps: bytes of what is counted
  std::vector<std::pair<size_t, Overlaps>> overlaps = {};

  bool is_pointer() const { return reads || writes; }
};
struct Contract {
  std::vector<Parameter> parameters;
  std::vector<std::vector<Rows>> (*touched)(const int* ints);  // by parameter; none for a number
  bool (*needs)(const int* ints);                              // what the caller has to see to
  Call run;
};
/// By the names of the functions.
const std::map<std::string, Contract>& contracts();
const Contract& contract_of(const Operation& operation);

std::vector<std::vector<Rows>> rows_by_manual(const Operation& operation, Ints ints);

/// The same bytes in ascending spans that neither touch nor overlap.
std::vector<Span> joined(std::vector<Span> spans);

std::vector<Span> joined(const std::vector<Rows>& rows);

/// Fails the running test where an operation's descriptor has other bytes than its contract.
void compare_with_manual(const Operation& operation, Ints ints);

}  // namespace test
