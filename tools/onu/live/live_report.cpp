/// @file
/// The tables of a live run: frames by port, and the frames in by outcome.
#include "live/live_report.h"

#include "datapath/frame_counters.h"
#include "language/words.h"
#include "report/report_table.h"

namespace onu {

namespace {

using virtual_onu::Disposition;
using virtual_onu::OutcomeCount;
using virtual_onu::PortId;
using virtual_onu::PortTraffic;

/// What crossed a port, and the name of its end.
struct PortRow : PortTraffic {
  PortId port;
  std::string name;
};

/// The frames in that were disposed of in that way.
template <Disposition disposition>
std::uint64_t CountOf(const PortRow& row) {
  std::uint64_t frames = 0;
  for (const auto& [outcome, count] : row.outcomes) {
    frames += virtual_onu::Describe(outcome).disposition == disposition ? count : 0;
  }
  return frames;
}

Json OutcomesOf(const PortRow& row) {
  Json outcomes = Json::object();
  for (const auto& [outcome, frames] : row.outcomes) {
    outcomes[virtual_onu::Describe(outcome).name] = frames;
  }
  return outcomes;
}

const Columns<PortRow> kPorts = {
    {"port", "port", &PortRow::port},
    {"interface", "interface", &PortRow::name},
    {"framesIn", "in", &PortTraffic::framesIn},
    {"octetsIn", "octets", &PortTraffic::octetsIn},
    {"forwarded", "forwarded", CountOf<Disposition::Forward>},
    {"trapped", "trapped", CountOf<Disposition::Trap>},
    {"dropped", "dropped", CountOf<Disposition::Drop>},
    {"framesOut", "out", &PortTraffic::framesOut},
    {"octetsOut", "octets", &PortTraffic::octetsOut},
    {"transmitted", "transmitted", &PortTraffic::transmitted},
    {"lost", "lost", &PortTraffic::lost},
    {"eventsLost", "events lost", &PortTraffic::eventsLost},
    {"outcomes", "", OutcomesOf},
};

const Columns<OutcomeCount> kOutcomes = {
    {"", "port", &OutcomeCount::port},
    {"", "outcome", [](const auto& count) { return virtual_onu::Describe(count.outcome).name; }},
    {"", "frames in", &OutcomeCount::frames},
};

/// The kinds of what leaves the library, in the order of the trace's variant.
struct Kind {
  const char* member;
  const char* one;
  const char* many;
};

constexpr std::array<Kind, std::variant_size_v<virtual_onu::TraceDetail>> kKinds = {{
    {"commands", "command", "commands"},
    {"logLines", "log line", "log lines"},
    {"shellLines", "shell line", "shell lines"},
    {"messages", "message", "messages"},
    {"calls", "other call", "other calls"},
}};

}  // namespace

void TraceCounts::add(const std::vector<virtual_onu::TraceEvent>& events) {
  for (const virtual_onu::TraceEvent& event : events) {
    ++counts_.at(event.detail.index());
  }
}

Result TraceCounts::report() const {
  Json json = Json::object();
  Words parts;
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    const Kind& kind = kKinds.at(i);
    const std::uint64_t count = counts_.at(i);
    json[kind.member] = count;
    parts.push_back(std::to_string(count) + " " + (count == 1 ? kind.one : kind.many));
  }
  return {json, "trace: " + Join(parts, ", ") + "\n"};
}

Result ReportLive(const LiveRun& run) {
  std::vector<PortRow> ports;
  std::vector<OutcomeCount> outcomes;
  for (const auto& [port, traffic] : run.traffic) {
    const auto found = run.names.find(port);
    ports.push_back({traffic, port, found == run.names.end() ? "-" : found->second});
    for (const auto& [outcome, frames] : traffic.outcomes) {
      outcomes.push_back({port, outcome, frames});
    }
  }
  return Result()
      .add("ports", Table(kPorts, ports))
      .add("", Table(kOutcomes, outcomes), "no frames came in")
      .add("trace", run.trace.report());
}

}  // namespace onu
