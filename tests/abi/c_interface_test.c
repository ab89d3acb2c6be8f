/// @file
/// A C program that calls every built operation through the public headers: each in a process of
/// its own, so that none sees the state that another left. What the operations do in full is tested
/// elsewhere; here they are reached from C, by their names, and answer.
#include <net/if.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bcm6838x_api.h>
#include <bcm6838x_igmp.h>
#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_chip.h>
#include <platform_clients.h>
#include <platform_config.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "c_platform.h"

#define EXPECT(condition)                                             \
  do {                                                                \
    if (!(condition)) {                                               \
      fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      exit(1);                                                        \
    }                                                                 \
  } while (0)

static void OpenDevice(void) {
  EXPECT(BCM6838X_InitDrv() == BCM6838X_OK);
  memset(g_platform.count, 0, sizeof(g_platform.count));
}

static void call_BCM6838X_Ioctl(void) {
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

static void call_BCM6838X_Init(void) {
  EXPECT(BCM6838X_Init() == BCM6838X_OK);
  EXPECT(g_platform.tasks == 1 && g_platform.taskEntry == BCM6838X_kernelEvent);
  EXPECT(g_platform.count[BRMGR_CMD_INIT] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 8);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 6);
  EXPECT(g_platform.count[BRMGR_CMD_FEATURE] == 1);
}

static void call_BCM6838X_InitDrv(void) {
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

static void call_BCM6838X_PerformanceInit(void) {
  EXPECT(BCM6838X_PerformanceInit() == BCM6838X_END);
  EXPECT(g_platform.unlinks == 0);
  g_platform.markerPresent = 1;
  EXPECT(BCM6838X_PerformanceInit() == BCM6838X_OK);
  EXPECT(g_platform.unlinks == 1);
}

static void call_BCM6838X_IsPerformance(void) {
  EXPECT(BCM6838X_IsPerformance() == 0);
  g_platform.markerPresent = 1;
  EXPECT(BCM6838X_PerformanceInit() == BCM6838X_OK);
  EXPECT(BCM6838X_IsPerformance() == 1);
}

static void call_BCM6838X_RdpaIcInit(void) {
  OpenDevice();
  EXPECT(BCM6838X_RdpaIcInit() == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 8);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 6);
}

static void call_BCM6838X_RdpaIcInit_Perf(void) {
  OpenDevice();
  EXPECT(BCM6838X_RdpaIcInit_Perf() == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 2);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 0);
}

static void call_BCM6838X_SFInit(void) {
  EXPECT(BCM6838X_SFInit() == BCM6838X_NOT_OPEN);
  OpenDevice();
  EXPECT(BCM6838X_SFInit() == BCM6838X_OK);
  FeatureRecord record;
  memcpy(&record, g_platform.record, sizeof(record));
  EXPECT(g_platform.cmd == BRMGR_CMD_FEATURE && record.value == SF_GetFeature(27));
}

static void call_BCM6838X_StreamPortIndexUniToRdpa(void) {
  EXPECT(BCM6838X_StreamPortIndexUniToRdpa(1) == 2);
  EXPECT(BCM6838X_StreamPortIndexUniToRdpa(0x1FF) == 0x100);
}

static void call_BCM6838X_kernelEvent(void) {
  BCM6838X_kernelEvent();
}

static void call_BCM6838X_InitVlan(void) {
  EXPECT(BCM6838X_InitVlan() == BCM6838X_OK);
}

static void call_BCM6838X_InitIgmp(void) {
  EXPECT(BCM6838X_InitIgmp() == BCM6838X_OK);
}

/// The record of the last command, as its structure.
#define LAST_RECORD(record)                 \
  EXPECT(g_platform.len == sizeof(record)); \
  memcpy(&(record), g_platform.record, sizeof(record))

/// A PHY that has negotiated 100 Mbit/s full duplex.
static void PlugIn(void) {
  g_platform.mii[0] = 0x1000;
  g_platform.mii[1] = 0x796D;
  g_platform.mii[4] = 0x0DE1;
  g_platform.mii[5] = 0x4101;
}

