/// @file
/// Port counters: the getters of single counters and the table of all ports come from one table.
/// The hardware is never cleared; a clear keeps the counters as they stand, and the getters
/// subtract them.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr size_t kMaxTerms = 3;

/// Counters of each port at its last clear, by UNI port number - 1; zero before the first.
PortStatsRecord sg_portClearPM[kUniPorts] = {};

using R = PortStatsRecord;

struct Counter {
  uint32_t PortStatisticsEntry::*entryField;
  uint32_t R::*terms[kMaxTerms];  ///< null where there are fewer
};

constexpr Counter kCounters[] = {
#define OTHER_TERMS(second, third) &R::second, &R::third
#define TERMS(first, ...) &R::first __VA_OPT__(, OTHER_TERMS(__VA_ARGS__))
#define MAKE_COUNTER(name, type, logName, entryField, text, ...) \
  {&PortStatisticsEntry::entryField, {TERMS(__VA_ARGS__)}},
    BCM6838X_COUNTER_LIST(MAKE_COUNTER)
#undef MAKE_COUNTER
#undef TERMS
#undef OTHER_TERMS
};

/// Positions in kCounters, by the name of the getter.
enum CounterPosition : uint8_t {
#define NAME_POSITION(name, ...) k##name,
  BCM6838X_COUNTER_LIST(NAME_POSITION)
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
  return IsInTables(uni) ? &sg_portClearPM[uni - 1] : nullptr;
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
  if (HAL_IS_NULL_AS(function, out)) {
    return BCM6838X_INVALID;
  }
  const uint32_t uni = UniPort(port);
  const PortStatsRecord* baseline = FindBaseline(uni);
  if (baseline == nullptr || !IsUpToLastEthPort(uni)) {
    return BCM6838X_INVALID;
  }
  PortStatsRecord record = {};
  record.port = uni;
  if (Send<BRMGR_CMD_PORT_STATS>(record) != BCM6838X_OK) {
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

#define DEFINE_GETTER(name, type, logName, ...)                                            \
  uint32_t BCM6838X_GetPortStatistics##name(uint32_t port, type* out) {                    \
    const uint32_t result = GetCounter(__func__, kCounters[k##name], port, out);           \
    if (result == BCM6838X_FAILED) {                                                       \
      HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s :%d, Get Port Statistics " logName " Error!\r\n"); \
    }                                                                                      \
    return result;                                                                         \
  }
BCM6838X_COUNTER_LIST(DEFINE_GETTER)
#undef DEFINE_GETTER

uint32_t BCM6838X_GetPortStatistics(PortStatisticsEntry* entries) {
  if (HAL_IS_NULL(entries)) {
    return BCM6838X_OK;
  }
  for (const uint32_t uni : EthPorts()) {
    PortStatsRecord record = {};
    // Required: statistics-table-index-from-0
    record.port = uni - 1;
    Send<BRMGR_CMD_PORT_STATS>(record);
    // Required: statistics-table-is-raw
    FillEntry(record, entries[uni - 1]);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortStatisticsClear(uint32_t port) {
  PortStatsRecord unkept = {};
  PortStatsRecord* baseline = FindBaseline(UniPort(port));
  // A port without a slot is asked for all the same.
  // Required: clear-sends-its-slot
  return Send<BRMGR_CMD_PORT_STATS>(baseline != nullptr ? *baseline : unkept);
}

uint32_t BCM6838X_SetPortStatisticsInit(void) {
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortStatisticsSync(void) {
  return BCM6838X_OK;
}
