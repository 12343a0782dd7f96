#include "footprint.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

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

// What the tests run an operation on, by its name, is compared with the manual; so every one needs to be run by name.
TEST(Footprints, AreComparedWithEveryTest) {
  std::string tests;
  for (const auto& file : std::filesystem::recursive_directory_iterator(PQX_SOURCE_DIR "/tests"))
    if (file.path().filename().string().ends_with("_test.cpp")) {
      std::ifstream in(file.path());
      tests.append(std::istreambuf_iterator<char>(in), {});
    }
  for (const auto& [name, footprint] : Footprint::all()) {
    const std::string operation = name.substr(name.rfind("pqx_Video_", 0) == 0 ? 10 : 0);
    EXPECT_TRUE(tests.find("OPERATION(" + operation + ",") != std::string::npos ||
                tests.find('"' + name + '"') != std::string::npos)
        << name;
  }
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
