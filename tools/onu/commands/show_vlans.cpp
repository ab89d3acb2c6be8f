/// @file
/// The command that lists the VLAN objects of the data-path shell.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "commands/command_rows.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::PortId;
using virtual_onu::VlanObject;

/// A VLAN object with its name.
using NamedVlan = std::pair<const std::string, VlanObject>;

const Columns<const NamedVlan*> kVlans = {
    {"port", "port", [](const auto* vlan) { return PortId{vlan->second.uni}; }},
    {"object", "object", [](const auto* vlan) { return vlan->second.portObject; }},
    {"vlan", "vlan", [](const auto* vlan) { return vlan->first; }},
    {"vids", "vids", [](const auto* vlan) { return vlan->second.vids; }},
};

/// The objects of the WAN side first, then by port and by the lowest VID.
std::vector<const NamedVlan*> SortedObjects(Session& session) {
  std::vector<const NamedVlan*> sorted;
  for (const NamedVlan& named : session.unit().shell().objects().vlans) {
    sorted.push_back(&named);
  }
  std::ranges::stable_sort(sorted, {}, [](const NamedVlan* named) {
    const VlanObject& vlan = named->second;
    return std::pair(vlan.uni, vlan.vids.empty() ? 0 : *vlan.vids.begin());
  });
  return sorted;
}

Result ShowVlans(Session& session, const Arguments& /*arguments*/) {
  return Result().add("vlans", Table(kVlans, SortedObjects(session)), "no VLAN objects");
}

}  // namespace

const Command kShowVlans = {
    {"show vlans",
     {},
     "lists the VLAN objects of the data-path shell, those of the WAN side and of the LAN ports",
     {"AddWanVlan 1 100 4096\nAddLanVlan 1 100\nshow vlans"}},
    ShowVlans};

}  // namespace onu
