#include <gtest/gtest.h>

#include "operation.h"
#include "plain.h"

using test::Argument, test::Ints, test::plane, test::size, test::step;

namespace {

int64_t columns(Ints n) { return n[6] == 2 || n[6] == 4 || n[6] == 8 ? n[6] : 16; }
int64_t bands(Ints n) { return std::max(n[7] + 3, 0) / 4 * 4; }

using Average = decltype(pqx_Video_Average2Rnd_8U);
using OneStep = pqx_Status(const uint8_t*, const uint8_t*, uint8_t*, int, int, int);
template <Average* f>
pqx_Status with_one_step(const uint8_t* a, const uint8_t* b, uint8_t* d, int step, int width, int height) {
  return f(a, step, b, step, d, step, width, height);
}

template <Average* ours, Average* plain>
void check(const char* name) {
  const Argument widths = size({2, 4, 8, 16, 0, -8, 3, 6, 32}), heights = size({-1, 0, 1, 3, 4, 5, 8, 16, 17});
  const auto block = [](int step) { return plane(step, columns, bands); };
  test::check({name,
               test::erase(ours),
               test::erase(plain),
               {block(1), step(columns), block(3), step(columns), block(5), step(columns), widths, heights},
               {{4, 0, {0}}, {4, 2, {0}}}});
  const auto equal_steps = [](Ints n) { return n[4] == 2 || n[4] == 4 || n[4] == 8 ? n[4] : 16; };
  const Argument in_place = plane(3, equal_steps, [](Ints n) { return std::max(n[5] + 3, 0) / 4 * 4; });
  test::check({std::string(name) + " with one step",
               test::erase(with_one_step<ours>),
               test::erase(with_one_step<plain>),
               {in_place, in_place, in_place, step(equal_steps), widths, heights},
               {{2, 0, {0}}, {2, 1, {0}}}});
}

TEST_OPERATIONS(Average, RoundsEachOfItsMeans) {
  check<pqx_Video_Average2NoRnd_8U, plain::Average2NoRnd_8U>("pqx_Video_Average2NoRnd_8U");
  check<pqx_Video_Average2Rnd_8U, plain::Average2Rnd_8U>("pqx_Video_Average2Rnd_8U");
  check<pqx_Video_Average3NoRnd_8U, plain::Average3NoRnd_8U>("pqx_Video_Average3NoRnd_8U");
  check<pqx_Video_Average3Rnd_8U, plain::Average3Rnd_8U>("pqx_Video_Average3Rnd_8U");
}

}  // namespace
