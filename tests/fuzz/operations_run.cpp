// operations_run THREADS CASES: calls of each operation that chance makes, in several threads at once.
#include <cstdio>

#include "case.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const int threads = std::atoi(argv[1]), cases = std::atoi(argv[2]);
  const size_t operations = test::all_operations().size();
  const char* const seed = std::getenv("PQX_TEST_SEED");
  test::Random random(seed ? std::strtoul(seed, nullptr, 10) : 1);
  uint8_t bytes[256];
  for (size_t k = 0; k < operations; ++k)
    for (int i = 0; i < cases; ++i) {
      std::generate(bytes, bytes + sizeof bytes, [&] { return uint8_t(random()); });
      bytes[0] = uint8_t(k);
      bytes[1] = uint8_t(k >> 8);
      test::Case(bytes).check(threads);
    }
  std::printf("%zu operations, %d calls each in %d threads\n", operations, cases, threads);
}
