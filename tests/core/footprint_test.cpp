#include "footprint.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

namespace {

// The digests are those of the operations that the tests run; and what they run, they compare with its contract.
TEST(Footprints, AreComparedWithEveryTest) {
  std::set<std::string> run;
  std::ifstream digests(PQX_SOURCE_DIR "/tests/thorough/digests.txt");
  for (std::string name, rest; digests >> name && std::getline(digests, rest);) run.insert(name);
  for (const auto& [name, contract] : test::contracts())
    EXPECT_TRUE(run.contains(name.substr(name.rfind("pqx_Video_", 0) == 0 ? 10 : 0))) << name;
}

}  // namespace
