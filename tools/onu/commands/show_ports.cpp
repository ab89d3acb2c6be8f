/// @file
/// The commands that show the ports and the VLAN objects of the data-path shell.
#include <algorithm>
#include <string>
#include <vector>

#include "commands/command_rows.h"
#include "report/link_report.h"
#include "report/text_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Link;
using virtual_onu::PortCount;
using virtual_onu::PortId;
using virtual_onu::PortSettings;
using virtual_onu::PortTables;
using virtual_onu::VlanObject;

/// What is shown of one UNI port.
struct PortState {
  PortId port;
  PortSettings settings;
  std::optional<Link> link;
  bool passesFrames = false;
  bool transparent = false;
  Words isolated = {};  ///< names of the ports it exchanges no frames with
  std::optional<PortId> mirrorReceived;
  std::optional<PortId> mirrorTransmitted;
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

void AddCounts(const PortCount& count, Words& row) {
  for (const std::uint64_t number :
       {count.framesIn, count.octetsIn, count.framesOut, count.octetsOut}) {
    row.push_back(std::to_string(number));
  }
}

Words RowOf(const PortState& state) {
  Words row = {state.port.name(), state.settings.adminUp ? "up" : "down"};
  const Words link = LinkWords(state.link);
  row.insert(row.end(), link.begin(), link.end());
  row.push_back(state.isolated.empty() ? "-" : Join(state.isolated, ","));
  row.push_back(MirrorText(state));
  AddCounts(state.count, row);
  return row;
}

Json CountToJson(const PortCount& count) {
  return {{"framesIn", count.framesIn},
          {"octetsIn", count.octetsIn},
          {"framesOut", count.framesOut},
          {"octetsOut", count.octetsOut}};
}

Json NameOrNull(const std::optional<PortId>& port) {
  return port ? Json(port->name()) : Json(nullptr);
}

Json ToJson(const PortState& state) {
  return {{"port", state.port.name()},
          {"admin", state.settings.adminUp ? "up" : "down"},
          {"link", LinkToJson(state.link)},
          {"passesFrames", state.passesFrames},
          {"transparent", state.transparent},
          {"loopback", state.settings.loopback},
          {"spanningTree", state.settings.spanningTree},
          {"isolatedFrom", state.isolated},
          {"mirrorReceivedTo", NameOrNull(state.mirrorReceived)},
          {"mirrorTransmittedTo", NameOrNull(state.mirrorTransmitted)},
          {"mirrorDestination", state.isMirror},
          {"counts", CountToJson(state.count)}};
}

/// The objects of the WAN side first, then by port and by the lowest VID.
std::vector<std::pair<std::string, VlanObject>> SortedObjects(Session& session) {
  const auto& objects = session.unit().shell().objects().vlans;
  std::vector<std::pair<std::string, VlanObject>> sorted(objects.begin(), objects.end());
  std::ranges::stable_sort(sorted, {}, [](const auto& object) {
    const VlanObject& vlan = object.second;
    return std::pair(vlan.uni, vlan.vids.empty() ? 0 : *vlan.vids.begin());
  });
  return sorted;
}

Result ShowPorts(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["ports"] = Json::array();
  TextTable table({"port", "admin", "link", "speed", "duplex", "pause", "isolated", "mirror", "in",
                   "octets", "out", "octets"});
  for (std::uint32_t uni = 1; uni <= session.unit().dataPath().uniPorts(); ++uni) {
    const PortState state = StateOf(session, uni);
    list.push_back(ToJson(state));
    table.add(RowOf(state));
  }
  const PortCount wan = session.unit().dataPath().counters().portCount(PortId::Wan());
  result.json["wan"] = CountToJson(wan);
  Words row = {"wan", "-", "-", "-", "-", "-", "-", "-"};
  AddCounts(wan, row);
  table.add(row);
  result.text = table.text("");
  return result;
}

Result ShowVlans(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["vlans"] = Json::array();
  TextTable table({"port", "object", "vlan", "vids"});
  for (const auto& [name, vlan] : SortedObjects(session)) {
    const PortId port = vlan.uni == 0 ? PortId::Wan() : PortId::Uni(vlan.uni);
    Words vids;
    for (const std::uint16_t vid : vlan.vids) {
      vids.push_back(std::to_string(vid));
    }
    list.push_back(
        {{"port", port.name()}, {"object", vlan.portObject}, {"vlan", name}, {"vids", vlan.vids}});
    table.add({port.name(), vlan.portObject, name, vids.empty() ? "-" : Join(vids, ",")});
  }
  result.text = table.text("no VLAN objects");
  return result;
}

}  // namespace

const Command kShowPorts = {
    {"show ports",
     {},
     "lists the ports: administrative state, link, the ports that each is isolated from, "
     "mirroring, and the frames and octets that crossed them",
     {"show ports", "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow ports"}},
    ShowPorts};

const Command kShowVlans = {
    {"show vlans",
     {},
     "lists the VLAN objects of the data-path shell, those of the WAN side and of the LAN "
     "ports",
     {"AddWanVlan 1 100 4096\nAddLanVlan 1 100\nshow vlans"}},
    ShowVlans};

}  // namespace onu
