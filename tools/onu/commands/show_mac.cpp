/// @file
/// The command that lists the MAC table.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "commands/command_rows.h"
#include "datapath/mac_bridge.h"
#include "report/report_table.h"
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
  MacKey key;
  MacRule rule;
  PortId port;
  std::optional<std::uint64_t> age = {};  ///< seconds since a frame came from a dynamic entry
};

const Columns<MacRow> kMac = {
    {"mac", "mac", [](const auto& row) { return virtual_onu::FormatMac(row.key.mac); }},
    {"vlan", "vlan", [](const auto& row) { return row.key.vid; }},
    {"port", "port", &MacRow::port},
    {"type", "type", [](const auto& row) { return Name(row.rule); }},
    {"age", "age", &MacRow::age},
};

/// Entries, blocked and bound addresses in the order of the addresses.
std::vector<MacRow> RowsOf(const MacTables& tables, std::uint64_t now) {
  constexpr std::uint64_t kMillisecondsPerSecond = 1000;
  std::vector<MacRow> rows;
  for (const auto& [key, entry] : tables.entries) {
    const PortId port = {entry.uni};
    if (entry.type != virtual_onu::kMacEntryDynamic) {
      rows.push_back({key, MacRule::Static, port});
    } else if (tables.isLive(entry, now)) {
      rows.push_back({key, MacRule::Dynamic, port, (now - entry.seen) / kMillisecondsPerSecond});
    }
  }
  for (const auto& [key, uni] : tables.filters) {
    rows.push_back({key, MacRule::Filter, PortId::Uni(uni)});
  }
  for (const auto& [key, uni] : tables.binds) {
    rows.push_back({key, MacRule::Bind, PortId::Uni(uni)});
  }
  std::ranges::stable_sort(rows, {}, &MacRow::key);
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

Result ShowMac(Session& session, const Arguments& /*arguments*/) {
  const MacTables& tables = session.unit().device().macTables();
  const PortTables& ports = session.unit().device().portTables();
  const bool learns = ports.macLearn.value_or(1) != 0;
  const std::uint16_t limit = ports.macLimit.value_or(0);
  const std::vector<MacRow> rows = RowsOf(tables, session.unit().clock().milliseconds());
  return Result()
      .add("entries", Table(kMac, rows), "no addresses")
      .add("agingTime", OrNull(tables.agingTime()))
      .add("learning", learns)
      .add("limit", limit != 0 ? Json(limit) : Json(), LearningText(tables, learns, limit));
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

}  // namespace onu
