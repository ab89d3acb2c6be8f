/// @file
/// Calls of the statistics operations of bcm6838x_port.h from C.
#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

/// The last command asked for the counters of that port.
static void ExpectRead(uint32_t port) {
  PortStatsRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_PORT_STATS && g_platform.flag == BRMGR_FLAG_READ_BACK);
  EXPECT(record.port == port);
}

void call_BCM6838X_GetPortStatistics(void) {
  PortStatisticsEntry entries[PLATFORM_ETH_PORTS];
  memset(entries, 0xFF, sizeof(entries));
  OpenDevice();
  EXPECT(BCM6838X_GetPortStatistics(NULL) == BCM6838X_OK);
  EXPECT(BCM6838X_GetPortStatistics(entries) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_PORT_STATS] == PLATFORM_ETH_PORTS);
  ExpectRead(PLATFORM_ETH_PORTS - 1);
  EXPECT(entries[PLATFORM_ETH_PORTS - 1].tx1024to1518 == 0);
  EXPECT(entries[PLATFORM_ETH_PORTS - 1].notWritten == 0xFFFFFFFF);
}

void call_BCM6838X_SetPortStatisticsClear(void) {
  EXPECT(BCM6838X_SetPortStatisticsClear(1) == BCM6838X_NOT_OPEN);
  OpenDevice();
  EXPECT(BCM6838X_SetPortStatisticsClear(1) == BCM6838X_OK);
  ExpectRead(0);
  EXPECT(BCM6838X_SetPortStatisticsClear(33) == BCM6838X_OK);
  ExpectRead(0);
}

void call_BCM6838X_SetPortStatisticsInit(void) {
  EXPECT(BCM6838X_SetPortStatisticsInit() == BCM6838X_OK);
}

void call_BCM6838X_SetPortStatisticsSync(void) {
  EXPECT(BCM6838X_SetPortStatisticsSync() == BCM6838X_OK);
}

// The getters of frames and those of octets, which differ in what they write.
#define CALL_GETTER(name, type, isZero)                                                         \
  void call_BCM6838X_GetPortStatistics##name(void) {                                            \
    type out;                                                                                   \
    memset(&out, 0xFF, sizeof(out));                                                            \
    OpenDevice();                                                                               \
    EXPECT(BCM6838X_GetPortStatistics##name(PLATFORM_ETH_PORTS + 1, &out) == BCM6838X_INVALID); \
    EXPECT(BCM6838X_GetPortStatistics##name(2, &out) == BCM6838X_OK);                           \
    ExpectRead(2);                                                                              \
    EXPECT(isZero);                                                                             \
  }
#define CALL_uint32_t(name) CALL_GETTER(name, uint32_t, out == 0)
#define CALL_Counter64(name) CALL_GETTER(name, Counter64, out.high == 0 && out.low == 0)
#define CALL_ROW(name, type, ...) CALL_##type(name)

BCM6838X_COUNTER_LIST(CALL_ROW)
