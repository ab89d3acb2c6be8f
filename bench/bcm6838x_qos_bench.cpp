/// @file
/// Applying a full set of eight rules over another, and changing the scheduling scheme with it in
/// place, each against the bare device calls that it must make, and the former also against these
/// with the lines that it must log. All sides are served by the virtual unit, with its trace
/// switched off.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <functional>
#include <sys/ioctl.h>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

using virtual_onu::CommandEvent;
using virtual_onu::LogEvent;
using virtual_onu::Unit;

/// Eight rules of UNI port 1, each of which compares VLAN, DSCP and a destination address.
QosClassRuleSet FullSet() {
  constexpr std::uint8_t kVid = 100;
  QosClassRuleSet set = {};
  set.port = 1;
  std::uint8_t precedence = 1;
  for (QosClassRule& rule : set.rule) {
    rule.port = 1;
    rule.precedence = precedence++;
    rule.priority = rule.precedence - 1;
    for (const std::uint32_t field :
         {BCM6838X_QOS_FIELD_VLAN_ID, BCM6838X_QOS_FIELD_DSCP, BCM6838X_QOS_FIELD_DESTINATION_IP}) {
      rule.field[rule.fieldCount] = field;
      rule.op[rule.fieldCount] = BCM6838X_QOS_OPERATOR_EQUAL;
      rule.value[rule.fieldCount][5] = kVid;
      ++rule.fieldCount;
    }
  }
  return set;
}

/// A fresh unit with the full set in place; the library's tables outlive it.
class Bench {
 public:
  Bench() {
    BCM6838X_InitDrv();
    BCM6838X_InitQoS();
    BCM6838X_SetQosSchedule(0);
    apply();
    unit_.trace().setRecording(false);
  }

  void apply() const { BCM6838X_ApplyQosClassification(&set_); }

  static void reschedule() {
    BCM6838X_SetQosSchedule(1);
    BCM6838X_SetQosSchedule(0);
  }

  /// What a step sends and logs, to be done again without the library.
  std::vector<virtual_onu::TraceEvent> eventsOf(const std::function<void()>& step) {
    unit_.trace().clear();
    unit_.trace().setRecording(true);
    step();
    unit_.trace().setRecording(false);
    return unit_.trace().events();
  }

 private:
  Unit unit_;
  const QosClassRuleSet set_ = FullSet();
};

/// The driver writes into the records, so that each is sent from a copy, as the library sends it
/// from the stack.
void Send(int fd, const std::vector<CommandEvent>& commands, virtual_onu::Bytes& record) {
  for (const CommandEvent& command : commands) {
    record = command.before;
    BrmgrRequest request = {command.code, command.length, command.flag, record.data()};
    benchmark::DoNotOptimize(ioctl(fd, BRMGR_IOCTL_REQUEST, &request));
  }
}

void SendBare(benchmark::State& state, const std::vector<virtual_onu::TraceEvent>& events) {
  const std::vector<CommandEvent> commands = virtual_onu::EventsOf<CommandEvent>(events);
  const int fd = VOS_OpenDevice("BrmgrDev");
  virtual_onu::Bytes record;
  for ([[maybe_unused]] auto _ : state) {
    Send(fd, commands, record);
  }
}

void ApplyBare(benchmark::State& state) {
  Bench bench;
  SendBare(state, bench.eventsOf([&bench] { bench.apply(); }));
}

/// The lines are logged as finished texts, which costs less than to format their values.
void ApplyBareWithLog(benchmark::State& state) {
  Bench bench;
  const auto events = bench.eventsOf([&bench] { bench.apply(); });
  const std::vector<CommandEvent> commands = virtual_onu::EventsOf<CommandEvent>(events);
  const std::vector<LogEvent> lines = virtual_onu::EventsOf<LogEvent>(events);
  const int fd = VOS_OpenDevice("BrmgrDev");
  virtual_onu::Bytes record;
  for ([[maybe_unused]] auto _ : state) {
    for (const LogEvent& line : lines) {
      _LOG_Print(line.id, line.level, line.file.c_str(), line.line, "%s", line.text.c_str());
    }
    Send(fd, commands, record);
  }
}

void ApplyByLibrary(benchmark::State& state) {
  const Bench bench;
  for ([[maybe_unused]] auto _ : state) {
    bench.apply();
  }
}

void RescheduleBare(benchmark::State& state) {
  Bench bench;
  SendBare(state, bench.eventsOf(Bench::reschedule));
}

void RescheduleByLibrary(benchmark::State& state) {
  const Bench bench;
  for ([[maybe_unused]] auto _ : state) {
    Bench::reschedule();
  }
}

}  // namespace

BENCHMARK(ApplyBare)->Name("apply 8 rules/bare");
BENCHMARK(ApplyByLibrary)->Name("apply 8 rules/Apply");
BENCHMARK(ApplyBareWithLog)->Name("apply 8 rules, log/bare");
BENCHMARK(ApplyByLibrary)->Name("apply 8 rules, log/Apply");
BENCHMARK(RescheduleBare)->Name("schedule up and down/bare");
BENCHMARK(RescheduleByLibrary)->Name("schedule up and down/Schedule");

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
