/// What the manual says that operations touch, read from its page on footprints.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "operation.h"

namespace test {

class Footprint {
 public:
  /// Of a function by its name, or null where the page has none.
  static const Footprint* of(const std::string& function);
  static const std::map<std::string, Footprint>& all();

  struct Bytes {
    bool read = false, written = false;
    std::string formula;
  };
  std::map<std::string, std::string> definitions;
  std::map<std::string, Bytes> arguments;

  /// The bytes of an argument, in order and without gaps between them, for these values of the parameters.
  std::vector<Span> spans(const std::string& argument, const std::map<std::string, int64_t>& values) const;
};

struct Parameter {
  std::string type, name;
};
/// Functions of the public header that it declares under pqx_Video, with their parameters.
const std::map<std::string, std::vector<Parameter>>& declared_functions();

/// The same bytes in ascending spans that neither touch nor overlap.
std::vector<Span> joined(std::vector<Span> spans);

/// Fails the running test where the page knows an operation and has other bytes than its descriptor.
void compare_with_manual(const Operation& operation, Ints ints);

}  // namespace test
