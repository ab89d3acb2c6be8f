/// @file
/// Calls of the operations of hal_bcm6838x.h from C.
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_config.h>

#include "c_calls.h"

void OpenDevice(void) {
  EXPECT(BCM6838X_InitDrv() == BCM6838X_OK);
  memset(g_platform.count, 0, sizeof(g_platform.count));
}

void call_BCM6838X_Ioctl(void) {
  FeatureRecord record = {42};
  EXPECT(BCM6838X_Ioctl(BRMGR_CMD_FEATURE, &record, sizeof(record), BRMGR_FLAG_INPUT) ==
         BCM6838X_NOT_OPEN);
  OpenDevice();
  EXPECT(BCM6838X_Ioctl(BRMGR_CMD_FEATURE, &record, sizeof(record), BRMGR_FLAG_READ_BACK) ==
         BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_FEATURE && g_platform.len == sizeof(record));
  EXPECT(g_platform.flag == BRMGR_FLAG_READ_BACK);
  EXPECT(memcmp(g_platform.record, &record, sizeof(record)) == 0);
  EXPECT(BCM6838X_Ioctl(BRMGR_CMD_LIMIT, NULL, 0, BRMGR_FLAG_INPUT) == BCM6838X_INVALID);
  EXPECT(g_platform.logs == 0);
  g_platform.ioctlResult = -1;
  EXPECT(BCM6838X_Ioctl(BRMGR_CMD_LASER_OFF, NULL, 0, BRMGR_FLAG_INPUT) == BCM6838X_REFUSED);
  EXPECT(g_platform.logs == 1);
  EXPECT(strcmp(g_platform.logFile, "hal/switch/bcm6838x/src/hal_bcm6838x.cpp") == 0);
  EXPECT(strstr(g_platform.logText, "BCM6838X_Ioctl :") == g_platform.logText);
  EXPECT(strstr(g_platform.logText, ", cmd:120 err:4294967295\r\n") != NULL);
}

void call_BCM6838X_Init(void) {
  EXPECT(BCM6838X_Init() == BCM6838X_OK);
  EXPECT(g_platform.tasks == 1 && g_platform.taskEntry == BCM6838X_kernelEvent);
  EXPECT(g_platform.count[BRMGR_CMD_INIT] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 8);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 6);
  EXPECT(g_platform.count[BRMGR_CMD_FEATURE] == 1);
}

void call_BCM6838X_InitDrv(void) {
  g_platform.descriptor = 0;
  EXPECT(BCM6838X_InitDrv() == BCM6838X_FAILED);
  EXPECT(g_platform.logs == 1);
  EXPECT(strstr(g_platform.logText, ", Open brmgr device is error\r\n") != NULL);
  g_platform.descriptor = PLATFORM_DESCRIPTOR;
  EXPECT(BCM6838X_InitDrv() == BCM6838X_OK);
  DrvInitRecord record;
  memcpy(&record, g_platform.record, sizeof(record));
  EXPECT(g_platform.cmd == BRMGR_CMD_INIT && g_platform.len == sizeof(record));
  EXPECT(record.fePortNum == PLATFORM_FE_PORTS && record.gePortNum == PLATFORM_GE_PORTS);
}

void call_BCM6838X_PerformanceInit(void) {
  EXPECT(BCM6838X_PerformanceInit() == BCM6838X_END);
  EXPECT(g_platform.unlinks == 0);
  g_platform.markerPresent = 1;
  EXPECT(BCM6838X_PerformanceInit() == BCM6838X_OK);
  EXPECT(g_platform.unlinks == 1);
}

void call_BCM6838X_IsPerformance(void) {
  EXPECT(BCM6838X_IsPerformance() == 0);
  g_platform.markerPresent = 1;
  EXPECT(BCM6838X_PerformanceInit() == BCM6838X_OK);
  EXPECT(BCM6838X_IsPerformance() == 1);
}

void call_BCM6838X_RdpaIcInit(void) {
  OpenDevice();
  EXPECT(BCM6838X_RdpaIcInit() == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 8);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 6);
}

void call_BCM6838X_RdpaIcInit_Perf(void) {
  OpenDevice();
  EXPECT(BCM6838X_RdpaIcInit_Perf() == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 2);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 0);
}

void call_BCM6838X_SFInit(void) {
  EXPECT(BCM6838X_SFInit() == BCM6838X_NOT_OPEN);
  OpenDevice();
  EXPECT(BCM6838X_SFInit() == BCM6838X_OK);
  FeatureRecord record;
  memcpy(&record, g_platform.record, sizeof(record));
  EXPECT(g_platform.cmd == BRMGR_CMD_FEATURE && record.value == SF_GetFeature(27));
}

void call_BCM6838X_StreamPortIndexUniToRdpa(void) {
  EXPECT(BCM6838X_StreamPortIndexUniToRdpa(1) == 2);
  EXPECT(BCM6838X_StreamPortIndexUniToRdpa(0x1FF) == 0x100);
}
