#include "exact.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

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
  for (const auto& [name, contract] : test::contracts()) EXPECT_EQ(test::exact(contract), "") << name;
}

// The digests are those of the operations that the tests run.
TEST(Contracts, AreAllCompared) {
  std::set<std::string> run;
  std::ifstream digests(PQX_SOURCE_DIR "/tests/thorough/digests.txt");
  for (std::string name, rest; digests >> name && std::getline(digests, rest);) run.insert(name);
  for (const auto& [name, contract] : test::contracts())
    EXPECT_TRUE(run.contains(name.substr(name.rfind("pqx_Video_", 0) == 0 ? 10 : 0))) << name;
}

}  // namespace
