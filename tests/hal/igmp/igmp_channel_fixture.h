/// @file
/// What the tests of the channel table share: a started unit, groups and their entries, and the
/// lines of the log.
#pragma once

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test::igmp_channel {

using virtual_onu::Bytes;

inline constexpr std::uint32_t kNone = 0xFFFFFFFF;
inline constexpr std::uint16_t kNoSlot = 0xFFFF;
inline constexpr std::uint32_t kSlots = 1024;
inline const std::string kPlace = " hal/switch/bcm6838x/src/bcm6838x_igmp_channel.cpp ";

inline McastGroupRequest Group(std::uint32_t portMask, std::uint8_t lastByte = 3) {
  McastGroupRequest request = {};
  request.vlan = 0x0FA1;
  const Bytes mac = {0x01, 0x00, 0x5E, 0x01, 0x02, lastByte};
  const Bytes ipv4 = {239, 1, 2, lastByte};
  std::ranges::copy(mac, request.groupMac);
  std::ranges::copy(ipv4, request.groupIpv4);
  request.portMask = portMask;
  return request;
}

inline McastGroupRequest Ipv6Group(std::uint32_t portMask, std::uint8_t lastByte) {
  McastGroupRequest request = {};
  request.groupIpv6[0] = 0xFF;
  request.groupIpv6[15] = lastByte;
  request.portMask = portMask;
  return request;
}

/// The entry of Group() for a port.
inline WireRecord Entry(std::uint32_t port, std::uint32_t portMask, std::uint32_t channelIndex,
                        std::uint32_t vlanActionIndex = kNone) {
  WireRecord record(52);
  record.u32(0, vlanActionIndex).u32(4, channelIndex).u32(8, port).u32(12, portMask);
  record.u16(16, 0x0FA1).bytes(24, Bytes{0x01, 0x00, 0x5E, 0x01, 0x02, 3});
  return record.bytes(30, Bytes{239, 1, 2, 3});
}

inline std::string AddSent(const WireRecord& entry) {
  return Sent("MCAST_ADD", 1, entry);
}

inline std::string DelSent(const WireRecord& entry) {
  return Sent("MCAST_DEL", 0, entry);
}

/// "verb" is what the log line begins with; the rest stands for itself.
inline std::string Logged(const std::string& verb, std::uint32_t port, std::int32_t action,
                          std::uint32_t channelIndex, std::uint32_t slot,
                          std::uint32_t result = 0) {
  return "log 1" + kPlace + verb + " IPTV group[239.1.2.3] Port[" + std::to_string(port) +
         "] vlanActionIndex " + std::to_string(action) + " channelIndex " +
         std::to_string(channelIndex) + "  slot " + std::to_string(slot) +
         " ret=" + std::to_string(result) + "\r\n";
}

inline std::string ModifyLogged(const std::string& portMask, std::uint32_t result = 0) {
  return "log 1" + kPlace + "Modify IPTV group[239.1.2.3] PortMask[" + portMask +
         "] ret=" + std::to_string(result) + "\r\n";
}

class McastChannelTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitIgmp(), 0U);
    forget();
  }

  static std::uint32_t add(const McastGroupRequest& request) {
    return BCM6838X_AddMulticastMacAddr(&request);
  }
  static std::uint32_t modify(const McastGroupRequest& request) {
    return BCM6838X_ModifyMulticastMacAddr(&request);
  }
  static std::uint32_t del(const McastGroupRequest& request) {
    return BCM6838X_DelMulticastMacAddr(&request);
  }

  static std::uint16_t find(const McastGroupRequest& request, std::uint32_t port) {
    return BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, request.groupIpv6, port);
  }

  /// The ports that have the group, by their slots in the table.
  static std::vector<std::uint32_t> portsOf(const McastGroupRequest& request) {
    std::vector<std::uint32_t> ports;
    for (std::uint32_t port = 1; port <= 32; ++port) {
      if (find(request, port) != kNoSlot) {
        ports.push_back(port);
      }
    }
    return ports;
  }

  /// Uses every slot, each for another group on port 1.
  void fillTable() {
    for (std::uint32_t i = 0; i < kSlots; ++i) {
      McastGroupRequest request = Group(1, static_cast<std::uint8_t>(i));
      request.groupIpv4[2] = static_cast<std::uint8_t>(100 + i / 256);
      ASSERT_EQ(BCM6838X_FindUnuseMcastChanSlot(), i);
      ASSERT_EQ(add(request), 0U);
    }
    ASSERT_EQ(BCM6838X_FindUnuseMcastChanSlot(), kNoSlot);
    forget();
  }

  /// From now on the driver writes an index into the record of every create and refuses it.
  void refuseWithAnIndex() {
    unit.device().onRequest([](const BrmgrRequest& request) -> std::optional<int> {
      if (request.cmd != BRMGR_CMD_MCAST_ADD) {
        return std::nullopt;
      }
      static_cast<McastGroupEntry*>(request.buf)->channelIndex = 99;
      return -1;
    });
  }

  /// Creates a downstream action, so that the next index is not 0.
  static void useUpIndexZero() {
    BCM6838X_SetMulticastVlanMode(4, 0);
    BCM6838X_SetMulticastVlanMode(4, 0);
  }
};

}  // namespace hal_test::igmp_channel
