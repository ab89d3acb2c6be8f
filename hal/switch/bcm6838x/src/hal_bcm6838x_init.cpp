/// @file
/// Start-up: log module, task, ports, operating mode, device, the areas in their order, feature
/// switch. The default ingress classes are in hal_bcm6838x_class.cpp.
#include <cstdint>
#include <cstdio>
#include <unistd.h>

#include <bcm6838x_igmp.h>
#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_config.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_platform.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

uint32_t hal::g_bcm6838xLogId = LOG_ID_NONE;
int32_t hal::g_SwitchPerformance = 0;
char hal::g_BoardId[kBoardIdSize] = {};

namespace {

constexpr char kPerformanceMarker[] = "/var/config/switch_perf";

void PrintPerformanceBanner() {
  constexpr int kBarLines = 4;
  puts("WARNING!!!  Hal enter performance mode !!!>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>\r");
  for (int i = 0; i < kBarLines; ++i) {
    puts(">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>\r");
  }
}

void SetAllPortsDown() {
  for (const uint32_t port : EthPorts()) {
    BCM6838X_SetPortAdminState(port, 0);
  }
}

}  // namespace

uint32_t BCM6838X_PerformanceInit(void) {
  if (access(kPerformanceMarker, F_OK) != 0) {
    g_SwitchPerformance = 0;
    return BCM6838X_END;
  }
  g_SwitchPerformance = 1;
  // Required: performance-marker-consumed
  unlink(kPerformanceMarker);
  PrintPerformanceBanner();
  return BCM6838X_OK;
}

uint32_t BCM6838X_IsPerformance(void) {
  return g_SwitchPerformance > 0 ? 1 : 0;
}

uint32_t BCM6838X_InitDrv(void) {
  const int32_t fd = VOS_OpenDevice("BrmgrDev");
  if (fd < 1) {
    HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s :%d, Open brmgr device is error\r\n");
    return BCM6838X_FAILED;
  }
  sgHwDevFd = fd;
  DrvInitRecord record = {};
  record.fePortNum = HC_GetFePortNum();
  record.gePortNum = HC_GetGePortNum();
  const uint32_t result = Send<BRMGR_CMD_INIT>(record);
  // Required: board-id-read-anyway
  BCM6838X_sysGetBoardId(g_BoardId, kBoardIdSize - 1);
  return result;
}

uint32_t BCM6838X_SFInit(void) {
  FeatureRecord record = {};
  // Required: feature-passed-unchanged
  record.value = SF_GetFeature(kCaptureFeature);
  return Send<BRMGR_CMD_FEATURE>(record);
}

// Required: start-not-guarded
uint32_t BCM6838X_Init(void) {
  g_bcm6838xLogId = LOG_Create("hal_bcm6838x", 1000, -1);
  // Required: log-handle-32-is-none
  if (g_bcm6838xLogId == LOG_ID_NONE) {
    puts("LOG_Create fail.\r");
    return BCM6838X_FAILED;
  }
  if (VOS_TaskSpawn("kernelEvent", 65535, 15, 0, 0, BCM6838X_kernelEvent, 0) != 0) {
    // Required: log-creat-task
    puts("\n Creat task kernelEvent Error!!! \r");
  }
  // Required: ports-down-before-device
  SetAllPortsDown();
  BCM6838X_PerformanceInit();
  // Required: start-goes-on
  BCM6838X_InitDrv();
  BCM6838X_InitPort();
  BCM6838X_InitVlan();
  BCM6838X_InitIgmp();
  if (BCM6838X_IsPerformance() != 0) {
    BCM6838X_RdpaIcInit_Perf();
  } else {
    BCM6838X_RdpaIcInit();
  }
  BCM6838X_SFInit();
  BCM6838X_InitQoS();
  return BCM6838X_OK;
}
