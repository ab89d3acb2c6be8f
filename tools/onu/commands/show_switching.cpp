/// @file
/// The commands that list the MAC table and the multicast group entries.
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "base/text.h"
#include "commands/command_rows.h"
#include "datapath/group_table.h"
#include "datapath/mac_bridge.h"
#include "report/chip_report.h"
#include "report/record_report.h"
#include "report/text_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::MacKey;
using virtual_onu::MacRule;
using virtual_onu::MacTables;
using virtual_onu::PortId;
using virtual_onu::PortTables;

/// A line of the MAC table.
struct MacRow {
  MacRule rule;
  PortId port;
  std::optional<std::uint64_t> age;  ///< seconds since a frame came from a dynamic entry
};

/// Entries, blocked and bound addresses in the order of the addresses.
std::multimap<MacKey, MacRow> RowsOf(const MacTables& tables, std::uint64_t now) {
  constexpr std::uint64_t kMillisecondsPerSecond = 1000;
  std::multimap<MacKey, MacRow> rows;
  for (const auto& [key, entry] : tables.entries) {
    const PortId port = {entry.uni};
    if (entry.type != virtual_onu::kMacEntryDynamic) {
      rows.insert({key, {MacRule::Static, port, {}}});
    } else if (tables.isLive(entry, now)) {
      rows.insert({key, {MacRule::Dynamic, port, (now - entry.seen) / kMillisecondsPerSecond}});
    }
  }
  for (const auto& [key, uni] : tables.filters) {
    rows.insert({key, {MacRule::Filter, PortId::Uni(uni), {}}});
  }
  for (const auto& [key, uni] : tables.binds) {
    rows.insert({key, {MacRule::Bind, PortId::Uni(uni), {}}});
  }
  return rows;
}

/// How long entries live, whether addresses are learned, and how many.
std::string LearningText(const MacTables& tables, bool learns, std::uint16_t limit) {
  const auto seconds = tables.agingTime();
  return (seconds ? "aging after " + std::to_string(*seconds) + " s" : std::string("no aging")) +
         ", learning " + (learns ? "on" : "off") + ", " +
         (limit != 0 ? "at most " + std::to_string(limit) + " addresses a UNI port" : "no limit") +
         "\n";
}

/// The operations of a group entry's VLAN action, "pop"; "-" without one.
std::string OperationsOf(Session& session, std::uint32_t actionIndex) {
  if (actionIndex == BRMGR_INDEX_NONE) {
    return "-";
  }
  const auto& actions = session.unit().device().tables().downstream.actions;
  const auto found = actions.find(actionIndex);
  if (found == actions.end()) {
    return std::to_string(actionIndex) + ": absent";
  }
  const FieldTexts fields("VlanActionRule", BytesOf(found->second));
  const bool replaces = (found->second.cmd & BRMGR_TAG_REPLACE_VID) != 0;
  return std::to_string(actionIndex) + ": " + fields["cmd"] +
         (replaces ? " " + fields["tag[0].vid"] : "");
}

Result ShowMac(Session& session, const Arguments& /*arguments*/) {
  const MacTables& tables = session.unit().device().macTables();
  const PortTables& ports = session.unit().device().portTables();
  const bool learns = ports.macLearn.value_or(1) != 0;
  const std::uint16_t limit = ports.macLimit.value_or(0);
  Result result;
  Json& list = result.json["entries"] = Json::array();
  TextTable table({"mac", "vlan", "port", "type", "age"});
  for (const auto& [key, row] : RowsOf(tables, session.unit().clock().milliseconds())) {
    const std::string mac = virtual_onu::FormatMac(key.mac);
    const std::string type(Name(row.rule));
    list.push_back({{"mac", mac},
                    {"vlan", key.vid},
                    {"port", row.port.name()},
                    {"type", type},
                    {"age", OrNull(row.age)}});
    table.add({mac, std::to_string(key.vid), row.port.name(), type,
               row.age ? std::to_string(*row.age) : "-"});
  }
  result.json["agingTime"] = OrNull(tables.agingTime());
  result.json["learning"] = learns;
  result.json["limit"] = limit != 0 ? Json(limit) : Json(nullptr);
  result.text = table.text("no addresses") + LearningText(tables, learns, limit);
  return result;
}

Result ShowMulticast(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["groups"] = Json::array();
  TextTable table({"entry", "group", "mac", "vlan", "port", "action"});
  for (const auto& [index, entry] : session.unit().device().mcastGroups()) {
    const virtual_onu::Bytes address = virtual_onu::GroupAddressOf(entry);
    const std::string group = address.empty() ? "-" : virtual_onu::FormatIp(address);
    const FieldTexts fields("McastGroupEntry", BytesOf(entry));
    const std::string port = PortId::Uni(entry.port).name();
    list.push_back({{"entry", index},
                    {"group", address.empty() ? Json(nullptr) : Json(group)},
                    {"mac", fields["groupMac"]},
                    {"vlan", entry.vlan},
                    {"port", port},
                    {"vlanActionIndex", entry.vlanActionIndex == BRMGR_INDEX_NONE
                                            ? Json(nullptr)
                                            : Json(entry.vlanActionIndex)}});
    table.add({std::to_string(index), group, fields["groupMac"], std::to_string(entry.vlan), port,
               OperationsOf(session, entry.vlanActionIndex)});
  }
  result.text = table.text("no group entries");
  return result;
}

}  // namespace

const Command kShowMac = {
    {"show mac",
     {},
     "lists the MAC table: learned, dynamic and static entries, blocked and bound addresses; "
     "age is in seconds since the last frame",
     {"Init\nAddMacStatic 1 100 02:00:00:00:00:0a\nshow mac",
      "Init\nAddMacDynamic 1 100 02:00:00:00:00:0b\nclock +10\nshow mac"}},
    ShowMac};

const Command kShowMulticast = {
    {"show multicast",
     {},
     "lists the multicast group entries: the port that joined each group and the VLAN action "
     "with which the group leaves there",
     {"Init\nSetMulticastVlanMode 1 0\nAddMulticastMacAddr 239.1.2.3 1 100\nshow multicast"}},
    ShowMulticast};

}  // namespace onu
