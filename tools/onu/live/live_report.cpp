/// @file
/// The tables of a live run: frames by port, and the frames in by outcome.
#include "live/live_report.h"

#include "report/text_table.h"

namespace onu {

namespace {

using virtual_onu::Disposition;
using virtual_onu::PortId;
using virtual_onu::PortTraffic;

/// The frames in that were disposed of in that way.
std::uint64_t CountOf(const PortTraffic& traffic, Disposition disposition) {
  std::uint64_t frames = 0;
  for (const auto& [outcome, count] : traffic.outcomes) {
    frames += virtual_onu::Describe(outcome).disposition == disposition ? count : 0;
  }
  return frames;
}

Words RowOf(PortId port, const std::string& name, const PortTraffic& traffic) {
  Words row = {port.name(), name};
  for (const std::uint64_t number :
       {traffic.framesIn, traffic.octetsIn, CountOf(traffic, Disposition::Forward),
        CountOf(traffic, Disposition::Trap), CountOf(traffic, Disposition::Drop), traffic.framesOut,
        traffic.octetsOut, traffic.transmitted, traffic.lost, traffic.eventsLost}) {
    row.push_back(std::to_string(number));
  }
  return row;
}

Json ToJson(PortId port, const std::string& name, const PortTraffic& traffic) {
  Json outcomes = Json::object();
  for (const auto& [outcome, frames] : traffic.outcomes) {
    outcomes[std::string(virtual_onu::Describe(outcome).name)] = frames;
  }
  return {{"port", port.name()},
          {"interface", name},
          {"framesIn", traffic.framesIn},
          {"octetsIn", traffic.octetsIn},
          {"forwarded", CountOf(traffic, Disposition::Forward)},
          {"trapped", CountOf(traffic, Disposition::Trap)},
          {"dropped", CountOf(traffic, Disposition::Drop)},
          {"framesOut", traffic.framesOut},
          {"octetsOut", traffic.octetsOut},
          {"transmitted", traffic.transmitted},
          {"lost", traffic.lost},
          {"eventsLost", traffic.eventsLost},
          {"outcomes", outcomes}};
}

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

Json TraceCounts::json() const {
  Json json = Json::object();
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    json[kKinds.at(i).member] = counts_.at(i);
  }
  return json;
}

std::string TraceCounts::text() const {
  Words parts;
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    const std::uint64_t count = counts_.at(i);
    parts.push_back(std::to_string(count) + " " +
                    (count == 1 ? kKinds.at(i).one : kKinds.at(i).many));
  }
  return "trace: " + Join(parts, ", ") + "\n";
}

Result ReportLive(const LiveRun& run) {
  Result result;
  Json& list = result.json["ports"] = Json::array();
  TextTable ports({"port", "interface", "in", "octets", "forwarded", "trapped", "dropped", "out",
                   "octets", "transmitted", "lost", "events lost"});
  TextTable outcomes({"port", "outcome", "frames in"});
  for (const auto& [port, counts] : run.traffic) {
    const auto found = run.names.find(port);
    const std::string name = found == run.names.end() ? "-" : found->second;
    list.push_back(ToJson(port, name, counts));
    ports.add(RowOf(port, name, counts));
    for (const auto& [outcome, frames] : counts.outcomes) {
      outcomes.add(
          {port.name(), std::string(virtual_onu::Describe(outcome).name), std::to_string(frames)});
    }
  }
  result.json["trace"] = run.trace.json();
  result.text = ports.text("") + outcomes.text("no frames came in") + run.trace.text();
  return result;
}

}  // namespace onu
