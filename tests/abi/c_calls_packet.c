/// @file
/// The calls of the packet path and of the kernel event monitor, which hal_bcm6838x.h declares.
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <unistd.h>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "c_calls.h"

/// An untagged DHCP discovery, an IPv4 one, without its payload; as type 0x8863 a PPPoE frame.
static void FillFrame(uint8_t* frame, uint32_t type) {
  memset(frame, 0, 64);
  memset(frame, 0xFF, 6);
  frame[12] = (uint8_t)(type >> 8);
  frame[13] = (uint8_t)type;
  frame[14] = 0x45;
  frame[23] = 17;
  frame[37] = 67;
}

/// An MLD report behind a hop-by-hop header; 86 bytes.
static void FillMld(uint8_t* frame) {
  memset(frame, 0, 86);
  frame[12] = 0x86;
  frame[13] = 0xDD;
  frame[54] = 58;
  frame[62] = 131;
}

/// Makes the device's descriptor one from which an event can be read, and puts that event in it.
static void PutEvent(uint32_t type, uint32_t length, uint32_t port, const uint8_t* frame,
                     uint32_t offset) {
  int ends[2];
  BrmgrEvent event;
  memset(&event, 0, sizeof(event));
  event.eventType = type;
  event.length = length;
  event.port = port;
  memcpy(event.data + offset, frame, length);
  EXPECT(pipe(ends) == 0);
  EXPECT(write(ends[1], &event, sizeof(event)) == sizeof(event));
  g_platform.descriptor = ends[0];
  OpenDevice();
}