static void call_et_get_phyid(void) {
  struct ifreq packet;
  memset(&packet, 0, sizeof(packet));
  EXPECT(et_get_phyid(5, &packet) == -1);
  strcpy(packet.ifr_name, "eth0");
  EXPECT(et_get_phyid(5, &packet) == PLATFORM_PHY);
}

static void call_mdio_read(void) {
  struct ifreq packet;
  memset(&packet, 0, sizeof(packet));
  strcpy(packet.ifr_name, "eth0");
  g_platform.mii[2] = 0xABCD;
  EXPECT(mdio_read(5, &packet, PLATFORM_PHY, 2) == 0xABCD);
  EXPECT(mdio_read(5, &packet, PLATFORM_PHY, PLATFORM_MII_REGISTERS) == 0);
}

static void call_BCM6838X_InitPort(void) {
  EXPECT(BCM6838X_InitPort() == BCM6838X_OK);
  EXPECT(g_platform.shells == 2 * PLATFORM_ETH_PORTS);
  EXPECT(strcmp(g_platform.shellText, "/bin/ethctl eth3 reg 28 0x9000 > /dev/null 2>&1") == 0);
}

static void call_BCM6838X_GetMediaType(void) {
  uint32_t type = 7;
  EXPECT(BCM6838X_GetMediaType(6, &type) == BCM6838X_FAILED && type == 7);
  PlugIn();
  EXPECT(BCM6838X_GetMediaType(1, &type) == BCM6838X_OK && type == BCM6838X_MEDIA_100_FULL);
}

static void call_BCM6838X_GetPortLinkState(void) {
  uint32_t state = 7;
  EXPECT(BCM6838X_GetPortLinkState(1, &state) == BCM6838X_OK && state == 0);
  PlugIn();
  EXPECT(BCM6838X_GetPortLinkState(1, &state) == BCM6838X_OK && state == 1);
}

static void call_BCM6838X_GetPortNegResult(void) {
  uint32_t result = 7;
  PlugIn();
  EXPECT(BCM6838X_GetPortNegResult(1, &result) == BCM6838X_OK && result == 4);
}

static void call_BCM6838X_PauseAbilitySet(void) {
  PlugIn();
  EXPECT(BCM6838X_PauseAbilitySet(2, 0) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth1 reg 4 9e1") == 0);
  EXPECT(g_platform.mii[0] == 0x1200);
  EXPECT(BCM6838X_PauseAbilitySet(6, 0) == BCM6838X_FAILED);
}

static void call_BCM6838X_PauseAbilityGet(void) {
  uint32_t mode = 7;
  PlugIn();
  EXPECT(BCM6838X_PauseAbilityGet(1, &mode) == BCM6838X_OK && mode == 2);
}

static void call_BCM6838X_SetPortFlowControl(void) {
  PlugIn();
  EXPECT(BCM6838X_SetPortFlowControl(1, 1) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth0 reg 4 de1") == 0);
}

static void call_BCM6838X_PhyPowerDown(void) {
  EXPECT(BCM6838X_PhyPowerDown(1, 1) == -1);
  EXPECT(BCM6838X_PhyPowerDown(0, 1) == BCM6838X_FAILED);
  PlugIn();
  EXPECT(BCM6838X_PhyPowerDown(1, 1) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth0 reg 0 1800") == 0);
}

static void call_BCM6838X_SetPortAdminState(void) {
  EXPECT(BCM6838X_SetPortAdminState(0, 1) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortAdminState(6, 1) == BCM6838X_FAILED);
  OpenDevice();
  PlugIn();
  EXPECT(BCM6838X_SetPortAdminState(2, 1) == BCM6838X_OK);
  PortAdminRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_PORT_ADMIN && record.port == 3 && record.enable == 1);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth1 reg 0 1000") == 0);
}

static void call_BCM6838X_SetPortNegMode(void) {
  EXPECT(BCM6838X_SetPortNegMode(1, 7) == BCM6838X_FAILED);
  EXPECT(g_platform.shells == 0);
  EXPECT(BCM6838X_SetPortNegMode(1, 4) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth0 media-type 100FD") == 0);
}

static void call_BCM6838X_SetPortLoopback(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortLoopback(0, 1) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortLoopback(1, 5) == BCM6838X_OK);
  PortLoopbackRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_PORT_LOOPBACK && record.port == 2 && record.enable == 1);
}

static void call_BCM6838X_SetPortIsolateMask(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortIsolateMask(5, 0) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortIsolateMask(3, 0x9) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_PORT_ISOLATE] == 2);
  PortIsolateRecord record;
  LAST_RECORD(record);
  EXPECT(record.port == 4 && record.peerPort == 5 && record.isolate == 1 && record.word12 == 2);
}

