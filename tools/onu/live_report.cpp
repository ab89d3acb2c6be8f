/// @file
/// The tables of a live run: frames by port, and the frames in by outcome.
#include "live_report.h"

#include "text_table.h"

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
        traffic.octetsOut, traffic.transmitted, traffic.lost}) {
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
          {"outcomes", outcomes}};
}

}  // namespace

Result ReportLive(const std::map<PortId, PortTraffic>& traffic,
                  const std::map<PortId, std::string>& names) {
  Result result;
  Json& list = result.json["ports"] = Json::array();
  TextTable ports({"port", "interface", "in", "octets", "forwarded", "trapped", "dropped", "out",
                   "octets", "transmitted", "lost"});
  TextTable outcomes({"port", "outcome", "frames in"});
  for (const auto& [port, counts] : traffic) {
    const auto found = names.find(port);
    const std::string name = found == names.end() ? "-" : found->second;
    list.push_back(ToJson(port, name, counts));
    ports.add(RowOf(port, name, counts));
    for (const auto& [outcome, frames] : counts.outcomes) {
      outcomes.add(
          {port.name(), std::string(virtual_onu::Describe(outcome).name), std::to_string(frames)});
    }
  }
  result.text = ports.text("") + outcomes.text("no frames came in");
  return result;
}

}  // namespace onu
