/// Benchmarks as tables: each line times this library, plain C and other libraries on the same memory.
#pragma once

#include <benchmark/benchmark.h>
#include <stdint.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "last_release.h"
#include "plain.h"
#include "pqx_video.h"

namespace bench {

/// A job, done a number of times.
using Work = std::function<void(int64_t times)>;

template <class Once>
Work repeated(Once once) {
  return [once](int64_t times) mutable {
    for (; times > 0; --times) {
      once();
      benchmark::ClobberMemory();
    }
  };
}

/// What a job has written: 8-bit samples, or 16-bit ones in the machine's order.
struct Result {
  std::vector<uint8_t> bytes;
  bool words = false;
};

/// The memory of a job, and how this library, plain C and the last release do it.
struct Setting {
  double units;                   // pixels, samples or blocks that one job yields
  std::function<void()> prepare;  // before every timing
  std::function<void()> clear;    // results, before two contenders are compared
  std::function<Result()> result;
  std::function<Work()> ours, plain, last_release;  // the last may be empty: what is new has no former time
  // Part of our work, of so many units, whose instructions are counted; without it, all of it.
  std::function<Work()> part = {};
  double units_of_part = 0;
};

/// Another library at the same task.
struct Rival {
  std::string library;
  std::string difference;  // in kind of work or arithmetic; empty if there is none but rounding
  double tolerance;        // of the mean difference from our result
  Setting setting;
  std::function<Work()> make;  // called where the memory is ready and the instruction set has been chosen
  int scale = 1;               // of its result over ours
};

struct Line {
  std::string name;  // operation/shape
  const char* unit;
  bool charted;  // in the chart, which shows every operation once
  Setting setting;
  std::vector<Rival> rivals;
};

/// Adds a line to the family named after a folder of operations.
void add(const std::string& family, const Line& line);

/// Memory shared by all lines, always at one place, of which at least that many bytes are filled on return: bytes or
/// 12-bit words that vary as pictures do, and room for results.
uint8_t* varied_bytes(int64_t count);
uint8_t* varied_words(int64_t count);
uint8_t* results(int64_t count);

/// Whether everybody that was timed so far had the results expected.
bool all_agree();

/// An operation under its name in each library.
template <class F>
struct Sides {
  const char* name;
  F *ours, *plain;
  F* last_release = reinterpret_cast<F*>(in_last_release(name));
};
#define OPERATION(NAME) \
  bench::Sides<decltype(plain::NAME)> { #NAME, pqx_Video_##NAME, plain::NAME }
/// The same beside the plain C of baseline.h.
#define TUNED(NAME) \
  bench::Sides<decltype(baseline::NAME)> { #NAME, pqx_Video_##NAME, baseline::NAME }

}  // namespace bench
