#include <benchmark/benchmark.h>

#include "bench.h"
#include "peers/peers.h"

namespace {

// The table is made from the file of all repetitions.
class Silence : public benchmark::BenchmarkReporter {
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>&) override {}
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::AddCustomContext("compiler", __VERSION__);
  for (const peers::Library& library : peers::libraries()) benchmark::AddCustomContext(library.name, library.version);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  Silence silence;
  benchmark::RunSpecifiedBenchmarks(&silence);
  return bench::all_agree() ? 0 : 1;
}
