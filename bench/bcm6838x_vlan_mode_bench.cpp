/// @file
/// The ports' VLAN configuration against what it must do anyway: changes of mode and applies
/// against the same records, shell lines and copies without the library; a commit against a copy;
/// changes of the stacking list against the command and the copy that each of them makes.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <string>
#include <sys/ioctl.h>
#include <variant>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "base/trace.h"
#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

using virtual_onu::CommandEvent;
using virtual_onu::LogEvent;
using virtual_onu::ShellEvent;
using virtual_onu::TraceEvent;
using virtual_onu::Unit;

constexpr std::uint8_t kPort = 1;
constexpr std::uint16_t kServiceVid = 200;
constexpr std::uint32_t kListEntries = 512;

/// Enough for a full list, whose VLANs take eight flows each, twice.
constexpr std::size_t kManyFlows = 16384;

PortVlanTable current = {};
PortVlanTable applied = {};

void Copy() {
  std::memcpy(&applied, &current, sizeof(applied));
  benchmark::DoNotOptimize(applied);
  benchmark::ClobberMemory();
}

virtual_onu::UnitConfig RoomyUnit() {
  virtual_onu::UnitConfig config;
  config.chip.flowsPerClass = kManyFlows;
  return config;
}

/// A started unit whose port 1 has a trunk list of that length.
class TrunkUnit {
 public:
  explicit TrunkUnit(std::uint32_t entries) : unit_(RoomyUnit()) {
    unit_.trace().setRecording(false);
    BCM6838X_Init();
    BCM6838X_SetPortPvid(kPort, 4000);
    for (std::uint32_t i = 0; i < entries; ++i) {
      const PortVlanTrunkEntry entry = {kPort, 0, static_cast<std::uint16_t>(i + 1)};
      BCM6838X_AddVlanTrunk(&entry);
    }
  }

  Unit& unit() { return unit_; }

 private:
  Unit unit_;
};

/// What is measured, from a port with its list on.
struct Change {
  void (*arrange)();
  void (*run)();
  int copies;  ///< commits
};

void SetTrunk() {
  BCM6838X_SetVlanTrunk(kPort);
}

void SetTag() {
  BCM6838X_SetVlanTag(kPort);
}

void Apply() {
  BCM6838X_ApplyVlan(kPort);
}

constexpr Change kSet = {SetTag, SetTrunk, 1};
constexpr Change kApply = {SetTrunk, Apply, 1};

/// Everything that leaves the library during a change.
std::vector<TraceEvent> EventsOf(const Change& change, std::uint32_t entries) {
  TrunkUnit trunk(entries);
  change.arrange();
  trunk.unit().trace().setRecording(true);
  change.run();
  return trunk.unit().trace().events();
}

/// Sends what left the library again.
class Replay {
 public:
  Replay(int fd, bool withLog) : fd_(fd), withLog_(withLog) {}

  void operator()(CommandEvent& event) const {
    BrmgrRequest request = {event.code, event.length, event.flag, event.before.data()};
    benchmark::DoNotOptimize(ioctl(fd_, BRMGR_IOCTL_REQUEST, &request));
  }
  void operator()(const ShellEvent& event) const { VOS_System("%s", event.line.c_str()); }
  void operator()(const LogEvent& event) const {
    if (withLog_) {
      _LOG_Print(event.id, event.level, event.file.c_str(), event.line, "%s", event.text.c_str());
    }
  }
  template <typename Other>
  void operator()(const Other& /*event*/) const {}

 private:
  int fd_;
  bool withLog_;
};

void ByReplay(benchmark::State& state, const Change& change, std::uint32_t entries, bool withLog) {
  const std::vector<TraceEvent> recorded = EventsOf(change, entries);
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    {
      std::vector<TraceEvent> events = recorded;
      const TrunkUnit trunk(entries);
      change.arrange();
      const Replay replay(VOS_OpenDevice("BrmgrDev"), withLog);
      state.ResumeTiming();
      for (TraceEvent& event : events) {
        std::visit(replay, event.detail);
      }
      for (int i = 0; i < change.copies; ++i) {
        Copy();
      }
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
}

void Bare(benchmark::State& state, const Change& change, std::uint32_t entries) {
  ByReplay(state, change, entries, false);
}

void BareWithLog(benchmark::State& state, const Change& change, std::uint32_t entries) {
  ByReplay(state, change, entries, true);
}

void ByLibrary(benchmark::State& state, const Change& change, std::uint32_t entries) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    {
      const TrunkUnit trunk(entries);
      change.arrange();
      state.ResumeTiming();
      change.run();
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
}

void CommitByCopy(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    Copy();
  }
}

