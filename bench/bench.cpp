#include "bench.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include <memory>
#include <thread>

#include "peers/peers.h"

namespace bench {
namespace {

bool nobody_differs = true;

// Address space that is filled as far as it is asked for.
class Memory {
 public:
  template <class Fill>
  uint8_t* first(int64_t count, Fill fill) {
    if (count > reserved) abort();
    if (!start_) {
      void* p = mmap(nullptr, reserved, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
      if (p == MAP_FAILED) abort();
      start_ = static_cast<uint8_t*>(p);
    }
    for (; filled_ < count; filled_ += step) fill(start_ + filled_, step);
    return start_;
  }

 private:
  static constexpr int64_t reserved = int64_t(1) << 29, step = int64_t(1) << 20;
  uint8_t* start_ = nullptr;
  int64_t filled_ = 0;
};

// A walk in small random steps that is reflected at 0 and at the highest value.
class Walk {
 public:
  Walk(int highest, int stride) : highest_(highest), stride_(stride), value_(highest / 2) {}
  int next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    value_ += int(state_ >> 33) % (2 * stride_ + 1) - stride_;
    if (value_ < 0) value_ = -value_;
    if (value_ > highest_) value_ = 2 * highest_ - value_;
    return value_;
  }

 private:
  int highest_, stride_, value_;
  uint64_t state_ = 1;
};

double mean_difference(const Result& a, const Result& b, int scale_of_b) {
  const size_t n = a.words ? a.bytes.size() / 2 : a.bytes.size();
  const auto sample = [](const Result& r, size_t i) {
    int16_t word;
    if (!r.words) return int(r.bytes[i]);
    memcpy(&word, &r.bytes[2 * i], sizeof word);
    return int(word);
  };
  double sum = 0;
  for (size_t i = 0; i < n; ++i) sum += abs(sample(a, i) - sample(b, i) / scale_of_b);
  return sum / double(n);
}

Result result_of(const Setting& setting, const Work& work) {
  setting.prepare();
  setting.clear();
  work(1);
  return setting.result();
}

// A thread of its own, because some libraries choose their instruction set once for each thread.
template <class Body>
void in_new_thread(bool sse2_only, Body body) {
  for (const peers::Library& library : peers::libraries()) library.limit_to_sse2(sse2_only);
  std::thread(body).join();
}

volatile sig_atomic_t steps;

/// The instructions that a work takes: the processor's trap flag stops it behind each of them, for a thousand times its
/// time and more.
[[gnu::noinline]] double instructions_of(const Work& work) {
  work(1);  // symbols are looked up at the first call
  steps = 0;
  signal(SIGTRAP, [](int) { steps = steps + 1; });
  __builtin_ia32_writeeflags_u64(__builtin_ia32_readeflags_u64() | 0x100);
  work(1);
  __builtin_ia32_writeeflags_u64(__builtin_ia32_readeflags_u64() & ~0x100ull);
  return steps;
}

void time_it(benchmark::State& state, const Setting& setting, const Work& work, const std::string& label) {
  setting.prepare();
  work(1);
  while (state.KeepRunningBatch(state.max_iterations)) work(state.max_iterations);
  state.counters["units"] = setting.units;
  state.SetLabel(label);
}

}  // namespace

bool all_agree() { return nobody_differs; }

uint8_t* varied_bytes(int64_t count) {
  static Memory memory;
  static Walk walk(255, 6);
  return memory.first(count, [](uint8_t* p, int64_t n) {
    for (int64_t i = 0; i < n; ++i) p[i] = uint8_t(walk.next());
  });
}

uint8_t* varied_words(int64_t count) {
  static Memory memory;
  static Walk walk(4095, 96);
  return memory.first(count, [](uint8_t* p, int64_t n) {
    for (int64_t i = 0; i < n; i += 2) {
      const auto word = int16_t(walk.next());
      memcpy(p + i, &word, sizeof word);
    }
  });
}

uint8_t* results(int64_t count) {
  static Memory memory;
  return memory.first(count, [](uint8_t* p, int64_t n) { memset(p, 0, size_t(n)); });
}

void add(const std::string& family, const Line& line) {
  const std::string name = family + "/" + line.name + "/";
  const auto setting = std::make_shared<Setting>(line.setting);
  const auto instructions = std::make_shared<double>(0);

  // Before its first timing, each contender is compared: ours and the last release with plain C, others with ours.
  enum Side { ours, plain, last_release };
  const auto side = [=](Side side, const char* contender, const std::function<Work()>& make) {
    const auto known = std::make_shared<bool>(false);
    benchmark::RegisterBenchmark((name + contender).c_str(), [=](benchmark::State& state) {
      in_new_thread(false, [&] {
        if (!*known) {
          *known = true;
          if (side != plain && result_of(*setting, make()).bytes != result_of(*setting, setting->plain()).bytes) {
            fprintf(stderr, "%s%s has another result than plain C\n", name.c_str(), contender);
            nobody_differs = false;
          }
          if (side == ours && line.charted)
            *instructions = setting->part ? instructions_of(setting->part()) / setting->units_of_part
                                          : instructions_of(make()) / setting->units;
        }
        state.counters["instructions"] = *instructions;
        state.counters["charted"] = line.charted;
        time_it(state, *setting, make(), line.unit);
      });
    });
  };
  side(ours, "ours", setting->ours);
  side(plain, "plain C", setting->plain);
  if (setting->last_release) side(last_release, "last release", setting->last_release);

  for (const Rival& r : line.rivals)
    for (const bool sse2_only : {true, false}) {
      const std::string contender = name + r.library + (sse2_only ? " SSE2" : "");
      const auto known = std::make_shared<bool>(false);
      const auto rival = std::make_shared<Rival>(r);
      benchmark::RegisterBenchmark(contender.c_str(), [=](benchmark::State& state) {
        in_new_thread(sse2_only, [&] {
          rival->setting.prepare();
          const Work work = rival->make();
          if (!*known) {
            *known = true;
            const double difference = mean_difference(result_of(rival->setting, rival->setting.ours()),
                                                      result_of(rival->setting, work), rival->scale);
            if (difference > rival->tolerance) {
              fprintf(stderr, "%s differs from our result by %.2f on average\n", contender.c_str(), difference);
              nobody_differs = false;
            }
          }
          time_it(state, rival->setting, work, rival->difference);
        });
      });
    }
}

}  // namespace bench
