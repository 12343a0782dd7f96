// Times this family's operations as decoders call them: many shapes, steps and places, in an order that is new for
// every pass, so that no branch can be learnt by heart.
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <x86intrin.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <numeric>
#include <regex>

#include "operations.h"

namespace prediction {
namespace {

struct Contender {
  std::string name;
  std::vector<void*> functions;  // by operation
};

/// One line of the table: something to be done in random order, made anew for every round.
struct Line {
  std::string operation, shape, kind;
  double calls = 0;  // for each thing to be done
  std::function<void(Random&, int turn)> prepare;
  std::function<void(Random&)> shuffle;
  // By contender; empty where it has no such operation.
  std::vector<std::function<void()>> work = {};
  std::vector<std::vector<float>> times = {};  // of passes, in clock ticks for each call

  double quantile(size_t contender, double q) {
    std::vector<float>& t = times[contender];
    if (t.empty()) return 0;
    const auto at = t.begin() + std::ptrdiff_t(double(t.size() - 1) * q);
    std::nth_element(t.begin(), at, t.end());
    return *at;
  }
};

template <class T>
struct Shuffled {
  std::vector<T> all;
  std::vector<const T*> order;

  void take(std::vector<T> things) {
    all = std::move(things);
    order.clear();
    for (const T& t : all) order.push_back(&t);
  }
};

std::string text(Shape s) { return std::to_string(s.width) + "x" + std::to_string(s.height); }

bool peer_can(const Operation& o, const std::vector<Shape>& shapes, Steps steps, Place place) {
  return o.peer.run && place == Place::grid && (o.peer.packed == (steps == Steps::packed)) &&
         std::all_of(shapes.begin(), shapes.end(), [](Shape s) { return s.width == 8 || s.width == 16; });
}

void add_lines(std::vector<Line>& lines, size_t number, const std::vector<Contender>& contenders, bool with_peer) {
  const Operation& o = operations()[number];
  std::vector<std::pair<std::string, std::vector<Shape>>> shapes;
  for (Shape s : o.shapes) shapes.push_back({text(s), {s}});
  if (o.shapes.size() > 1) {
    std::vector<Shape> wide;
    std::copy_if(o.shapes.begin(), o.shapes.end(), std::back_inserter(wide), [](Shape s) { return s.width >= 8; });
    shapes.push_back({"mixed, 8 or 16", wide});
    if (wide.size() < o.shapes.size()) shapes.push_back({"mixed", o.shapes});
  }
  for (const auto& [shape, of] : shapes)
    for (Steps steps : o.steps)
      for (Place place : o.places) {
        const auto calls = std::make_shared<Shuffled<Call>>();
        Line line{o.name,
                  shape,
                  std::string(name_of(steps)) + ", " + name_of(place),
                  256,
                  [=, of = of](Random& r, int turn) { calls->take(random_calls(r, of, steps, place, turn)); },
                  [=](Random& r) { std::shuffle(calls->order.begin(), calls->order.end(), r); }};
        for (const Contender& c : contenders)
          line.work.push_back([run = o.run, f = c.functions[number], calls] { run(&f, calls->order); });
        line.work.push_back({});
        if (with_peer && peer_can(o, of, steps, place))
          line.work.back() = [peer = o.peer, calls] { peer.run(&peer.of_8, calls->order); };
        lines.push_back(line);
      }
}

void add_trace(std::vector<Line>& lines, Picture picture, Place place, const std::vector<Contender>& contenders,
               bool with_peer) {
  const auto all = std::make_shared<Shuffled<Macroblock>>();
  const auto calls = std::make_shared<double>();
  Line line{"a trace",
            name_of(picture),
            name_of(place),
            0,
            [=](Random& r, int turn) { all->take(random_macroblocks(r, picture, place, turn)); },
            [=](Random& r) { std::shuffle(all->order.begin(), all->order.end(), r); }};
  line.calls = 64 * (picture == Picture::P ? 3.75 : 7.5);  // a quarter of the macroblocks has four vectors
  for (const Contender& c : contenders)
    line.work.push_back([&f = c.functions, all] { run_macroblocks(f.data(), all->order); });
  line.work.push_back({});
  if (with_peer && place == Place::grid) line.work.back() = [all] { run_macroblocks_of_peers(all->order); };
  lines.push_back(line);
}

double ticks_per_nanosecond() {
  using namespace std::chrono;
  const auto start = steady_clock::now();
  const uint64_t first = __rdtsc();
  while (steady_clock::now() - start < milliseconds(50)) {
  }
  const uint64_t ticks = __rdtsc() - first;
  return double(ticks) / double(duration_cast<nanoseconds>(steady_clock::now() - start).count());
}

/// Fails where a contender's results are not those of the first.
void compare(Line& line, Random& random, size_t nothing) {
  line.prepare(random, 0);
  uint64_t expected = 0;
  for (size_t k = 0; k < line.work.size(); ++k) {
    if (!line.work[k] || k == nothing) continue;
    clear_results();
    line.work[k]();
    if (k == 0) expected = digest_of_results();
    if (digest_of_results() != expected) {
      fprintf(stderr, "%s %s %s: contender %zu has other results\n", line.operation.c_str(), line.shape.c_str(),
              line.kind.c_str(), k);
      exit(1);
    }
  }
  clear_results();
}

void time_passes(Line& line, Random& random, int turn, int passes) {
  line.prepare(random, turn);
  std::vector<size_t> contenders(line.work.size());
  std::iota(contenders.begin(), contenders.end(), size_t(0));
  for (int pass = 0; pass < passes; ++pass) {
    std::shuffle(contenders.begin(), contenders.end(), random);
    for (size_t k : contenders) {
      if (!line.work[k]) continue;
      line.shuffle(random);
      _mm_lfence();
      const uint64_t start = __rdtsc();
      line.work[k]();
      _mm_lfence();
      line.times[k].push_back(float(double(__rdtsc() - start) / line.calls));
    }
  }
}

/// Geometric mean and greatest of ratios, where there are any.
struct Ratios {
  double logs = 0, worst = 0;
  int count = 0;
  std::string where;
  void add(double ratio, const std::string& at) {
    logs += std::log(ratio), ++count;
    if (ratio > worst) worst = ratio, where = at;
  }
  double mean() const { return count ? std::exp(logs / count) : 0; }
};

void* load(const std::string& path) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) fprintf(stderr, "%s\n", dlerror()), exit(1);
  return library;
}

