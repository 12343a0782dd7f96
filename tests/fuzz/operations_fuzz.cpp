// Every operation against its model, on memory that ends where its footprint ends.
#include <cstdio>

#include "case.h"

namespace {

/// Tells in the end which operations have been reached.
struct Reached {
  std::vector<int64_t> calls = std::vector<int64_t>(test::all_operations().size());

  ~Reached() {
    const auto none = std::count(calls.begin(), calls.end(), 0);
    std::fprintf(stderr, "%zu of %zu operations reached, the least often %lld times\n", calls.size() - size_t(none),
                 calls.size(), static_cast<long long>(*std::min_element(calls.begin(), calls.end())));
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Reached reached;
  const test::Case one({data, size});
  ++reached.calls[one.number()];
  one.check(1);
  return 0;
}
