#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "pqx_video.h"

namespace {

TEST(Services, NamesEveryStatus) {
  const struct {
    pqx_Status status;
    const char* text;
  } texts[] = {{PQX_OK, "No error"},
               {PQX_ERR_PARAM, "Invalid, out of range or unsupported parameter"},
               {PQX_ERR_MEMORY, "Not enough memory for the function"},
               {PQX_ERR_DATA, "Incorrect data found (exception) during the execution"},
               {4, "Unknown Status"},
               {-1, "Unknown Status"},
               {INT32_MIN, "Unknown Status"}};
  for (const auto& t : texts) EXPECT_STREQ(pqx_GetStringStatus(t.status), t.text);
}

TEST(Services, TellsItsVersion) {
  EXPECT_STREQ(pqx_GetVersion(), "PQX:1100:20240723:linux-x8664:svn:");
  EXPECT_EQ(std::string("@(#)") + pqx_GetVersion(), pqxid);
}

TEST(Services, AllocatesAlignedMemoryOfTheFullSize) {
  for (int size : {0, -1, -5, INT32_MIN, INT32_MAX, INT32_MAX - 63}) EXPECT_EQ(pqx_Malloc(size), nullptr) << size;
  std::vector<char*> blocks;
  for (int size = 1; size < 300; ++size) {
    auto* block = static_cast<char*>(pqx_Malloc(size));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(uintptr_t(block) % 64, 0u);
    memset(block, size, size_t(size));  // a write too far shows under a memory checker, and in the free below
    blocks.push_back(block);
  }
  for (size_t i = 0; i < blocks.size(); ++i) {
    EXPECT_EQ(blocks[i][i], char(i + 1));
    pqx_Free(blocks[i]);
  }
  pqx_Free(nullptr);
}

TEST(Services, AlignsPointers) {
  alignas(64) char block[256];
  for (int align : {1, 2, 16, 64})
    for (int offset = 0; offset < 130; ++offset) {
      const int up = (offset + align - 1) / align * align;
      EXPECT_EQ(pqx_AlignPointer(block + offset, align), block + up) << offset << " to " << align;
    }
}

TEST(Services, KeepsTheThreadCount) {
  int32_t threads = 7;
  EXPECT_EQ(pqx_GetNumThreads(&threads), PQX_OK);
  EXPECT_EQ(threads, -1);
  for (int value : {0, 8, -3, INT32_MIN}) {
    EXPECT_EQ(pqx_SetNumThreads(value), PQX_OK);
    EXPECT_EQ(pqx_GetNumThreads(&threads), PQX_OK);
    EXPECT_EQ(threads, value);
    EXPECT_EQ(pqx_nthreads, value);
  }
}

}  // namespace
