/// @file
/// The command that lists the multicast group entries.
#include <cstdint>
#include <string>
#include <utility>

#include "base/text.h"
#include "commands/command_rows.h"
#include "datapath/group_table.h"
#include "report/chip_report.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// The operations of a group entry's VLAN action, "pop"; "-" without one.
Cell ActionOf(Session& session, std::uint32_t actionIndex) {
  if (actionIndex == BRMGR_INDEX_NONE) {
    return {};
  }
  const std::string index = std::to_string(actionIndex);
  const auto& actions = session.unit().device().tables().downstream.actions;
  const auto found = actions.find(actionIndex);
  if (found == actions.end()) {
    return {actionIndex, index + ": absent"};
  }
  const FieldTexts fields("VlanActionRule", BytesOf(found->second));
  const bool replaces = (found->second.cmd & BRMGR_TAG_REPLACE_VID) != 0;
  return {actionIndex, index + ": " + fields["cmd"] + (replaces ? " " + fields["tag[0].vid"] : "")};
}

/// A group entry with its index.
using Group = std::pair<const std::uint32_t, McastGroupEntry>;

Columns<Group> GroupColumns(Session& session) {
  return {
      {"entry", "entry", &Group::first},
      {"group", "group",
       [](const auto& group) {
         const virtual_onu::Bytes address = virtual_onu::GroupAddressOf(group.second);
         return address.empty() ? Cell() : Cell(virtual_onu::FormatIp(address));
       }},
      {"mac", "mac",
       [](const auto& group) {
         return FieldTexts("McastGroupEntry", BytesOf(group.second))["groupMac"];
       }},
      {"vlan", "vlan", [](const auto& group) { return group.second.vlan; }},
      {"port", "port", [](const auto& group) { return PortId::Uni(group.second.port); }},
      {"vlanActionIndex", "action",
       [&session](const Group& group) { return ActionOf(session, group.second.vlanActionIndex); }},
  };
}

Result ShowMulticast(Session& session, const Arguments& /*arguments*/) {
  const Table table(GroupColumns(session), session.unit().device().mcastGroups());
  return Result().add("groups", table, "no group entries");
}

}  // namespace

const Command kShowMulticast = {
    {"show multicast",
     {},
     "lists the multicast group entries: the port that joined each group and the VLAN action "
     "with which the group leaves there",
     {"Init\nSetMulticastVlanMode 1 0\nAddMulticastMacAddr 239.1.2.3 1 100\nshow multicast"}},
    ShowMulticast};

}  // namespace onu
