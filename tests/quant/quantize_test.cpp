#include <gtest/gtest.h>

#include <array>

#include "operation.h"
#include "plain.h"

using test::Argument, test::buffer, test::Data, test::Ints, test::Random;

namespace {

int64_t block(Ints) { return 64; }

/// Numbers that a caller may put into a state: matrix entries or their reciprocals, fractions, and, as the extremes,
/// what leaves the range of the conversions.
template <class Float>
void fill_state(Random& random, Data data, uint8_t* bytes, int64_t count) {
  using Limits = std::numeric_limits<Float>;
  constexpr Float extremes[] = {Limits::infinity(),   -Limits::infinity(), Limits::quiet_NaN(), Limits::max(),
                                Limits::denorm_min(), Float(65536),        Float(-65537.5),     Float(-0.0)};
  for (int64_t i = 0; i < count; i += sizeof(Float)) {
    const Float step = Float(int(random() % 65536) - 32768);
    const Float value = data == Data::extreme  ? extremes[random() % std::size(extremes)]
                        : data == Data::random ? step
                        : data == Data::small  ? 1 / step
                                               : step / 1024;
    std::copy_n(reinterpret_cast<const uint8_t*>(&value), sizeof(Float), bytes + i);
  }
}

TEST(Quantize, MatchesTheTypedArithmetic) {
  const Argument words = buffer<int16_t>(block), floats = buffer<float>(block, fill_state<float>),
                 doubles = buffer<double>(block, fill_state<double>);
  test::check({
      OPERATION(QuantizeInit_16S, {words, floats}),
      OPERATION(Quantize_16S_I, {floats, words}),
      OPERATION(DeQuantizeInit_16S, {words, doubles}),
      OPERATION(DeQuantize_16S_I, {doubles, words}),
  });
}

}  // namespace
