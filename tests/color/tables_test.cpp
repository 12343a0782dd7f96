#include <gtest/gtest.h>
#include <math.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include "pqx_video.h"

// The header states the entries of every table as a formula beside the declaration. The tables are compared with what
// stands there, so that no slope has to be written down once more.
namespace {

/// The comment that belongs to the declaration of a table, as one line.
std::string comment_of(const std::string& table) {
  static const std::string header = [] {
    std::ifstream file(PQX_SOURCE_DIR "/include/pqx_video.h");
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  const size_t at = header.find(" " + table + "["), line_end = header.find('\n', at);
  if (at == std::string::npos) return "";
  const std::string behind = header.substr(at, line_end - at);
  if (behind.find("/**<") != std::string::npos) return behind;
  const size_t begin = header.rfind("/**", at);
  return std::regex_replace(header.substr(begin, at - begin), std::regex("\\n \\* ?"), " ");
}

/// round(A + c x) with the numbers that stand behind the words: "0.006 + 3.193182 x", or a constant alone.
class Rule {
 public:
  Rule(const std::string& table, const std::string& words) {
    const std::regex formula(words + "(?:(-?[0-9.]+) ([+-]) )?(-?[0-9.]+) x"), constant(words + "([0-9]+)[,.]");
    const std::string comment = comment_of(table);
    std::smatch m;
    if (std::regex_search(comment, m, formula)) {
      offset_ = m[1].matched ? std::stod(m[1]) : 0;
      slope_ = std::stod(m[3]) * (m[2] == "-" ? -1 : 1);
    } else if (std::regex_search(comment, m, constant)) {
      offset_ = std::stod(m[1]);
    } else {
      ADD_FAILURE() << "No " << words << "in the comment of " << table << ": " << comment;
    }
  }
  int operator()(int x) const { return int(floor(offset_ + slope_ * x + 0.5)); }

 private:
  double offset_ = 0, slope_ = 0;
};

void expect_table(const char* name, const auto& table, auto entry) {
  for (int i = 0; i < int(std::size(table)); ++i) ASSERT_EQ(table[i], entry(i)) << name << "[" << i << "]";
}

TEST(ColorTables, AreWhatTheHeaderSays) {
#define EXPECT_HALF_UNITS(table) expect_table(#table, table, Rule(#table, "half units: "))
  EXPECT_HALF_UNITS(pqx_tYY);
  EXPECT_HALF_UNITS(pqx_tRV);
  EXPECT_HALF_UNITS(pqx_tGV);
  EXPECT_HALF_UNITS(pqx_tGU);
  EXPECT_HALF_UNITS(pqx_tBU);
  EXPECT_HALF_UNITS(pqx_tRCr);
  EXPECT_HALF_UNITS(pqx_tGCr);
  EXPECT_HALF_UNITS(pqx_tGCb);
  EXPECT_HALF_UNITS(pqx_tBCb);

  const auto expect_ycc = [](const char* name, const auto& table) {
    const Rule y(name, "Y = "), cb(name, "Cb = "), cr(name, "Cr = ");
    expect_table(name, table, [&](int x) { return uint32_t(y(x)) | (cb(x) & 511u) << 10 | (cr(x) & 511u) << 21; });
  };
  expect_ycc("pqx_t_r2j", pqx_t_r2j);
  expect_ycc("pqx_t_g2j", pqx_t_g2j);
  expect_ycc("pqx_t_b2j", pqx_t_b2j);

  const auto expect_rgb = [](const char* name, const auto& table) {
    const Rule r(name, "R = "), g(name, "G = (?:B = )?"), b(name, "B = ");
    expect_table(name, table, [&](int x) { return r(x) + g(x) * (1 << 10) + b(x) * (1 << 20); });
  };
  expect_rgb("pqx_t_Yuv2rgb", pqx_t_Yuv2rgb);
  expect_rgb("pqx_t_yUv2rgb", pqx_t_yUv2rgb);
  expect_rgb("pqx_t_yuV2rgb", pqx_t_yuV2rgb);

  expect_table("pqx_tClip", pqx_tClip, [](int i) { return std::clamp((i - 576) >> 1, 0, 255); });
  expect_table("pqx_video_pClipOff256", pqx_video_pClipOff256, [](int i) { return std::clamp(i - 256, 0, 255); });
}

}  // namespace
