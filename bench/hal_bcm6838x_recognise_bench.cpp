/// @file
/// Telling which protocol client a frame is for: the library's three predicates against a packet
/// library, capture filters and, where it is installed, the data-plane development kit. A pass goes
/// over all samples; the note names the samples that a way takes for something else.
#include <benchmark/benchmark.h>
#include <cstddef>
#include <string>

#include "base/bytes.h"
#include "ratio_reporter.h"
#include "recognisers.h"

namespace {

virtual_onu::ByteView FrameOf(const Sample& sample) {
  return virtual_onu::ByteView(sample.bytes).first(sample.length);
}

/// The samples that a recogniser takes for something else.
std::string Missed(Recogniser recognise) {
  std::string missed;
  for (const Sample& sample : Samples()) {
    if (recognise(FrameOf(sample)) != sample.client) {
      missed += (missed.empty() ? "misses " : "; ") + std::string(sample.name);
    }
  }
  return missed.empty() ? "misses none" : missed;
}

void Recognise(benchmark::State& state, Recogniser recognise) {
  while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(Samples().size()))) {
    for (const Sample& sample : Samples()) {
      benchmark::DoNotOptimize(recognise(FrameOf(sample)));
    }
  }
  state.SetLabel(Missed(recognise));
}

}  // namespace

BENCHMARK_CAPTURE(Recognise, library, RecogniseByLibrary)->Name("recognise/three predicates");
BENCHMARK_CAPTURE(Recognise, filter, RecogniseByFilter)->Name("recognise/libpcap filters");
BENCHMARK_CAPTURE(Recognise, tins, RecogniseByTins)->Name("recognise/libtins");
#ifdef BENCH_WITH_DPDK
BENCHMARK_CAPTURE(Recognise, dpdk, RecogniseByDpdk)->Name("recognise/DPDK packet type");
#endif

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
