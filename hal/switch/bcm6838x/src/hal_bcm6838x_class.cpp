/// @file
/// The default ingress classes, and the flows that make the data path trap the unit's own traffic.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_object.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint32_t kMacSize = 6;

/// What the default classes differ in.
struct DefaultClass {
  uint32_t fieldMask;
  uint32_t priority;
  uint32_t dir;
  uint32_t icIndex;
};

constexpr uint32_t kPortAndTags = BRMGR_KEY_INGRESS_PORT | BRMGR_KEY_VLAN_NUM;
constexpr uint32_t kPortVidAndTags = kPortAndTags | BRMGR_KEY_OUTER_VID;

/// Index of the class of either direction that compares the destination MAC address.
constexpr uint32_t kDstMacClass = 2;

constexpr DefaultClass kNormalClasses[] = {
    {kPortAndTags, 1, BRMGR_DIR_UPSTREAM, 0},
    {kPortVidAndTags, 2, BRMGR_DIR_UPSTREAM, 1},
    {BRMGR_KEY_DESTINATION_MAC, 3, BRMGR_DIR_UPSTREAM, kDstMacClass},
    {kPortVidAndTags | BRMGR_KEY_OUTER_PBIT, 4, BRMGR_DIR_UPSTREAM, 3},
    {kPortAndTags | BRMGR_KEY_OUTER_PBIT, 5, BRMGR_DIR_UPSTREAM, 4},
    {kPortAndTags, 1, BRMGR_DIR_DOWNSTREAM, 0},
    {kPortVidAndTags, 2, BRMGR_DIR_DOWNSTREAM, 1},
    {BRMGR_KEY_DESTINATION_MAC, 3, BRMGR_DIR_DOWNSTREAM, kDstMacClass},
};

constexpr DefaultClass kPerformanceClasses[] = {
    {BRMGR_KEY_INGRESS_PORT, 6, BRMGR_DIR_UPSTREAM, 0},
    {BRMGR_KEY_INGRESS_PORT, 3, BRMGR_DIR_DOWNSTREAM, 0},
};

uint32_t CreateClass(const DefaultClass& wanted) {
  IngressClassCfg record = BeginClass(wanted.dir, wanted.fieldMask, wanted.priority);
  record.icIndex = wanted.icIndex;
  return Send<BRMGR_CMD_IC_CREATE>(record);
}

/// Creates all classes of a table, whatever the driver answers, and returns the last answer.
template <size_t count>
uint32_t CreateClasses(const DefaultClass (&classes)[count]) {
  uint32_t result = BCM6838X_OK;
  for (const DefaultClass& wanted : classes) {
    // Required: classes-return-last-result
    result = CreateClass(wanted);
  }
  return result;
}

void AddTrapFlow(uint32_t dir, const uint8_t (&mac)[kMacSize]) {
  IngressFlowRule record = BeginFlow(dir, kDstMacClass, BRMGR_FORWARD_TRAP);
  memcpy(record.dstMac, mac, sizeof(record.dstMac));
  Send<BRMGR_CMD_FLOW_ADD>(record);
}

void TrapUnitAddresses() {
  uint8_t first[kMacSize] = {};
  uint8_t second[kMacSize] = {};
  if (VOS_OntInfoGetMac(first, second) != 0) {
    return;
  }
  // Required: trap-flows-downstream-first
  constexpr uint32_t kDirections[] = {BRMGR_DIR_DOWNSTREAM, BRMGR_DIR_UPSTREAM};
  for (const uint32_t dir : kDirections) {
    AddTrapFlow(dir, first);
    AddTrapFlow(dir, second);
  }
}

void TrapReservedAddresses() {
  // The bridge group address of IEEE 802.1D (7.12.3).
  constexpr uint8_t kBridgeGroup[kMacSize] = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
  // Required: trap-second-group-23
  constexpr uint8_t kSecondGroup[kMacSize] = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x23};
  AddTrapFlow(BRMGR_DIR_UPSTREAM, kBridgeGroup);
  AddTrapFlow(BRMGR_DIR_UPSTREAM, kSecondGroup);
}

}  // namespace

uint32_t BCM6838X_StreamPortIndexUniToRdpa(uint32_t port) {
  // Required: data-path-port-is-low-byte-plus-1
  return DevicePort(UniPort(port));
}

uint32_t BCM6838X_RdpaIcInit(void) {
  const uint32_t result = CreateClasses(kNormalClasses);
  TrapUnitAddresses();
  TrapReservedAddresses();
  return result;
}

uint32_t BCM6838X_RdpaIcInit_Perf(void) {
  return CreateClasses(kPerformanceClasses);
}
