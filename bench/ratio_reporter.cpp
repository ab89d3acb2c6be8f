/// @file
/// Collects the runs of Google Benchmark and prints medians and ratios.
#include "ratio_reporter.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

namespace {

struct Series {
  std::string group;
  std::string variant;
  std::int64_t place;  ///< in the order of registration
  std::vector<double> nanoseconds;
  std::string note;  ///< the benchmark's label
};

double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values.empty() ? 0 : values[values.size() / 2];
}

double VariationPercent(const std::vector<double>& values) {
  const auto count = static_cast<double>(values.size());
  const double mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
  double squares = 0;
  for (const double value : values) {
    squares += (value - mean) * (value - mean);
  }
  return mean == 0 ? 0 : 100 * std::sqrt(squares / count) / mean;
}

class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration) {
        Series& series = seriesOf(run);
        series.nanoseconds.push_back(run.GetAdjustedCPUTime());
        series.note = run.report_label;
      }
    }
  }

  void Finalize() override {
    // The runs come in random order.
    std::ranges::sort(series_, {}, &Series::place);
    std::printf("%-28s %-24s %12s %7s %14s\n", "comparison", "variant", "median ns", "noise",
                "ratio to first");
    for (const Series& one : series_) {
      const double median = Median(one.nanoseconds);
      std::printf("%-28s %-24s %12.1f %6.1f%% %14s%s%s\n", one.group.c_str(), one.variant.c_str(),
                  median, VariationPercent(one.nanoseconds), ratio(one, median).c_str(),
                  one.note.empty() ? "" : "  ", one.note.c_str());
    }
  }

 private:
  /// The series of a run that is named "GROUP/VARIANT".
  Series& seriesOf(const Run& run) {
    const std::string& name = run.run_name.function_name;
    const std::size_t slash = name.find('/');
    const std::string group = name.substr(0, slash);
    const std::string variant = slash == std::string::npos ? "" : name.substr(slash + 1);
    for (Series& one : series_) {
      if (one.group == group && one.variant == variant) {
        return one;
      }
    }
    return series_.emplace_back(Series{group, variant, run.family_index, {}, {}});
  }

  [[nodiscard]] std::string ratio(const Series& one, double median) const {
    const auto base = std::ranges::find(series_, one.group, &Series::group);
    if (Median(base->nanoseconds) == 0) {
      return "-";
    }
    char text[32] = {};
    std::snprintf(text, sizeof(text), "%.2f", median / Median(base->nanoseconds));
    return text;
  }

  std::vector<Series> series_;
};

}  // namespace

int RunComparisons(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string repetitions = "--benchmark_repetitions=5";
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  arguments.push_back(repetitions.data());
  arguments.push_back(interleaving.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
    return 2;
  }
  RatioReporter reporter;
  return benchmark::RunSpecifiedBenchmarks(&reporter) == 0 ? 1 : 0;
}
