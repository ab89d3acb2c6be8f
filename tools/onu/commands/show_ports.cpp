/// @file
/// The command that lists the ports.
#include <string>
#include <vector>

#include "commands/command_rows.h"
#include "report/link_report.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Link;
using virtual_onu::PortCount;
using virtual_onu::PortId;
using virtual_onu::PortSettings;
using virtual_onu::PortTables;

/// What is shown of one port; of the WAN side only the counts.
struct PortState {
  PortId port;
  PortSettings settings = {};
  std::optional<Link> link = {};
  bool passesFrames = false;
  bool transparent = false;
  Words isolated = {};  ///< names of the ports it exchanges no frames with
  std::optional<PortId> mirrorReceived = {};
  std::optional<PortId> mirrorTransmitted = {};
  bool isMirror = false;
  PortCount count;
};

PortState StateOf(Session& session, std::uint32_t uni) {
  virtual_onu::Unit& unit = session.unit();
  const PortTables& tables = unit.device().portTables();
  const virtual_onu::DataPath& path = unit.dataPath();
  const PortId port = PortId::Uni(uni);
  PortState state = {.port = port,
                     .settings = tables.of(uni),
                     .link = unit.phy(uni).link(),
                     .passesFrames = unit.phy(uni).passesFrames(),
                     .transparent = unit.shell().objects().transparentPorts.contains(uni),
                     .mirrorReceived = path.ports().mirrorOf(port, true),
                     .mirrorTransmitted = path.ports().mirrorOf(port, false),
                     .isMirror = path.ports().mirrorPort() == port,
                     .count = path.counters().portCount(port)};
  for (std::uint32_t peer = 1; peer <= path.uniPorts(); ++peer) {
    if (peer != uni && tables.areIsolated(uni, peer)) {
      state.isolated.push_back(PortId::Uni(peer).name());
    }
  }
  return state;
}

std::string MirrorText(const PortState& state) {
  if (state.isMirror) {
    return "destination";
  }
  if (state.mirrorReceived && state.mirrorTransmitted) {
    return "both to " + state.mirrorReceived->name();
  }
  if (state.mirrorReceived) {
    return "received to " + state.mirrorReceived->name();
  }
  return state.mirrorTransmitted ? "transmitted to " + state.mirrorTransmitted->name() : "-";
}

Cell UpOrDown(const PortState& state, bool up) {
  return state.port.isWan() ? Cell() : Cell(up ? "up" : "down");
}

const Columns<PortCount> kCounts = {
    {"framesIn", "in", &PortCount::framesIn},
    {"octetsIn", "octets", &PortCount::octetsIn},
    {"framesOut", "out", &PortCount::framesOut},
    {"octetsOut", "octets", &PortCount::octetsOut},
};

const Columns<PortState> kPorts = Joined<PortState>({
    {{"port", "port", &PortState::port},
     {"admin", "admin", [](const auto& state) { return UpOrDown(state, state.settings.adminUp); }},
     {"", "link", [](const auto& state) { return UpOrDown(state, state.link.has_value()); }}},
    Within<PortState>("link", LinkColumns(), &PortState::link),
    {{"passesFrames", "", &PortState::passesFrames},
     {"transparent", "", &PortState::transparent},
     {"loopback", "", [](const auto& state) { return state.settings.loopback; }},
     {"spanningTree", "", [](const auto& state) { return state.settings.spanningTree; }},
     {"isolatedFrom", "isolated", &PortState::isolated},
     {"mirrorReceivedTo", "", &PortState::mirrorReceived},
     {"mirrorTransmittedTo", "", &PortState::mirrorTransmitted},
     {"mirrorDestination", "", &PortState::isMirror},
     {"", "mirror", MirrorText}},
    Within<PortState>("counts", kCounts, &PortState::count),
});

Result ShowPorts(Session& session, const Arguments& /*arguments*/) {
  std::vector<PortState> ports;
  for (std::uint32_t uni = 1; uni <= session.unit().dataPath().uniPorts(); ++uni) {
    ports.push_back(StateOf(session, uni));
  }
  const Json list = Table(kPorts, ports).json();
  const PortCount wan = session.unit().dataPath().counters().portCount(PortId::Wan());
  ports.push_back({.port = PortId::Wan(), .count = wan});
  return Result().add("ports", list).add("wan", ToJson(kCounts, wan)).add("", Table(kPorts, ports));
}

}  // namespace

const Command kShowPorts = {
    {"show ports",
     {},
     "lists the ports: administrative state, link, the ports that each is isolated from, "
     "mirroring, and the frames and octets that crossed them",
     {"show ports", "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow ports"}},
    ShowPorts};

}  // namespace onu