/// A priority of a transparent port is stored and committed, and nothing is sent.
void CommitByLibrary(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  BCM6838X_Init();
  BCM6838X_SetVlanTransparent(kPort);
  std::uint32_t priority = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_SetPortPriority(kPort, ++priority));
  }
}

PortVlanStackRange Range(std::uint32_t cvidStart, std::uint32_t cvidEnd) {
  return {kPort, {0, 0, 0}, 2, cvidStart, static_cast<std::uint16_t>(cvidEnd), kServiceVid};
}

/// A delete and the add that mends it, each with the configuration sent and a copy.
void StackingBare(benchmark::State& state) {
  Unit unit;
  unit.trace().setRecording(false);
  const int fd = VOS_OpenDevice("BrmgrDev");
  for ([[maybe_unused]] auto _ : state) {
    for (int i = 0; i < 2; ++i) {
      BrmgrRequest request = {BRMGR_CMD_VLAN_REBUILD, sizeof(current), BRMGR_FLAG_INPUT, &current};
      benchmark::DoNotOptimize(ioctl(fd, BRMGR_IOCTL_REQUEST, &request));
      Copy();
    }
  }
}

/// A full list of the VIDs from 1, of which a delete takes some out and an add puts them back.
void StackingByLibrary(benchmark::State& state, std::uint32_t deleteStart,
                       std::uint32_t deleteEnd) {
  Unit unit;
  unit.trace().setRecording(false);
  BCM6838X_InitDrv();
  BCM6838X_InitVlan();
  PortVlanStackRange all = Range(1, kListEntries);
  BCM6838X_AddVlanStacking(&all);
  for ([[maybe_unused]] auto _ : state) {
    PortVlanStackRange range = Range(deleteStart, deleteEnd);
    benchmark::DoNotOptimize(BCM6838X_DelVlanStacking(&range));
    all = Range(1, kListEntries);
    benchmark::DoNotOptimize(BCM6838X_AddVlanStacking(&all));
  }
}

// A fresh unit each time takes longer than what is measured, so that the rounds are few.
constexpr int kRounds = 20;
constexpr int kRoundsOfFullList = 3;

void RegisterChange(const std::string& name, const Change& change, std::uint32_t entries) {
  const std::string group = name + ", " + std::to_string(entries) + " VLANs";
  const int rounds = entries < kListEntries ? kRounds : kRoundsOfFullList;
  benchmark::RegisterBenchmark((group + "/bare").c_str(), Bare, change, entries)
      ->Iterations(rounds);
  benchmark::RegisterBenchmark((group + "/bare, log lines").c_str(), BareWithLog, change, entries)
      ->Iterations(rounds);
  benchmark::RegisterBenchmark((group + "/library").c_str(), ByLibrary, change, entries)
      ->Iterations(rounds);
}

}  // namespace

BENCHMARK(CommitByCopy)->Name("commit/memcpy");
BENCHMARK(CommitByLibrary)->Name("commit/SetPortPriority");
BENCHMARK(StackingBare)->Name("stacking delete, add/bare");
BENCHMARK_CAPTURE(StackingByLibrary, One, 7, 8)->Name("stacking delete, add/1 of 512");
BENCHMARK_CAPTURE(StackingByLibrary, Range, 7, 22)->Name("stacking delete, add/8 of 512");
BENCHMARK_CAPTURE(StackingByLibrary, Wrapped, 1, 1)->Name("stacking delete, add/all, 2^31 rounds");

int main(int argc, char** argv) {
  for (const std::uint32_t entries : {0U, 8U, 31U, kListEntries}) {
    RegisterChange("set trunk", kSet, entries);
    RegisterChange("apply trunk", kApply, entries);
  }
  return RunComparisons(argc, argv);
}