void call_BCM6838X_GetEvent(void) {
  uint8_t frame[64];
  BrmgrEvent event;
  FillFrame(frame, 0x0800);
  EXPECT(BCM6838X_GetEvent(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_GetEvent(&event) == BCM6838X_FAILED);
  PutEvent(BRMGR_EVENT_DHCP, sizeof(frame), 2, frame, 0);
  EXPECT(BCM6838X_GetEvent(&event) == BCM6838X_OK);
  EXPECT(event.eventType == 6 && event.port == 2 && event.length == 64);
  EXPECT(memcmp(event.data, frame, sizeof(frame)) == 0);
}

void call_BCM6838X_CapturePacket(void) {
  uint8_t frame[86];
  FillMld(frame);
  EXPECT(BCM6838X_CapturePacket() == BCM6838X_OK);
  g_platform.features = 1;
  EXPECT(BCM6838X_CapturePacket() == BCM6838X_FAILED);
  PutEvent(BRMGR_EVENT_MCAST_IN, sizeof(frame), 2, frame, 0);
  EXPECT(BCM6838X_CapturePacket() == BCM6838X_OK);
  EXPECT(strcmp(g_platform.clientText, "MLD 86 0 2") == 0);
}

void call_BCM6838X_GetTag(void) {
  uint8_t frame[18] = {0};
  uint16_t vid = 7;
  uint16_t pri = 7;
  EXPECT(BCM6838X_GetTag(frame, &vid, &pri) == 0 && vid == 7 && pri == 7);
  memcpy(frame + 12, "\x88\xA8\xA1\x23\x81\x00", 6);
  EXPECT(BCM6838X_GetTag(frame, &vid, &pri) == 2 && vid == 0x123 && pri == 5);
}

void call_BCM6838X_AddVlanTag(void) {
  uint8_t frame[64 + 4];
  uint32_t size = 64;
  FillFrame(frame, 0x0800);
  EXPECT(BCM6838X_AddVlanTag(frame, &size, 0x123, 5) == BCM6838X_OK && size == 68);
  EXPECT(memcmp(frame + 12, "\x81\x00\xA1\x23\x08\x00", 6) == 0);
}

void call_BCM6838X_RemoveVlanTag(void) {
  uint8_t frame[64 + 4];
  uint32_t size = 64;
  FillFrame(frame, 0x0800);
  EXPECT(BCM6838X_RemoveVlanTag(frame, &size) == BCM6838X_FAILED && size == 64);
  BCM6838X_AddVlanTag(frame, &size, 0x123, 5);
  EXPECT(BCM6838X_RemoveVlanTag(frame, &size) == BCM6838X_OK && size == 64);
  EXPECT(memcmp(frame + 12, "\x08\x00\x45", 3) == 0);
}

void call_BCM6838X_TranslateVlanTag(void) {
  uint8_t frame[64 + 4];
  uint32_t size = 64;
  FillFrame(frame, 0x0800);
  EXPECT(BCM6838X_TranslateVlanTag(frame, 0x456, 3) == BCM6838X_FAILED);
  BCM6838X_AddVlanTag(frame, &size, 0x123, 5);
  EXPECT(BCM6838X_TranslateVlanTag(frame, 0x456, 3) == BCM6838X_OK);
  EXPECT(memcmp(frame + 12, "\x81\x00\x64\x56\x08\x00", 6) == 0);
}

void call_BCM6838X_AccordVlan(void) {
  RdpaPkt packet;
  memset(&packet, 0, sizeof(packet));
  FillFrame(packet.data, 0x0800);
  packet.size = 64;
  EXPECT(BCM6838X_AccordVlan(packet.data, &packet, PLATFORM_ETH_PORTS + 1, 0) == 1);
  EXPECT(BCM6838X_AccordVlan(packet.data, &packet, 0, PLATFORM_ETH_PORTS + 1) == 1);
  EXPECT(BCM6838X_AccordVlan(packet.data, &packet, 1, 0) == 0 && packet.size == 64);
}

void call_BCM6838X_IsMldPacket(void) {
  uint8_t frame[86];
  FillMld(frame);
  EXPECT(BCM6838X_IsMldPacket(frame, sizeof(frame)) == 1);
  EXPECT(BCM6838X_IsMldPacket(frame, 74) == 0);
}

void call_BCM6838X_IsDHCPProtocol(void) {
  uint8_t frame[64];
  FillFrame(frame, 0x0800);
  EXPECT(BCM6838X_IsDHCPProtocol(frame) == 1);
  EXPECT(BCM6838X_IsPPPoEProtocol(frame) == 0);
}

void call_BCM6838X_IsPPPoEProtocol(void) {
  uint8_t frame[64];
  FillFrame(frame, 0x8863);
  EXPECT(BCM6838X_IsPPPoEProtocol(frame) == 1);
  EXPECT(BCM6838X_IsDHCPProtocol(frame) == 0);
}

void call_BCM6838X_SendPacket(void) {
  uint8_t frame[64];
  OpenDevice();
  FillFrame(frame, 0x0806);
  EXPECT(BCM6838X_SendPacket(frame, sizeof(frame), 0, 0, 2) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_SEND_PKT && g_platform.len == 64 + 18);
  FillFrame(frame, 0x8863);
  EXPECT(BCM6838X_SendPacket(frame, sizeof(frame), 0, 0, 2) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_SEND_PPPOE && g_platform.len == 64 + 8);
}

/// Sends a frame of the longest length, and one that is a byte longer.
static void SendRelays(uint32_t (*send)(const RelayPkt*), uint32_t cmd, uint32_t longest) {
  RelayPkt record;
  OpenDevice();
  memset(&record, 0, sizeof(record));
  record.desPort = 3;
  record.length = longest;
  EXPECT(send(NULL) == BCM6838X_INVALID);
  EXPECT(send(&record) == BCM6838X_OK);
  EXPECT(g_platform.cmd == cmd && g_platform.len == longest + 8 && g_platform.logs == 0);
  EXPECT(memcmp(g_platform.record, &record, 8) == 0);
  record.length = longest + 1;
  EXPECT(send(&record) == BCM6838X_INVALID && g_platform.logs == 1);
  EXPECT(g_platform.count[cmd] == 1);
}

void call_BCM6838X_SendBpduPkt(void) {
  SendRelays(BCM6838X_SendBpduPkt, BRMGR_CMD_SEND_BPDU, 100);
}

void call_BCM6838X_SendDhcpPkt(void) {
  SendRelays(BCM6838X_SendDhcpPkt, BRMGR_CMD_SEND_DHCP, 1700);
}

void call_BCM6838X_SendPPPoEPkt(void) {
  SendRelays(BCM6838X_SendPPPoEPkt, BRMGR_CMD_SEND_PPPOE, 1700);
}

void call_BCM6838X_RdpaSendIgmpPkt(void) {
  RdpaPkt packet;
  OpenDevice();
  memset(&packet, 0, sizeof(packet));
  packet.size = 2046;
  EXPECT(BCM6838X_RdpaSendIgmpPkt(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_RdpaSendIgmpPkt(&packet) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_SEND_PKT && g_platform.len == 2064);
  packet.size = 2047;
  EXPECT(BCM6838X_RdpaSendIgmpPkt(&packet) == BCM6838X_INVALID && g_platform.logs == 1);
}

void call_BCM6838X_DhcpRelayHandle(void) {
  BrmgrEvent event;
  memset(&event, 0, sizeof(event));
  event.length = 64;
  event.port = 2;
  FillFrame(event.data + 2, 0x0800);
  OpenDevice();
  EXPECT(BCM6838X_DhcpRelayHandle(NULL) == BCM6838X_FAILED);
  EXPECT(BCM6838X_DhcpRelayHandle(&event) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_SEND_DHCP && g_platform.clients == 0);
  BCM6838X_SetDhcpTrapEnable(1);
  EXPECT(BCM6838X_DhcpRelayHandle(&event) == PLATFORM_CLIENT_RESULT);
  EXPECT(strcmp(g_platform.clientText, "DHCP 64 0 2") == 0);
}

void call_BCM6838X_PPPoERelayHandle(void) {
  BrmgrEvent event;
  memset(&event, 0, sizeof(event));
  event.length = 64;
  event.port = 2;
  FillFrame(event.data + 2, 0x8864);
  OpenDevice();
  EXPECT(BCM6838X_PPPoERelayHandle(NULL) == BCM6838X_FAILED);
  EXPECT(BCM6838X_PPPoERelayHandle(&event) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_SEND_PPPOE && g_platform.clients == 0);
  BCM6838X_SetPPPoETrapEnable(1);
  EXPECT(BCM6838X_PPPoERelayHandle(&event) == PLATFORM_CLIENT_RESULT);
  EXPECT(strcmp(g_platform.clientText, "PPPOE 64 0 2") == 0);
}

void call_BCM6838X_SetDhcpTrapEnable(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetDhcpTrapEnable(9) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_DHCP_TRAP] == PLATFORM_ETH_PORTS);
  TrapEnableRecord record;
  LAST_RECORD(record);
  EXPECT(record.portIndex == PLATFORM_ETH_PORTS - 1 && record.enable == 9);
}