static void call_BCM6838X_SetPortMacLearn(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortMacLearn(1, 9) == BCM6838X_OK);
  MacLearnRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_LEARN && record.value == 9);
}

static void call_BCM6838X_SetPortLimitMacNum(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortLimitMacNum(1, 0x12345) == BCM6838X_OK);
  MacLimitRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_LIMIT && record.limit == 0x2345);
}

static void call_BCM6838X_SetPortStpEnable(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortStpEnable(1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_PORT_STP] == PLATFORM_ETH_PORTS);
  EXPECT(g_platform.messages == PLATFORM_ETH_PORTS);
  EXPECT(g_platform.messageModule == 0xA3C0 && g_platform.messageCode == 0x1509);
}

static void call_BCM6838X_SetPortStpState(void) {
  EXPECT(BCM6838X_SetPortStpState(1, 4) == BCM6838X_OK);
  EXPECT(g_platform.shells == 0);
}

static void call_BCM6838X_SetPortMtu(void) {
  EXPECT(BCM6838X_SetPortMtu(3, 1519) == BCM6838X_OK);
  EXPECT(g_platform.jumboPort == 2 && g_platform.jumboValue == 1);
  EXPECT(BCM6838X_SetPortMtu(3, 1518) == BCM6838X_OK);
  EXPECT(g_platform.jumboValue == 0);
}

static void call_BCM6838X_SetPortMirrorDestport(void) {
  EXPECT(BCM6838X_SetPortMirrorDestport(4) == BCM6838X_OK);
  EXPECT(BCM6838X_SetPortMirrorDestport(5) == BCM6838X_FAILED);
}

static void call_BCM6838X_SetPortMirrorMode(void) {
  const uint8_t modes[PLATFORM_ETH_PORTS] = {1, 0, 3, 0};
  EXPECT(BCM6838X_SetPortMirrorMode(modes) == BCM6838X_OK);
}

static void call_BCM6838X_SetPortMirrorEnable(void) {
  const uint8_t modes[PLATFORM_ETH_PORTS] = {1, 0, 3, 0};
  OpenDevice();
  BCM6838X_SetPortMirrorDestport(4);
  BCM6838X_SetPortMirrorMode(modes);
  EXPECT(BCM6838X_SetPortMirrorEnable(1) == BCM6838X_OK);
  PortMirrorRecord record;
  LAST_RECORD(record);
  EXPECT(record.selector == 0 && record.destinationPort == 5);
  EXPECT(record.enable == 1 && record.direction == 2);
}

static void call_BCM6838X_GetGlobalLinkState(void) {
  EXPECT(BCM6838X_GetGlobalLinkState(1) == BCM6838X_OK);
}

static void call_BCM6838X_GetGlobalNegResult(void) {
  EXPECT(BCM6838X_GetGlobalNegResult(1, NULL) == BCM6838X_OK);
}

static void call_BCM6838X_SetPortAuthMode(void) {
  EXPECT(BCM6838X_SetPortAuthMode(1, 2) == BCM6838X_OK);
}

/// An upstream action that pushes VID 100.
static VlanActionRule PushAction(void) {
  VlanActionRule rule;
  memset(&rule, 0, sizeof(rule));
  rule.cmd = 0x101;
  rule.tag[0].vid = 100;
  rule.tag[0].tpid = 0x8100;
  rule.dir = BRMGR_DIR_UPSTREAM;
  return rule;
}

