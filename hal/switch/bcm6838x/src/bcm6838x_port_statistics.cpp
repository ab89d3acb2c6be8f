/// @file
/// Port counters: the getters of single counters and the table of all ports come from one table.
/// The hardware is never cleared; a clear keeps the counters as they stand, and the getters
/// subtract them.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_config.h>
#include <platform_log.h>

#include "bcm6838x_port_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"

namespace {

constexpr uint32_t kPorts = 32;
constexpr size_t kMaxTerms = 3;

/// Counters of each port at its last clear, by UNI port number - 1; zero before the first.
PortStatsRecord sg_portClearPM[kPorts] = {};

// clang-format off
/// Every counter: X(name of the getter, its result, name in its log line, field of the entry in the
/// table of all ports, fields of the record that are added up).
// Required: errors-include-discards, log-txoctet
#define COUNTER_LIST(X)                                                                              \
  X(RxOctets,           Counter64, "RxOctets",           rxOctets,     &R::rxOctets)                 \
  X(RxUnicastPackets,   uint32_t,  "RxUnicast",          rxUnicast,    &R::rxUnicast)                \
  X(RxMulticastPackets, uint32_t,  "RxMulticast",        rxMulticast,  &R::rxMulticast)              \
  X(RxBroadcastPackets, uint32_t,  "RxBroadcast",        rxBroadcast,  &R::rxBroadcast)              \
  X(RxErrorPackets,     uint32_t,  "RxErrorPackets",     rxErrors,     &R::rxError23, &R::rxDiscard, &R::rxError24) \
  X(RxDiscardPackets,   uint32_t,  "RxDiscard",          rxDiscards,   &R::rxDiscard)                \
  X(Rx64Octets,         uint32_t,  "Rx64Octets",         rx64,         &R::rx64)                     \
  X(Rx65to127Octets,    uint32_t,  "Rx65to127Octets",    rx65to127,    &R::rx65to127)                \
  X(Rx128to255Octets,   uint32_t,  "Rx128to255Octets",   rx128to255,   &R::rx128to255)               \
  X(Rx256to511Octets,   uint32_t,  "Rx256to511Octets",   rx256to511,   &R::rx256to511)               \
  X(Rx512to1023Octets,  uint32_t,  "Rx512to1023Octets",  rx512to1023,  &R::rx512to1023)              \
  X(Rx1024to1518Octets, uint32_t,  "Rx1024to1518Octets", rx1024to1518, &R::rx1024to1518)             \
  X(TxOctets,           Counter64, "TxOctet",            txOctets,     &R::txOctets)                 \
  X(TxUnicastPackets,   uint32_t,  "TxUnicast",          txUnicast,    &R::txUnicast)                \
  X(TxMulticastPackets, uint32_t,  "TxMulticast",        txMulticast,  &R::txMulticast)              \
  X(TxBroadcastPackets, uint32_t,  "TxBroadcast",        txBroadcast,  &R::txBroadcast)              \
  X(TxErrorPackets,     uint32_t,  "TxErrorPackets",     txErrors,     &R::txError51, &R::txDiscard, &R::txError47) \
  X(TxDiscardPackets,   uint32_t,  "TxDiscard",          txDiscards,   &R::txDiscard)                \
  X(Tx64Octets,         uint32_t,  "Tx64Octets",         tx64,         &R::tx64)                     \
  X(Tx65to127Octets,    uint32_t,  "Tx65to127Octets",    tx65to127,    &R::tx65to127)                \
  X(Tx128to255Octets,   uint32_t,  "Tx128to255Octets",   tx128to255,   &R::tx128to255)               \
  X(Tx256to511Octets,   uint32_t,  "Tx256to511Octets",   tx256to511,   &R::tx256to511)               \
  X(Tx512to1023Octets,  uint32_t,  "Tx512to1023Octets",  tx512to1023,  &R::tx512to1023)              \
  X(Tx1024to1518Octets, uint32_t,  "Tx1024to1518Octets", tx1024to1518, &R::tx1024to1518)
// clang-format on

using R = PortStatsRecord;

struct Counter {
  uint32_t PortStatisticsEntry::*entryField;
  uint32_t R::*terms[kMaxTerms];  ///< null where there are fewer
};

constexpr Counter kCounters[] = {
#define MAKE_COUNTER(name, type, text, entryField, ...) \
  {&PortStatisticsEntry::entryField, {__VA_ARGS__}},
    COUNTER_LIST(MAKE_COUNTER)
#undef MAKE_COUNTER
};

/// Positions in kCounters, by the name of the getter.
enum CounterPosition : uint8_t {
#define NAME_POSITION(name, ...) k##name,
  COUNTER_LIST(NAME_POSITION)
#undef NAME_POSITION
};

uint32_t ValueOf(const Counter& counter, const PortStatsRecord& record) {
  uint32_t sum = 0;
  for (const auto term : counter.terms) {
    if (term != nullptr) {
      sum += record.*term;
    }
  }
  return sum;
}

/// The slot of a port with its counters at the last clear, or null.
PortStatsRecord* FindBaseline(uint32_t uni) {
  return uni >= 1 && uni <= kPorts ? &sg_portClearPM[uni - 1] : nullptr;
}

void Subtract(uint32_t current, uint32_t baseline, uint32_t& out) {
  out = current - baseline;
}

/// The 64-bit difference of two 32-bit counters.
void Subtract(uint32_t current, uint32_t baseline, Counter64& out) {
  // Required: octets-borrow
  out.high = baseline > current ? UINT32_MAX : 0;
  out.low = current - baseline;
}

/// The steps of a getter but for the log line of a failed command.
template <typename Result>
uint32_t GetCounter(const char* function, const Counter& counter, uint32_t port, Result* out) {
  if (out == nullptr) {
    HAL_LOG_AS(function, LOG_LEVEL_INVALID, "%s(%d), null pointer\r\n");
    return BCM6838X_INVALID;
  }
  const uint32_t uni = UniPort(port);
  const PortStatsRecord* baseline = FindBaseline(uni);
  if (baseline == nullptr || uni > HC_GetEthPortNum()) {
    return BCM6838X_INVALID;
  }
  PortStatsRecord record = {};
  record.port = uni;
  if (SendCommand(BRMGR_CMD_PORT_STATS, record, BRMGR_FLAG_READ_BACK) != BCM6838X_OK) {
    return BCM6838X_FAILED;
  }
  Subtract(ValueOf(counter, record), ValueOf(counter, *baseline), *out);
  return BCM6838X_OK;
}

/// Fills all words of the entry but the last, which stays the caller's.
// Required: statistics-last-word-untouched
void FillEntry(const PortStatsRecord& record, PortStatisticsEntry& entry) {
  for (const Counter& counter : kCounters) {
    entry.*counter.entryField = ValueOf(counter, record);
  }
  entry.rxOctetsHigh = 0;
  entry.rxWord22 = record.rxWord22;
  entry.txOctetsHigh = 0;
}

}  // namespace

