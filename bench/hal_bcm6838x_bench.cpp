/// @file
/// The command channel and the start-up, each against the bare device calls that it must make; the
/// start-up also clears its tables. Both
/// sides are served by the virtual unit, with its trace switched off.
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sys/ioctl.h>
#include <vector>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

using virtual_onu::CommandEvent;
using virtual_onu::Unit;

constexpr int kStarts = 300;

FeatureRecord featureRecord = {1};

void IoctlByLibrary(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  BCM6838X_InitDrv();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(
        BCM6838X_Ioctl(BRMGR_CMD_FEATURE, &featureRecord, sizeof(featureRecord), BRMGR_FLAG_INPUT));
  }
}

void IoctlBare(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  const int fd = VOS_OpenDevice("BrmgrDev");
  for ([[maybe_unused]] auto _ : state) {
    BrmgrRequest request = {BRMGR_CMD_FEATURE, sizeof(featureRecord), BRMGR_FLAG_INPUT,
                            &featureRecord};
    benchmark::DoNotOptimize(ioctl(fd, BRMGR_IOCTL_REQUEST, &request));
  }
}

/// The commands of one start, to be sent again without the library.
std::vector<CommandEvent> CommandsOfAStart() {
  const Unit unit;
  BCM6838X_Init();
  return virtual_onu::EventsOf<CommandEvent>(unit.trace().events());
}

/// As many bytes as the tables have that a start clears: VLAN objects, actions and flows, and the
/// two copies of the ports' configuration.
constexpr std::size_t kClearedBytes = 8389120 + 1536 + 7168 + 1343488 + 41984 + 2 * 492032;

void StartByLibrary(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    {
      Unit unit;
      unit.trace().setRecording(false);
      state.ResumeTiming();
      BCM6838X_Init();
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
}

void StartBare(benchmark::State& state) {
  const std::vector<CommandEvent> commands = CommandsOfAStart();
  std::vector<std::uint8_t> tables(kClearedBytes);
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    {
      std::vector<CommandEvent> records = commands;
      Unit unit;
      unit.trace().setRecording(false);
      state.ResumeTiming();
      const int fd = VOS_OpenDevice("BrmgrDev");
      for (CommandEvent& record : records) {
        BrmgrRequest request = {record.code, record.length, record.flag, record.before.data()};
        benchmark::DoNotOptimize(ioctl(fd, BRMGR_IOCTL_REQUEST, &request));
      }
      std::memset(tables.data(), 0, tables.size());
      benchmark::ClobberMemory();
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
}

}  // namespace

BENCHMARK(IoctlBare)->Name("command/bare");
BENCHMARK(IoctlByLibrary)->Name("command/BCM6838X_Ioctl");
// A start needs a fresh unit each time, whose making takes far longer than the start.
BENCHMARK(StartBare)->Name("start-up/bare")->Iterations(kStarts);
BENCHMARK(StartByLibrary)->Name("start-up/BCM6838X_Init")->Iterations(kStarts);

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