static void call_BCM6838X_AddVlanAction(void) {
  OpenDevice();
  // The platform's driver returns no index of its own.
  EXPECT(BCM6838X_AddVlanAction(PushAction(), 1) == -1);
  VlanActionRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_VLAN_ACTION_ADD && record.tag[0].vid == 100);
  EXPECT(record.vlanActionIndex == BRMGR_INDEX_NONE);
}

static void call_BCM6838X_GetVlanAction(void) {
  EXPECT(BCM6838X_GetVlanAction(PushAction()) == -1);
  EXPECT(g_platform.logs == 0);
}

static void call_BCM6838X_DelVlanAction(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelVlanAction(PushAction()) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_DEL] == 0);
}

static void call_BCM6838X_AddWanVlan(void) {
  EXPECT(BCM6838X_AddWanVlan(1, 4096, 10) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddWanVlan(1, 100, 10) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c vlan/name=wan0_100 vid_enable[100]=yes") == 0);
}

static void call_BCM6838X_DelWanVlan(void) {
  BCM6838X_AddWanVlan(1, 100, 10);
  EXPECT(BCM6838X_DelWanVlan(1, 100, 10) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=wan0_100") == 0);
}

static void call_BCM6838X_AddLanVlan(void) {
  EXPECT(BCM6838X_AddLanVlan(2, 0) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddLanVlan(2, 100) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c vlan/name=lan1_100 vid_enable[100]=yes") == 0);
}

static void call_BCM6838X_DelLanVlan(void) {
  BCM6838X_AddLanVlan(2, 100);
  EXPECT(BCM6838X_DelLanVlan(2, 100) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=lan1_100") == 0);
}

static void call_BCM6838X_AddDsIngressClass(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddDsIngressClass(100, 1, 2) == -1);
  IngressFlowRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_FLOW_ADD && record.outerVid == 100 && record.vlanNum == 1);
}

static void call_BCM6838X_AddDsIngressClass_Perf(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddDsIngressClass_Perf(4096, 1, 1) == -1);
  IngressFlowRule record;
  LAST_RECORD(record);
  EXPECT(record.outerVid == 0 && record.result104 == 1 && record.result108 == 2);
}

static void call_BCM6838X_DelDsIngressClass(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelDsIngressClass(100, 1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_DEL] == 0);
}

static void call_BCM6838X_GetDsIngressClass(void) {
  EXPECT(BCM6838X_GetDsIngressClass(100, 1) == -1);
}

static void call_BCM6838X_AddPortAction(void) {
  EXPECT(BCM6838X_AddPortAction(1, 5, 1, 7) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText,
                "bs /b/c ingress_class/dir=ds,index=1 port_action[{flow=5,port=lan0}]="
                "{{vlan_action={vlan_action/dir=ds,index=7},drop=no}}") == 0);
}

static void call_BCM6838X_DelPortAction(void) {
  EXPECT(BCM6838X_DelPortAction(1, 5, 1) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText,
                "bs /b/c ingress_class/dir=ds,index=1 port_action[{flow=5,port=lan0}]="
                "{{vlan_action=null,drop=no}}") == 0);
}

static void call_BCM6838X_InitQoS(void) {
  EXPECT(BCM6838X_InitQoS() == BCM6838X_OK);
}

struct Operation {
  const char* name;
  void (*call)(void);
};

// Made from the list of operations: one that is marked as built must have its call here, and no
// other.
static const struct Operation kOperations[] = {
#define OPERATION(name) {#name, call_##name},
#include "built_operations.inc"
#undef OPERATION
};

/// Runs one call in a process of its own; 0 when it held.
static int Run(const struct Operation* operation) {
  fflush(NULL);
  const pid_t child = fork();
  if (child == 0) {
    operation->call();
    exit(0);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
    fprintf(stderr, "%s: failed with status %#x\n", operation->name, (unsigned)status);
    return 1;
  }
  return 0;
}

int main(void) {
  const size_t count = sizeof(kOperations) / sizeof(kOperations[0]);
  int failures = 0;
  for (size_t i = 0; i < count; ++i) {
    failures += Run(&kOperations[i]);
  }
  printf("%zu operations called, %d failed\n", count, failures);
  return count > 0 && failures == 0 ? 0 : 1;
}
