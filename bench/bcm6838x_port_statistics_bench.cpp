/// @file
/// Port counters by the library against the bare device command that each of them must make. Both
/// sides are served by the virtual unit, with its trace switched off.
#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <sys/ioctl.h>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

using virtual_onu::Unit;

constexpr std::uint32_t kPorts = 4;

using Getter = std::uint32_t (*)(std::uint32_t port, std::uint32_t* out);

/// The getters of frames; those of octets differ in their result.
#define GETTER_uint32_t(name) BCM6838X_GetPortStatistics##name,
#define GETTER_Counter64(name)
#define GETTER(name, type, ...) GETTER_##type(name)
constexpr std::array<Getter, 22> kGetters = {BCM6838X_COUNTER_LIST(GETTER)};
#undef GETTER
#undef GETTER_Counter64
#undef GETTER_uint32_t

/// The commands that reading all counters takes without the library.
constexpr std::uint32_t kReadsOfAll = kPorts * (kGetters.size() + 2);

void ReadBare(benchmark::State& state, std::uint32_t reads) {
  Unit unit;
  unit.trace().setRecording(false);
  const int fd = VOS_OpenDevice("BrmgrDev");
  for ([[maybe_unused]] auto _ : state) {
    for (std::uint32_t i = 0; i < reads; ++i) {
      PortStatsRecord record = {};
      record.port = 1 + i % kPorts;
      BrmgrRequest request = {BRMGR_CMD_PORT_STATS, sizeof(record), BRMGR_FLAG_READ_BACK, &record};
      benchmark::DoNotOptimize(ioctl(fd, BRMGR_IOCTL_REQUEST, &request));
      benchmark::DoNotOptimize(record);
    }
  }
}

void ReadOne(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  BCM6838X_InitDrv();
  std::uint32_t value = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_GetPortStatisticsRxErrorPackets(1, &value));
    benchmark::DoNotOptimize(value);
  }
}

void ReadTable(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  BCM6838X_InitDrv();
  std::array<PortStatisticsEntry, kPorts> entries = {};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_GetPortStatistics(entries.data()));
    benchmark::DoNotOptimize(entries);
  }
}

void ReadAll(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  BCM6838X_InitDrv();
  std::uint32_t value = 0;
  Counter64 octets = {};
  for ([[maybe_unused]] auto _ : state) {
    for (std::uint32_t port = 1; port <= kPorts; ++port) {
      for (const Getter get : kGetters) {
        get(port, &value);
      }
      BCM6838X_GetPortStatisticsRxOctets(port, &octets);
      BCM6838X_GetPortStatisticsTxOctets(port, &octets);
      benchmark::DoNotOptimize(octets);
    }
    benchmark::DoNotOptimize(value);
  }
}

}  // namespace

BENCHMARK_CAPTURE(ReadBare, One, 1)->Name("one counter/bare command");
BENCHMARK(ReadOne)->Name("one counter/getter");
BENCHMARK_CAPTURE(ReadBare, Table, kPorts)->Name("table of 4 ports/bare commands");
BENCHMARK(ReadTable)->Name("table of 4 ports/library");
BENCHMARK_CAPTURE(ReadBare, All, kReadsOfAll)->Name("all counters of 4 ports/bare commands");
BENCHMARK(ReadAll)->Name("all counters of 4 ports/24 getters each");
BENCHMARK(ReadTable)->Name("all counters of 4 ports/table");

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
