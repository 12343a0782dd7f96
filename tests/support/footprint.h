/// What the manual says that operations touch, read from its page on footprints.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "operation.h"

namespace test {

class Footprint {
 public:
  /// By the names of the functions.
  static const std::map<std::string, Footprint>& all();

  struct Bytes {
    bool read = false, written = false;
    std::string formula;
  };
  std::map<std::string, std::string> definitions;
  std::map<std::string, Bytes> arguments;

  struct Rows {
    int64_t count, bytes, apart, offset;
  };
  /// The bytes of an argument for these values of the parameters.
  std::vector<Rows> rows(const std::string& argument, const std::map<std::string, int64_t>& values) const;
};

struct Parameter {
  std::string type, name;
};
/// Functions of the public header that it declares under pqx_Video, with their parameters.
const std::map<std::string, std::vector<Parameter>>& declared_functions();

/// For every argument what the manual says, or nothing where it does not have the operation; no rows for a size.
std::vector<std::vector<Footprint::Rows>> rows_by_manual(const Operation& operation, Ints ints);

/// The same bytes in ascending spans that neither touch nor overlap.
std::vector<Span> joined(std::vector<Span> spans);

std::vector<Span> joined(const std::vector<Footprint::Rows>& rows);

/// Fails the running test where the page knows an operation and has other bytes than its descriptor.
void compare_with_manual(const Operation& operation, Ints ints);

}  // namespace test
