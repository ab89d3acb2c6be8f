/// @file
/// What the library's getters return of frames that crossed the data path, before and behind a
/// clear.
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <bcm6838x_vlan_mode.h>
#include <hal_bcm6838x.h>

#include "base/bytes.h"
#include "datapath/data_path.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using virtual_onu::Bytes;
using virtual_onu::Outcome;
using virtual_onu::PortId;

constexpr std::uint32_t kPorts = 4;

using Getter = std::uint32_t (*)(std::uint32_t port, std::uint32_t* out);
using Counted = std::map<std::string, std::uint64_t>;

/// The getters of frames; those of octets differ in their result.
#define GETTER_uint32_t(name) {#name, BCM6838X_GetPortStatistics##name},
#define GETTER_Counter64(name)
#define GETTER(name, type, ...) GETTER_##type(name)
const std::map<std::string, Getter> kGetters = {BCM6838X_COUNTER_LIST(GETTER)};
#undef GETTER
#undef GETTER_Counter64
#undef GETTER_uint32_t

/// UNI port 1 forwards untagged frames to VLAN 100, and gets those of VLAN 100.
class PortTrafficTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_Init(), 0U);
    for (std::uint32_t port = 1; port <= kPorts; ++port) {
      ASSERT_EQ(BCM6838X_SetPortAdminState(port, 1), 0);
    }
    ASSERT_GE(BCM6838X_AddUsTag(1, 100, 0), 0);
  }

  /// An untagged frame of that many octets on the wire, the check sequence included.
  static Bytes Untagged(std::size_t onTheWire, std::uint8_t firstOctet) {
    Bytes frame = {firstOctet, 0, 0, 0, 0, 2, 2, 0, 0, 0, 0, 1, 0x88, 0xB5};
    if (firstOctet == 0xFF) {
      frame = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 0, 1, 0x88, 0xB5};
    }
    frame.resize(onTheWire - 4);
    return frame;
  }

  /// The same with a tag of VLAN 100.
  static Bytes Tagged(std::size_t onTheWire, std::uint8_t firstOctet) {
    Bytes frame = Untagged(onTheWire - 4, firstOctet);
    const Bytes tag = {0x81, 0, 0, 100};
    frame.insert(frame.begin() + 12, tag.begin(), tag.end());
    return frame;
  }

  Outcome offer(PortId port, const Bytes& frame) {
    return unit.dataPath().offer(port, frame).outcome;
  }

  /// What the getters return of a port, but for zeros.
  static Counted of(std::uint32_t port) {
    Counted counted;
    for (const auto& [name, getter] : kGetters) {
      std::uint32_t value = 0;
      EXPECT_EQ(getter(port, &value), 0U) << name;
      counted[name] = value;
    }
    Counter64 octets = {};
    EXPECT_EQ(BCM6838X_GetPortStatisticsRxOctets(port, &octets), 0U);
    counted["RxOctets"] = (std::uint64_t{octets.high} << 32U) | octets.low;
    EXPECT_EQ(BCM6838X_GetPortStatisticsTxOctets(port, &octets), 0U);
    counted["TxOctets"] = (std::uint64_t{octets.high} << 32U) | octets.low;
    EXPECT_EQ(counted.size(), 24U);
    std::erase_if(counted, [](const auto& counter) { return counter.second == 0; });
    return counted;
  }

  void sendEveryLength() {
    for (const std::uint32_t length :
         {64U, 65U, 127U, 128U, 255U, 256U, 511U, 512U, 1023U, 1024U, 1518U}) {
      ASSERT_EQ(offer(PortId::Uni(1), Untagged(length, 2)), Outcome::FlowForward) << length;
    }
  }
};

TEST_F(PortTrafficTest, Received_EveryLengthCastAndOutcome) {
  sendEveryLength();
  EXPECT_EQ(offer(PortId::Uni(1), Untagged(64, 3)), Outcome::FlowForward);
  EXPECT_EQ(offer(PortId::Uni(1), Untagged(64, 0xFF)), Outcome::FlowForward);
  EXPECT_EQ(offer(PortId::Uni(1), Tagged(200, 2)), Outcome::NoFlow);
  EXPECT_EQ(offer(PortId::Uni(1), {1, 2, 3}), Outcome::RuntFrame);
  // 64 + 65 + 127 + 128 + 255 + 256 + 511 + 512 + 1023 + 1024 + 1518, 2 x 64 and 200.
  EXPECT_EQ(of(1), (Counted{{"RxOctets", 5811},
                            {"RxUnicastPackets", 12},
                            {"RxMulticastPackets", 1},
                            {"RxBroadcastPackets", 1},
                            {"RxDiscardPackets", 1},
                            {"RxErrorPackets", 2},
                            {"Rx64Octets", 3},
                            {"Rx65to127Octets", 2},
                            {"Rx128to255Octets", 3},
                            {"Rx256to511Octets", 2},
                            {"Rx512to1023Octets", 2},
                            {"Rx1024to1518Octets", 2}}));
  EXPECT_EQ(of(2), Counted());
}

TEST_F(PortTrafficTest, Transmitted_EveryLengthCastAndOutcome) {
  for (const std::uint32_t length :
       {68U, 127U, 128U, 255U, 256U, 511U, 512U, 1023U, 1024U, 1518U}) {
    ASSERT_EQ(offer(PortId::Wan(), Tagged(length, 2)), Outcome::FlowForward) << length;
  }
  offer(PortId::Wan(), Tagged(68, 3));
  offer(PortId::Wan(), Tagged(68, 0xFF));
  const QosDsRateLimitCfg limit = {0, 1};
  EXPECT_EQ(BCM6838X_SetQosDsRateLimit(&limit), 0U);
  Bytes large = Tagged(501541, 2);  // an octet more than the limit lets pass at once
  offer(PortId::Wan(), large);
  // 68 + 127 + 128 + 255 + 256 + 511 + 512 + 1023 + 1024 + 1518, and 2 x 68.
  EXPECT_EQ(of(1), (Counted{{"TxOctets", 5558},
                            {"TxUnicastPackets", 10},
                            {"TxMulticastPackets", 1},
                            {"TxBroadcastPackets", 1},
                            {"TxDiscardPackets", 1},
                            {"TxErrorPackets", 1},
                            {"Tx65to127Octets", 4},
                            {"Tx128to255Octets", 2},
                            {"Tx256to511Octets", 2},
                            {"Tx512to1023Octets", 2},
                            {"Tx1024to1518Octets", 2}}));
}

TEST_F(PortTrafficTest, Clear_CountsFromThereOn) {
  sendEveryLength();
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(1), 0U);
  EXPECT_EQ(of(1), Counted());
  EXPECT_EQ(offer(PortId::Uni(1), Untagged(100, 2)), Outcome::FlowForward);
  EXPECT_EQ(of(1), (Counted{{"RxOctets", 100}, {"RxUnicastPackets", 1}, {"Rx65to127Octets", 1}}));
}

// Required: statistics-table-is-raw
TEST_F(PortTrafficTest, TableOfAllPorts_HasTheRunningTotals) {
  sendEveryLength();
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(1), 0U);
  PortStatisticsEntry entries[kPorts] = {};
  EXPECT_EQ(BCM6838X_GetPortStatistics(entries), 0U);
  EXPECT_EQ(entries[1].rxOctets, 5483U);  // the request counts from 0, the chip from 1
  EXPECT_EQ(entries[1].rxUnicast, 11U);
  EXPECT_EQ(entries[2].rxOctets, 0U);
}

}  // namespace
}  // namespace hal_test
