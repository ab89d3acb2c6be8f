/// @file
/// Calls of the operations of bcm6838x_port.h from C.
#include <net/if.h>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

/// A PHY that has negotiated 100 Mbit/s full duplex.
static void PlugIn(void) {
  g_platform.mii[0] = 0x1000;
  g_platform.mii[1] = 0x796D;
  g_platform.mii[4] = 0x0DE1;
  g_platform.mii[5] = 0x4101;
}

void call_et_get_phyid(void) {
  struct ifreq packet;
  memset(&packet, 0, sizeof(packet));
  EXPECT(et_get_phyid(5, &packet) == -1);
  strcpy(packet.ifr_name, "eth0");
  EXPECT(et_get_phyid(5, &packet) == PLATFORM_PHY);
}

void call_mdio_read(void) {
  struct ifreq packet;
  memset(&packet, 0, sizeof(packet));
  strcpy(packet.ifr_name, "eth0");
  g_platform.mii[2] = 0xABCD;
  EXPECT(mdio_read(5, &packet, PLATFORM_PHY, 2) == 0xABCD);
  EXPECT(mdio_read(5, &packet, PLATFORM_PHY, PLATFORM_MII_REGISTERS) == 0);
}

void call_BCM6838X_InitPort(void) {
  EXPECT(BCM6838X_InitPort() == BCM6838X_OK);
  EXPECT(g_platform.shells == 2 * PLATFORM_ETH_PORTS);
  EXPECT(strcmp(g_platform.shellText, "/bin/ethctl eth3 reg 28 0x9000 > /dev/null 2>&1") == 0);
}

void call_BCM6838X_GetMediaType(void) {
  uint32_t type = 7;
  EXPECT(BCM6838X_GetMediaType(6, &type) == BCM6838X_FAILED && type == 7);
  PlugIn();
  EXPECT(BCM6838X_GetMediaType(1, &type) == BCM6838X_OK && type == BCM6838X_MEDIA_100_FULL);
}

void call_BCM6838X_GetPortLinkState(void) {
  uint32_t state = 7;
  EXPECT(BCM6838X_GetPortLinkState(1, &state) == BCM6838X_OK && state == 0);
  PlugIn();
  EXPECT(BCM6838X_GetPortLinkState(1, &state) == BCM6838X_OK && state == 1);
}

void call_BCM6838X_GetPortNegResult(void) {
  uint32_t result = 7;
  PlugIn();
  EXPECT(BCM6838X_GetPortNegResult(1, &result) == BCM6838X_OK && result == 4);
}

void call_BCM6838X_PauseAbilitySet(void) {
  PlugIn();
  EXPECT(BCM6838X_PauseAbilitySet(2, 0) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth1 reg 4 9e1") == 0);
  EXPECT(g_platform.mii[0] == 0x1200);
  EXPECT(BCM6838X_PauseAbilitySet(6, 0) == BCM6838X_FAILED);
}

void call_BCM6838X_PauseAbilityGet(void) {
  uint32_t mode = 7;
  PlugIn();
  EXPECT(BCM6838X_PauseAbilityGet(1, &mode) == BCM6838X_OK && mode == 2);
}

void call_BCM6838X_SetPortFlowControl(void) {
  PlugIn();
  EXPECT(BCM6838X_SetPortFlowControl(1, 1) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth0 reg 4 de1") == 0);
}

void call_BCM6838X_PhyPowerDown(void) {
  EXPECT(BCM6838X_PhyPowerDown(1, 1) == -1);
  EXPECT(BCM6838X_PhyPowerDown(0, 1) == BCM6838X_FAILED);
  PlugIn();
  EXPECT(BCM6838X_PhyPowerDown(1, 1) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth0 reg 0 1800") == 0);
}

void call_BCM6838X_SetPortAdminState(void) {
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

void call_BCM6838X_SetPortNegMode(void) {
  EXPECT(BCM6838X_SetPortNegMode(1, 7) == BCM6838X_FAILED);
  EXPECT(g_platform.shells == 0);
  EXPECT(BCM6838X_SetPortNegMode(1, 4) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "ethctl eth0 media-type 100FD") == 0);
}

void call_BCM6838X_SetPortLoopback(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortLoopback(0, 1) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortLoopback(1, 5) == BCM6838X_OK);
  PortLoopbackRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_PORT_LOOPBACK && record.port == 2 && record.enable == 1);
}

void call_BCM6838X_SetPortIsolateMask(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortIsolateMask(5, 0) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortIsolateMask(3, 0x9) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_PORT_ISOLATE] == 2);
  PortIsolateRecord record;
  LAST_RECORD(record);
  EXPECT(record.port == 4 && record.peerPort == 5 && record.isolate == 1 && record.word12 == 2);
}

void call_BCM6838X_SetPortMacLearn(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortMacLearn(1, 9) == BCM6838X_OK);
  MacLearnRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_LEARN && record.value == 9);
}

void call_BCM6838X_SetPortLimitMacNum(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortLimitMacNum(1, 0x12345) == BCM6838X_OK);
  MacLimitRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_LIMIT && record.limit == 0x2345);
}

void call_BCM6838X_SetPortStpEnable(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPortStpEnable(1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_PORT_STP] == PLATFORM_ETH_PORTS);
  EXPECT(g_platform.messages == PLATFORM_ETH_PORTS);
  EXPECT(g_platform.messageModule == 0xA3C0 && g_platform.messageCode == 0x1509);
}

void call_BCM6838X_SetPortStpState(void) {
  EXPECT(BCM6838X_SetPortStpState(1, 4) == BCM6838X_OK);
  EXPECT(g_platform.shells == 0);
}

void call_BCM6838X_SetPortMtu(void) {
  EXPECT(BCM6838X_SetPortMtu(3, 1519) == BCM6838X_OK);
  EXPECT(g_platform.jumboPort == 2 && g_platform.jumboValue == 1);
  EXPECT(BCM6838X_SetPortMtu(3, 1518) == BCM6838X_OK);
  EXPECT(g_platform.jumboValue == 0);
}

void call_BCM6838X_SetPortMirrorDestport(void) {
  EXPECT(BCM6838X_SetPortMirrorDestport(4) == BCM6838X_OK);
  EXPECT(BCM6838X_SetPortMirrorDestport(5) == BCM6838X_FAILED);
}

void call_BCM6838X_SetPortMirrorMode(void) {
  const uint8_t modes[PLATFORM_ETH_PORTS] = {1, 0, 3, 0};
  EXPECT(BCM6838X_SetPortMirrorMode(modes) == BCM6838X_OK);
}

void call_BCM6838X_SetPortMirrorEnable(void) {
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

void call_BCM6838X_GetGlobalLinkState(void) {
  EXPECT(BCM6838X_GetGlobalLinkState(1) == BCM6838X_OK);
}

void call_BCM6838X_GetGlobalNegResult(void) {
  EXPECT(BCM6838X_GetGlobalNegResult(1, NULL) == BCM6838X_OK);
}

void call_BCM6838X_SetPortAuthMode(void) {
  EXPECT(BCM6838X_SetPortAuthMode(1, 2) == BCM6838X_OK);
}
