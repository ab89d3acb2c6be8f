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

#define ENTRY_FIELD(name) \
  { &PortStatisticsEntry::name, #name }
constexpr std::array kEntryFields = std::to_array<EntryField>({
    ENTRY_FIELD(rxOctets),     ENTRY_FIELD(rxUnicast),   ENTRY_FIELD(rxMulticast),
    ENTRY_FIELD(rxBroadcast),  ENTRY_FIELD(rxErrors),    ENTRY_FIELD(rxDiscards),
    ENTRY_FIELD(rx64),         ENTRY_FIELD(rx65to127),   ENTRY_FIELD(rx128to255),
    ENTRY_FIELD(rx256to511),   ENTRY_FIELD(rx512to1023), ENTRY_FIELD(rx1024to1518),
    ENTRY_FIELD(rxWord22),     ENTRY_FIELD(txOctets),    ENTRY_FIELD(txUnicast),
    ENTRY_FIELD(txMulticast),  ENTRY_FIELD(txBroadcast), ENTRY_FIELD(txErrors),
    ENTRY_FIELD(txDiscards),   ENTRY_FIELD(tx64),        ENTRY_FIELD(tx65to127),
    ENTRY_FIELD(tx128to255),   ENTRY_FIELD(tx256to511),  ENTRY_FIELD(tx512to1023),
    ENTRY_FIELD(tx1024to1518),
});
#undef ENTRY_FIELD

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

#define GETTER(name, text)                                                           \
  Getter("BCM6838X_GetPortStatistics" #name, BCM6838X_GetPortStatistics##name, text, \
         "InitDrv\nGetPortStatistics" #name " 1")

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
    GETTER(RxOctets, "received octets since the last clear"),
    GETTER(RxUnicastPackets, "received unicast frames since the last clear"),
    GETTER(RxMulticastPackets, "received multicast frames since the last clear"),
    GETTER(RxBroadcastPackets, "received broadcast frames since the last clear"),
    GETTER(RxErrorPackets, "receive errors, discards included, since the last clear"),
    GETTER(RxDiscardPackets, "received frames that were discarded since the last clear"),
    GETTER(Rx64Octets, "received frames of 64 octets since the last clear"),
    GETTER(Rx65to127Octets, "received frames of 65 to 127 octets since the last clear"),
    GETTER(Rx128to255Octets, "received frames of 128 to 255 octets since the last clear"),
    GETTER(Rx256to511Octets, "received frames of 256 to 511 octets since the last clear"),
    GETTER(Rx512to1023Octets, "received frames of 512 to 1023 octets since the last clear"),
    GETTER(Rx1024to1518Octets, "received frames of 1024 to 1518 octets since the last clear"),
    GETTER(TxOctets, "transmitted octets since the last clear"),
    GETTER(TxUnicastPackets, "transmitted unicast frames since the last clear"),
    GETTER(TxMulticastPackets, "transmitted multicast frames since the last clear"),
    GETTER(TxBroadcastPackets, "transmitted broadcast frames since the last clear"),
    GETTER(TxErrorPackets, "transmit errors, discards included, since the last clear"),
    GETTER(TxDiscardPackets, "frames to transmit that were discarded since the last clear"),
    GETTER(Tx64Octets, "transmitted frames of 64 octets since the last clear"),
    GETTER(Tx65to127Octets, "transmitted frames of 65 to 127 octets since the last clear"),
    GETTER(Tx128to255Octets, "transmitted frames of 128 to 255 octets since the last clear"),
    GETTER(Tx256to511Octets, "transmitted frames of 256 to 511 octets since the last clear"),
    GETTER(Tx512to1023Octets, "transmitted frames of 512 to 1023 octets since the last clear"),
    GETTER(Tx1024to1518Octets, "transmitted frames of 1024 to 1518 octets since the last clear"),
};

#undef GETTER

}  // namespace

const std::vector<Operation>& PortStatisticsOperations() {
  return kRows;
}

}  // namespace onu
