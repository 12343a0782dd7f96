#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "bits/bit_reader.h"
#include "bits/bit_writer.h"

using namespace pqx_codec;

TEST(Bits, AreThoseOfSingleSteps) {
  std::mt19937 random(5);
  for (const bool ones : {false, true})
    for (int length = 0; length < 200; ++length) {
      std::vector<bool> bits;
      BitBuffer buffer(size_t(length) * 4);
      for (int i = 0; i < length; ++i) {
        const int n = int(random() % 33);
        const uint32_t value = uint32_t(random() & ((uint64_t{1} << n) - 1));
        buffer.cursor().put(value, n);
        for (int k = n - 1; k >= 0; --k) bits.push_back(value >> k & 1);
      }
      buffer.cursor().finish(ones);
      while (bits.size() % 8) bits.push_back(ones);
      const std::vector<uint8_t> bytes(buffer.bytes().begin(), buffer.bytes().end());
      ASSERT_EQ(bytes.size() * 8, bits.size());

      // Behind the end stand zeros.
      const auto expected = [&](size_t position, int n) {
        uint32_t value = 0;
        for (int k = 0; k < n; ++k)
          value = value << 1 | (position + size_t(k) < bits.size() && bits[position + size_t(k)]);
        return value;
      };
      BitReader reader(bytes);
      for (size_t position = 0, step = 0; step < 60; ++step) {
        const int n = 1 + int(random() % 32);
        reader.refill();
        ASSERT_EQ(reader.ready(32), expected(position, 32)) << position;
        ASSERT_EQ(reader.read(n), expected(position, n)) << position;
        position += size_t(n);
        if (random() % 4 == 0) reader.seek(position = random() % (bits.size() + 70));
        ASSERT_EQ(reader.position(), position);
        ASSERT_EQ(reader.bits_left(), ptrdiff_t(bits.size()) - ptrdiff_t(position));
      }
    }
}
