/// @file
/// The library's state and tables as a program sees them that links with the archive, for tests of
/// what they keep and for contents that no operation makes. C sees the numbers, C++ the tables too.
#pragma once

#include <brmgr_record.h>

#ifdef __cplusplus
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

namespace hal_test {

inline constexpr std::size_t kUniPorts = 32;
inline constexpr std::size_t kChipObjects = 256;  ///< of each kind; of flows in each class table
inline constexpr std::size_t kVlanEntries = 4096;
inline constexpr std::size_t kQosEntries = 256;
inline constexpr std::size_t kMcastPlaces = 8;  ///< multicast VLANs, and rules, of a port
inline constexpr std::size_t kMcastChannels = 1024;

struct VlanActionEntry {
  VlanActionRule rule;
  uint32_t refCount;
};

struct WanVlanEntry {
  uint16_t wanVid;
  std::array<std::array<uint16_t, 512>, kUniPorts> lanVid;
  bool operator==(const WanVlanEntry&) const = default;
};

struct LanVlanEntry {
  uint16_t port;
  uint16_t vid;
  uint16_t refCount;
};

/// A VLAN of the membership table.
struct VlanEntry {
  uint16_t vid;
  uint32_t portMask;
  uint32_t vlanAttr;
  std::array<uint8_t, 40> unused;
};
static_assert(sizeof(VlanEntry) == 52);

struct McastRule {
  uint16_t mvlan;
  uint16_t iptvVlan;
  uint32_t vlanActionIndex;
};

/// A port's multicast VLANs and the treatment of their tags.
struct McastPort {
  uint16_t mode;
  std::array<uint16_t, kMcastPlaces> vlans;
  uint32_t stripActionIndex;
  std::array<McastRule, kMcastPlaces> rules;
};

/// What a channel holds is told by the operations.
struct McastChannel {
  std::array<uint8_t, 28> bytes;
};

/// An entry or a whole table, byte for byte.
template <typename Object>
std::vector<uint8_t> BytesOf(const Object& object) {
  std::vector<uint8_t> bytes(sizeof(object));
  std::memcpy(bytes.data(), &object, sizeof(object));
  return bytes;
}

}  // namespace hal_test

extern "C" {
#endif

extern int32_t sgHwDevFd;
extern uint32_t g_bcm6838xLogId;
extern int32_t g_SwitchPerformance;
extern char g_BoardId[17];
extern int32_t kernelMonitorFd;
extern uint8_t g_dhcpRelayStatus;
extern uint8_t g_pppoeRelayStatus;
extern uint32_t g_mirror_cfg[4];

#ifdef __cplusplus
extern PortVlanInfo g_PortVlanInfo[hal_test::kUniPorts];
extern PortVlanInfo g_oldPortVlanInfo[hal_test::kUniPorts];
extern hal_test::VlanEntry g_vlanEntry[hal_test::kVlanEntries];
extern uint16_t g_vlanEntryCnt;
extern uint16_t g_vlanEntryGetCnt;

extern hal_test::VlanActionEntry g_vlanAction[hal_test::kChipObjects];
extern hal_test::WanVlanEntry g_wanVlan[hal_test::kChipObjects];
extern hal_test::LanVlanEntry g_lanVlan[hal_test::kChipObjects];
extern IngressFlowRule g_dsIngressClass[hal_test::kChipObjects];
extern IngressFlowRule g_usIngressClass[hal_test::kUniPorts][hal_test::kChipObjects];
extern uint32_t g_dsVlanAction;

extern int32_t sg_QosClassificationVlanEntry[hal_test::kQosEntries];
extern int32_t sg_QosClassificationICEntry[hal_test::kQosEntries];
extern int32_t sg_QosClassificationFlowEntry[hal_test::kQosEntries];
extern uint32_t g_portPolicerCfg[hal_test::kUniPorts];

extern hal_test::McastPort g_mcastUniPortInfo[hal_test::kUniPorts];
extern hal_test::McastChannel g_mcastChannelInfo[hal_test::kMcastChannels];
}
#endif