/// A table for one compiler: today's time over that of each other contender.
void report(std::vector<Line>& lines, const std::vector<std::string>& names, size_t today,
            const std::vector<size_t>& others) {
  printf("\n%s over those of others: mean and worst line\n%-20s %5s", names[today].c_str(), "operation", "lines");
  for (size_t k : others) printf(" | %-48s", names[k].c_str());
  printf("\n");
  std::map<size_t, Ratios> all, means;
  for (size_t first = 0, end; first < lines.size(); first = end) {
    std::map<size_t, Ratios> own;
    for (end = first; end < lines.size() && lines[end].operation == lines[first].operation; ++end)
      for (size_t k : others)
        if (lines[end].work[k]) {
          const double ratio = lines[end].quantile(today, 0.25) / lines[end].quantile(k, 0.25);
          own[k].add(ratio, lines[end].shape + " " + lines[end].kind);
          all[k].add(ratio, lines[end].operation + " " + lines[end].shape + " " + lines[end].kind);
        }
    printf("%-20s %5zu", lines[first].operation.c_str(), end - first);
    for (size_t k : others)
      if (own[k].count)
        printf(" | %5.3f %5.3f %-36.36s", own[k].mean(), own[k].worst, own[k].where.c_str()),
            means[k].add(own[k].mean(), lines[first].operation);
      else
        printf(" | %48s", "");
    printf("\n");
  }
  for (size_t k : others)
    printf("over %s: mean of %d lines %.3f, of %d operations %.3f; worst operation %.3f %s; worst line %.3f %s\n",
           names[k].c_str(), all[k].count, all[k].mean(), means[k].count, means[k].mean(), means[k].worst,
           means[k].where.c_str(), all[k].worst, all[k].where.c_str());
}

}  // namespace
}  // namespace prediction