void call_BCM6838X_SetPPPoETrapEnable(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetPPPoETrapEnable(1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_PPPOE_TRAP] == PLATFORM_ETH_PORTS);
}

void call_InitKernelMonitorFd(void) {
  EXPECT(InitKernelMonitorFd() == BCM6838X_FAILED && g_platform.closes == 0);
  g_platform.monitorSocket = PLATFORM_SOCKET;
  EXPECT(InitKernelMonitorFd() == 0 && g_platform.closes == 0);
  g_platform.monitorSocket = PLATFORM_SOCKET + 1;
  EXPECT(InitKernelMonitorFd() == BCM6838X_FAILED);
}

/// Returns, because there is no socket.
void call_BCM6838X_kernelEvent(void) {
  BCM6838X_kernelEvent();
}

void call_BCM6838X_EventUniStateReport(void) {
  OpenDevice();
  EXPECT(BCM6838X_EventUniStateReport(4, 3) == BCM6838X_OK);
  PortRateRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_PORT_STATE && record.port == 5 && record.rate == 100000000);
  EXPECT(g_platform.messages == 2);
  EXPECT(g_platform.messageModule == 0xA280 && g_platform.messageCode == 0x0D02);
}

void call_BCM6838X_SetEponLaserState(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetEponLaserState(0x101) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_LASER_ON && g_platform.flag == BRMGR_FLAG_READ_BACK);
  EXPECT(BCM6838X_SetEponLaserState(2) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_LASER_OFF && g_platform.flag == BRMGR_FLAG_INPUT);
}
