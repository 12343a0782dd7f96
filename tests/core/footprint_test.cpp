#include "footprint.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

namespace {

using test::Footprint;

TEST(Footprints, AreGivenForEveryBufferOfEveryOperation) {
  const auto& declared = test::declared_functions();
  ASSERT_GT(declared.size(), 100u);
  for (const auto& [name, footprint] : Footprint::all()) EXPECT_TRUE(declared.contains(name)) << name;
  for (const auto& [name, parameters] : declared) {
    ASSERT_TRUE(Footprint::all().contains(name)) << "the manual has no footprint of " << name;
    const Footprint& footprint = Footprint::all().at(name);
    size_t buffers = 0;
    for (const test::Parameter& p : parameters) {
      if (p.type.find('*') == std::string::npos) continue;
      ++buffers;
      ASSERT_TRUE(footprint.arguments.contains(p.name)) << name << ", " << p.name;
      const Footprint::Bytes& bytes = footprint.arguments.at(p.name);
      const bool source = p.type.find("const") != std::string::npos;
      EXPECT_EQ(bytes.written, !source) << name << ", " << p.name;
      EXPECT_EQ(bytes.read, source || p.name == "pSrcDst") << name << ", " << p.name;
    }
    EXPECT_EQ(buffers, footprint.arguments.size()) << name;
  }
}

// The digests are those of the operations that the tests run; and what they run, they compare with the manual.
TEST(Footprints, AreComparedWithEveryTest) {
  std::set<std::string> run;
  std::ifstream digests(PQX_SOURCE_DIR "/tests/thorough/digests.txt");
  for (std::string name, rest; digests >> name && std::getline(digests, rest);) run.insert(name);
  for (const auto& [name, footprint] : Footprint::all())
    EXPECT_TRUE(run.contains(name.substr(name.rfind("pqx_Video_", 0) == 0 ? 10 : 0))) << name;
}

TEST(Footprints, AreEvaluatedAsTheyRead) {
  Footprint f;
  f.definitions = {
      {"w", "width == 2 || width == 8 ? width : 16"}, {"low", "w % 9 & 3"}, {"top", "max(h, 9) * 2 - 10 / 4"}};
  f.arguments["p"].formula = "h / 2 rows of w + 1, 2 * step - low apart, from 0, step and 2, from top";
  EXPECT_EQ(test::joined(f.rows("p", {{"width", 3}, {"h", 4}, {"step", -20}})),
            (std::vector<test::Span>{{-63, 17}, {-43, 17}, {-20, 17}, {0, 18}}));
}

}  // namespace