int main(int argc, char** argv) {
  using namespace prediction;
  CLI::App app("Times operations on predictions as decoders call them.");
  uint64_t seed = std::random_device()();
  int rounds = 12, passes = 60;
  bool every_line = false;
  std::string filter = ".";
  std::vector<std::string> libraries;
  app.add_option("--seed", seed, "of everything that is random");
  app.add_option("--rounds", rounds, "each with places of its own");
  app.add_option("--passes", passes, "of each round");
  app.add_option("--filter", filter, "regular expression to be found in \"operation shape kind\"");
  app.add_flag("--lines", every_line, "print the times of all lines too");
  app.add_option("libraries", libraries, "NAME=PATH of libpqx_video.so: for each compiler today's, then a former one")
      ->required();
  CLI11_PARSE(app, argc, argv);

  std::vector<Contender> contenders;
  for (const std::string& library : libraries) {
    const size_t equals = library.find('=');
    Contender c{library.substr(0, equals), {}};
    void* const handle = load(library.substr(equals + 1));
    for (const Operation& o : operations()) {
      c.functions.push_back(dlsym(handle, (std::string("pqx_Video_") + o.name).c_str()));
      if (!c.functions.back()) fprintf(stderr, "%s\n", dlerror()), exit(1);
    }
    contenders.push_back(c);
  }
  Contender plain{"plain C", {}}, nothing{"an empty function", {}};
  for (const Operation& o : operations()) {
    plain.functions.push_back(o.plain);
    nothing.functions.push_back(prediction::nothing());
  }
  const size_t plain_at = contenders.size(), nothing_at = plain_at + 1, peer_at = plain_at + 2;
  contenders.insert(contenders.end(), {plain, nothing});
  std::vector<std::string> names;
  for (const Contender& c : contenders) names.push_back(c.name);
  names.push_back("FFmpeg, SSE2 and MMX");

  std::vector<Line> lines;
  for (size_t k = 0; k < operations().size(); ++k) add_lines(lines, k, contenders, true);
  for (Picture p : {Picture::P, Picture::B, Picture::B_by_averages})
    for (Place place : {Place::grid, Place::anywhere}) add_trace(lines, p, place, contenders, true);
  std::erase_if(lines, [&, wanted = std::regex(filter)](const Line& l) {
    return !std::regex_search(l.operation + " " + l.shape + " " + l.kind, wanted);
  });

  Random random(seed);
  printf("%zu lines, %d rounds of %d passes, seed %llu\n", lines.size(), rounds, passes, (unsigned long long)seed);
  for (Line& line : lines) line.times.resize(line.work.size()), compare(line, random, nothing_at);
  for (int round = 0; round < rounds; ++round)
    for (Line& line : lines) time_passes(line, random, round, passes);

  const double ticks = ticks_per_nanosecond();
  if (every_line) {
    printf("\nNanoseconds a call, first quartile of passes (half of them lie between this and the third)\n");
    for (const std::string& name : names) printf("%-14.14s ", name.c_str());
    printf("\n");
    for (Line& line : lines) {
      for (size_t k = 0; k < names.size(); ++k)
        if (line.work[k])
          printf("%5.2f -%5.2f   ", line.quantile(k, 0.25) / ticks, line.quantile(k, 0.75) / ticks);
        else
          printf("%14s ", "");
      printf("%s, %s, %s\n", line.operation.c_str(), line.shape.c_str(), line.kind.c_str());
    }
  }
  for (size_t k = 0; k < libraries.size(); k += 2) {
    std::vector<size_t> others = {plain_at, peer_at};
    if (k + 1 < libraries.size()) others.insert(others.begin(), k + 1);
    report(lines, names, k, others);
  }
}
