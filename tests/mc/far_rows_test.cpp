#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>

#include "pqx_video.h"

namespace {

constexpr int rows = 18, row_bytes = 2048;
constexpr int64_t gap = int64_t(1) << 30;

struct Case {
  const char* name;
  void (*run)(const uint8_t* src, uint8_t* dst, int step);
};
int16_t* words(uint8_t* dst) { return reinterpret_cast<int16_t*>(dst); }

const Case cases[] = {
    {"CopyRef", [](auto s, auto d, int step) { pqx_Video_CopyRef_8U(s, d, step, 16, 9); }},
    {"CopyRefAve", [](auto s, auto d, int step) { pqx_Video_CopyRefAve_8U(s, d, step, 24, 9); }},
    {"CopyRef_16S", [](auto s, auto d, int step) { pqx_Video_CopyRef_8U_16S(s, step, words(d), 16, 9); }},
    {"Average2", [](auto s, auto d, int step) { pqx_Video_Average2Rnd_8U(s, step, s + 7, step, d, step, 16, 8); }},
    {"Average3", [](auto s, auto d, int step) { pqx_Video_Average3Rnd_8U(s, step, s + 7, step, d, step, 8, 8); }},
    {"AddBlock",
     [](auto s, auto d, int step) { pqx_Video_AddBlock_16S_8U_I(reinterpret_cast<const int16_t*>(s), d, step); }},
    {"InterpX", [](auto s, auto d, int step) { pqx_Video_InterpX_8U(s, d, step, 16, 9); }},
    {"InterpY", [](auto s, auto d, int step) { pqx_Video_InterpY_8U(s, d, step, step, 8, 9); }},
    {"InterpXY", [](auto s, auto d, int step) { pqx_Video_InterpXY_8U(s, d, step, step, 16, 9); }},
    {"InterpAveXY", [](auto s, auto d, int step) { pqx_Video_InterpAveXY_8U(s, d, step, step, 20, 9); }},
    {"InterpY_16S", [](auto s, auto d, int step) { pqx_Video_InterpY_8U_16S(s, step, step, words(d), 16, 9); }},
    {"InterpX_Y_XY", [](auto s, auto d, int step) { pqx_Video_InterpX_Y_XY_8U(s, step, 16, 9, d, d + 64, d + 128); }},
    {"OverlappedMC",
     [](auto s, auto d, int step) { pqx_Video_H263OverlappedMC_8U(s, step, d, step, 0, 0, 1, 0, 2, 0, 3, 0, 4, 0); }},
    {"OverlappedMC_16S",
     [](auto s, auto d, int step) {
       pqx_Video_H263OverlappedMC_8U_16S(s, step, words(d), 0, 1, 1, 1, 2, 0, 3, 1, 4, 1);
     }},
    {"SumAbsDiff",
     [](auto s, auto d, int step) {
       const uint32_t sum = pqx_Video_SumAbsDiff_8U(s, s + 5, step, 16, 9);
       std::memcpy(d, &sum, sizeof sum);
     }},
    {"P64Loop", [](auto s, auto d, int step) { pqx_Video_P64Loop_8U(s, d, step); }},
    {"P64Loop_16S", [](auto s, auto d, int step) { pqx_Video_P64Loop_8U_16S(s, step, words(d)); }},
    {"P64Decimate", [](auto s, auto d, int step) { pqx_Video_P64Decimate_8U(s, step, d, step, 20, 8); }},
};

void fill(uint8_t* first, int64_t step) {
  for (int64_t y = 0; y < rows; ++y)
    for (int x = 0; x < row_bytes; ++x) first[y * step + x] = uint8_t((x + 31 * y) * (x + 7) >> 3);
}

// Rows a gigabyte apart, downward and upward, give what close ones give: the products of rows and steps need 64 bits.
TEST(FarRows, AreFound) {
  const size_t bytes = size_t(gap) * rows;
  void* map = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(map, MAP_FAILED);
  for (const Case& c : cases) {
    std::vector<uint8_t> close(size_t(2 * row_bytes) * rows);
    uint8_t* const near_src = close.data();
    fill(near_src, 2 * row_bytes);
    fill(near_src + row_bytes, 2 * row_bytes);
    c.run(near_src, near_src + row_bytes, 2 * row_bytes);
    for (int64_t step : {gap, -gap}) {
      uint8_t* const src = static_cast<uint8_t*>(map) + (step < 0 ? (rows - 1) * gap : 0);
      fill(src, step);
      fill(src + row_bytes, step);
      c.run(src, src + row_bytes, int(step));
      for (int64_t y = 0; y < rows; ++y)
        EXPECT_EQ(std::memcmp(src + y * step, near_src + y * 2 * row_bytes, 2 * row_bytes), 0) << c.name << " " << y;
    }
  }
  munmap(map, bytes);
}

// The row of a position on the half-sample grid is found in 32 bits that wrap, the rows from there on are not.
TEST(FarRows, OfTheHalfSampleGridWrap) {
  constexpr int step = 65536 + 16, y = 65536, wrapped = 16 * 65536;
  std::vector<uint8_t> ref(wrapped + 15 * step);
  for (size_t i = 0; i < ref.size(); ++i) ref[i] = uint8_t(i * i >> 7);
  int16_t expected[64], found[64];
  pqx_Video_H263OverlappedMC_8U_16S(&ref[wrapped], step, expected, 0, 0, 1, 0, 2, 0, 3, 0, 4, 0);
  pqx_Video_H263OverlappedMC_8U_16S(ref.data(), step, found, 0, y, 1, y, 2, y, 3, y, 4, y);
  EXPECT_EQ(std::memcmp(found, expected, sizeof found), 0);
}

}  // namespace
