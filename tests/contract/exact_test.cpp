#include "exact.h"

#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#define PQX_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PQX_SANITIZED 1
#endif
#endif

namespace {

TEST(Contracts, SayExactlyWhatIsTouched) {
#ifdef PQX_SANITIZED
  GTEST_SKIP() << "a sanitizer takes the faults";
#endif
  if (std::getenv("PQX_TEST_FEW_CASES")) GTEST_SKIP() << "valgrind takes the faults, and emulation is slow";
  for (const auto& [name, contract] : test::contracts()) EXPECT_EQ(test::exact(contract), "") << name;
}

}  // namespace
