/// @file
/// The rows of the statistics operations that bcm6838x_port.h declares. A new operation is one more
/// row.
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <bcm6838x_port.h>
#include <platform_config.h>

#include "operations/operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

struct EntryField {
  std::uint32_t PortStatisticsEntry::*field;
  const char* name;
};

#define FIELD(name) {&PortStatisticsEntry::name, #name},
#define ENTRY_FIELD(name, type, logName, entryField, ...) FIELD(entryField)
constexpr std::array kEntryFields = std::to_array<EntryField>({
    BCM6838X_RX_COUNTER_LIST(ENTRY_FIELD)  //
    FIELD(rxWord22)                        //
    BCM6838X_TX_COUNTER_LIST(ENTRY_FIELD)  //
});
#undef ENTRY_FIELD
#undef FIELD

/// Binds the table of all ports: one line an entry.
Binding BindTable() {
  return {[](const Arguments& /*given*/, std::span<const Argument> /*rows*/) {
            std::vector<PortStatisticsEntry> entries(HC_GetEthPortNum() + 1);
            CallOutcome outcome;
            outcome.value = BCM6838X_GetPortStatistics(entries.data());
            entries.pop_back();
            outcome.outputs["entries"] = Json::array();
            for (const PortStatisticsEntry& entry : entries) {
              Json json;
              std::string line;
              for (const EntryField& field : kEntryFields) {
                json[field.name] = entry.*field.field;
                line += std::string(" ") + field.name + "=" + std::to_string(entry.*field.field);
              }
              outcome.text += "  entry " + std::to_string(outcome.outputs["entries"].size()) + ":" +
                              line + "\n";
              outcome.outputs["entries"].push_back(json);
            }
            return outcome;
          },
          0};
}

/// A getter's row. Both widths of counters are bound alike.
template <typename Counter>
Operation Getter(std::string_view name, std::uint32_t (*function)(std::uint32_t, Counter*),
                 std::string_view text, std::string_view example) {
  return {{name, {kUniPort}, text, {example}}, Status, BindReading(function, "count")};
}

#define GETTER(name, type, logName, entryField, text, ...)                           \
  Getter("BCM6838X_GetPortStatistics" #name, BCM6838X_GetPortStatistics##name, text, \
         "InitDrv\nGetPortStatistics" #name " 1"),

const std::vector<Operation> kRows = {
    {{"BCM6838X_GetPortStatistics",
      {},
      "reads the raw counters of all ports; requests count ports from 0",
      {"InitDrv\nGetPortStatistics"}},
     Status,
     BindTable()},
    {{"BCM6838X_SetPortStatisticsClear",
      {kUniPort},
      "makes the counters of a port count from here on",
      {"InitDrv\nSetPortStatisticsClear 1"}},
     Status,
     Bind(BCM6838X_SetPortStatisticsClear)},
    {{"BCM6838X_SetPortStatisticsInit", {}, "does nothing", {"SetPortStatisticsInit"}},
     Status,
     Bind(BCM6838X_SetPortStatisticsInit)},
    {{"BCM6838X_SetPortStatisticsSync", {}, "does nothing", {"SetPortStatisticsSync"}},
     Status,
     Bind(BCM6838X_SetPortStatisticsSync)},
    BCM6838X_COUNTER_LIST(GETTER)  //
};

#undef GETTER

}  // namespace

const std::vector<Operation>& PortStatisticsOperations() {
  return kRows;
}

}  // namespace onu