#define DEFINE_GETTER(name, type, text, ...)                                            \
  uint32_t BCM6838X_GetPortStatistics##name(uint32_t port, type* out) {                 \
    const uint32_t result = GetCounter(__func__, kCounters[k##name], port, out);        \
    if (result == BCM6838X_FAILED) {                                                    \
      HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s :%d, Get Port Statistics " text " Error!\r\n"); \
    }                                                                                   \
    return result;                                                                      \
  }
COUNTER_LIST(DEFINE_GETTER)
#undef DEFINE_GETTER

uint32_t BCM6838X_GetPortStatistics(PortStatisticsEntry* entries) {
  if (entries == nullptr) {
    HAL_LOG_NULL_POINTER();
    return BCM6838X_OK;
  }
  for (uint32_t i = 0; i < HC_GetEthPortNum(); ++i) {
    PortStatsRecord record = {};
    // Required: statistics-table-index-from-0
    record.port = i;
    SendCommand(BRMGR_CMD_PORT_STATS, record, BRMGR_FLAG_READ_BACK);
    // Required: statistics-table-is-raw
    FillEntry(record, entries[i]);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortStatisticsClear(uint32_t port) {
  PortStatsRecord unkept = {};
  PortStatsRecord* baseline = FindBaseline(UniPort(port));
  // A port without a slot is asked for all the same.
  // Required: clear-sends-its-slot
  return SendCommand(BRMGR_CMD_PORT_STATS, baseline != nullptr ? *baseline : unkept,
                     BRMGR_FLAG_READ_BACK);
}

uint32_t BCM6838X_SetPortStatisticsInit(void) {
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortStatisticsSync(void) {
  return BCM6838X_OK;
}
