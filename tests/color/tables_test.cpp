#include "tables.h"

#include <gtest/gtest.h>

#include "pqx_video.h"

namespace {

template <class T, size_t n>
void expect_table(const char* name, const T (&table)[n], auto entry) {
  for (size_t i = 0; i < n; ++i) ASSERT_EQ(table[i], T(entry(int(i)))) << name << "[" << i << "]";
}

TEST(ColorTables, EveryEntryFollowsItsRule) {
#define EXPECT_TABLE(name) expect_table("pqx_t" #name, pqx_t##name, [](int i) { return plain::t##name[size_t(i)]; })
  EXPECT_TABLE(YY);
  EXPECT_TABLE(RV);
  EXPECT_TABLE(GV);
  EXPECT_TABLE(GU);
  EXPECT_TABLE(BU);
  EXPECT_TABLE(RCr);
  EXPECT_TABLE(GCr);
  EXPECT_TABLE(GCb);
  EXPECT_TABLE(BCb);
#undef EXPECT_TABLE
#define EXPECT_TABLE(name) expect_table("pqx_t_" #name, pqx_t_##name, [](int i) { return plain::name[size_t(i)]; })
  EXPECT_TABLE(r2j);
  EXPECT_TABLE(g2j);
  EXPECT_TABLE(b2j);
  EXPECT_TABLE(Yuv2rgb);
  EXPECT_TABLE(yUv2rgb);
  EXPECT_TABLE(yuV2rgb);
#undef EXPECT_TABLE
  expect_table("pqx_tClip", pqx_tClip, [](int i) { return plain::clip(i - 576); });
  expect_table("pqx_video_pClipOff256", pqx_video_pClipOff256, [](int i) { return plain::clamp_to_byte(i - 256); });
}

// Entries known from elsewhere, so that the rule itself is not only compared with itself.
TEST(ColorTables, KnownEntries) {
  const struct {
    const int16_t* table;
    int first, last;
  } ends[] = {{pqx_tYY, 0, 594},  {pqx_tRV, 0, 814},  {pqx_tGV, 0, 415},   {pqx_tGU, 271, 71}, {pqx_tBU, 0, 1029},
              {pqx_tRCr, 0, 715}, {pqx_tGCr, 0, 364}, {pqx_tGCb, 271, 95}, {pqx_tBCb, 0, 904}};
  for (const auto& end : ends) {
    EXPECT_EQ(end.table[0], end.first);
    EXPECT_EQ(end.table[255], end.last);
  }
  EXPECT_EQ(pqx_t_r2j[199] & 1023, 59u);
  EXPECT_EQ(pqx_t_g2j[80] >> 10 & 511, 128u - 26u);
  EXPECT_EQ(pqx_tClip[577], 0);
  EXPECT_EQ(pqx_tClip[1085], 254);
  EXPECT_EQ(pqx_tClip[1086], 255);
}

}  // namespace
