/// @file
/// Tests of the commands of the ports and of MAC learning.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kPorts = 4;  // of the fixture's chip

class PortCommands : public DeviceTest {
 protected:
  /// Sends a record that must be refused; the tables stay as they are.
  template <typename Record>
  void expectRefusal(std::uint32_t code, Record record, const std::string& reason) {
    const std::string before = dump();
    EXPECT_EQ(send(code, record, BRMGR_FLAG_INPUT), EINVAL);
    EXPECT_EQ(lastCommand().reason, reason);
    EXPECT_EQ(dump(), before);
  }

  /// Sends a record that must be taken.
  template <typename Record>
  void expectDone(std::uint32_t code, Record record) {
    EXPECT_EQ(send(code, record, BRMGR_FLAG_INPUT), 0) << lastCommand().reason;
  }

  static PortAdminRecord Admin(std::uint32_t port, std::uint8_t enable) {
    PortAdminRecord record = {};
    record.port = port;
    record.enable = enable;
    return record;
  }

  static PortLoopbackRecord Loopback(std::uint32_t port, std::uint8_t enable) {
    PortLoopbackRecord record = {};
    record.port = port;
    record.enable = enable;
    return record;
  }

  static PortIsolateRecord Isolate(std::uint32_t port, std::uint32_t peer, std::uint32_t isolate) {
    return {port, peer, isolate, 2};
  }

  [[nodiscard]] const PortTables& ports() const { return device_.portTables(); }

  /// Everything that the tables hold, as text.
  [[nodiscard]] std::string dump() const {
    std::string text = ToHex(BytesOf(ports().mirror));
    for (const auto& [uni, port] : ports().settings) {
      text += " " + std::to_string(uni) + (port.adminUp ? " up" : " down") +
              (port.loopback ? " loopback " : " ") + std::to_string(port.spanningTree);
    }
    for (const auto& [uni, peer] : ports().isolated) {
      text += " " + std::to_string(uni) + "-" + std::to_string(peer);
    }
    return text;
  }
};

TEST_F(PortCommands, UntilTold_PortsAreUpAndNothingIsSet) {
  for (std::uint32_t uni = 1; uni <= kPorts; ++uni) {
    EXPECT_TRUE(ports().of(uni).adminUp);
    EXPECT_FALSE(ports().of(uni).loopback);
    EXPECT_EQ(ports().of(uni).spanningTree, 0U);
  }
  EXPECT_TRUE(ports().isolated.empty());
  EXPECT_EQ(ports().mirror.enable, 0U);
  EXPECT_FALSE(ports().macLimit);
  EXPECT_FALSE(ports().macLearn);
}

TEST_F(PortCommands, Admin_SetsThePortOfTheDeviceNumber) {
  expectDone(BRMGR_CMD_PORT_ADMIN, Admin(2, 0));
  expectDone(BRMGR_CMD_PORT_ADMIN, Admin(5, 0));
  EXPECT_EQ(dump(), std::string(32, '0') + " 1 down 0 4 down 0");
  expectDone(BRMGR_CMD_PORT_ADMIN, Admin(5, 1));
  EXPECT_FALSE(ports().of(1).adminUp);
  EXPECT_TRUE(ports().of(4).adminUp);
}

TEST_F(PortCommands, Loopback_LeavesTheAdministrativeStateAlone) {
  expectDone(BRMGR_CMD_PORT_ADMIN, Admin(3, 0));
  expectDone(BRMGR_CMD_PORT_LOOPBACK, Loopback(3, 1));
  EXPECT_TRUE(ports().of(2).loopback);
  EXPECT_FALSE(ports().of(2).adminUp);
  expectDone(BRMGR_CMD_PORT_LOOPBACK, Loopback(3, 0));
  EXPECT_FALSE(ports().of(2).loopback);
}

TEST_F(PortCommands, DevicePortOutOfRange_IsRefused) {
  for (const std::uint32_t port : {0U, 1U, 6U, 0xFFFFFFFFU}) {
    const std::string reason = "device port " + std::to_string(port) + " is none of 2 to 5";
    expectRefusal(BRMGR_CMD_PORT_ADMIN, Admin(port, 0), reason);
    expectRefusal(BRMGR_CMD_PORT_LOOPBACK, Loopback(port, 1), reason);
    expectRefusal(BRMGR_CMD_PORT_ISOLATE, Isolate(port, 2, 1), reason);
    expectRefusal(BRMGR_CMD_PORT_ISOLATE, Isolate(2, port, 1), reason);
    expectRefusal(BRMGR_CMD_PORT_MIRROR, PortMirrorRecord{0, port, 1, 0}, reason);
  }
}

TEST_F(PortCommands, Isolate_HoldsInBothDirections) {
  expectDone(BRMGR_CMD_PORT_ISOLATE, Isolate(4, 2, 1));
  EXPECT_TRUE(ports().areIsolated(3, 1));
  EXPECT_TRUE(ports().areIsolated(1, 3));
  EXPECT_FALSE(ports().areIsolated(1, 2));
  expectDone(BRMGR_CMD_PORT_ISOLATE, Isolate(2, 4, 0));
  EXPECT_FALSE(ports().areIsolated(3, 1));
}

TEST_F(PortCommands, Isolate_FromItself_IsTaken) {
  expectDone(BRMGR_CMD_PORT_ISOLATE, Isolate(2, 2, 1));
  EXPECT_EQ(ports().isolated.size(), 1U);
  expectDone(BRMGR_CMD_PORT_ISOLATE, Isolate(2, 2, 0));
  EXPECT_TRUE(ports().isolated.empty());
}

TEST_F(PortCommands, Stp_CountsPortsFromZero) {
  expectDone(BRMGR_CMD_PORT_STP, PortStpRecord{0, 7, 0});
  expectDone(BRMGR_CMD_PORT_STP, PortStpRecord{3, 1, 0});
  EXPECT_EQ(ports().of(1).spanningTree, 7U);
  EXPECT_EQ(ports().of(4).spanningTree, 1U);
  expectRefusal(BRMGR_CMD_PORT_STP, PortStpRecord{4, 1, 0},
                "port index 4, but the chip has 4 ports, counted from 0");
}

TEST_F(PortCommands, Mirror_IsKeptAsTheCommandGaveIt) {
  const PortMirrorRecord record = {0, 5, 1, 2};
  expectDone(BRMGR_CMD_PORT_MIRROR, record);
  EXPECT_EQ(BytesOf(ports().mirror), BytesOf(record));
}

TEST_F(PortCommands, Mirror_SwitchedOff_MayNameNothing) {
  expectDone(BRMGR_CMD_PORT_MIRROR, PortMirrorRecord{0, 5, 1, 2});
  expectDone(BRMGR_CMD_PORT_MIRROR, PortMirrorRecord{9, 0, 0, 9});
  EXPECT_EQ(ports().mirror.enable, 0U);
}

TEST_F(PortCommands, Mirror_UnknownSelectorOrDirection_IsRefused) {
  expectRefusal(BRMGR_CMD_PORT_MIRROR, PortMirrorRecord{1, 2, 1, 0},
                "port selector 1 is not 0 (all ports)");
  expectRefusal(BRMGR_CMD_PORT_MIRROR, PortMirrorRecord{0, 2, 1, 3},
                "mirror direction 3 is none of 0 (transmitted), 1 (received) and 2 (both)");
}

// Required: counters-of-0-are-the-first-port
TEST_F(PortCommands, Counters_AreReadByThePortFromOneAndZeroMeansTheFirst) {
  for (std::uint32_t uni = 1; uni <= kPorts; ++uni) {
    device_.counters(uni).port = 10 + uni;
    device_.counters(uni).rxUnicast = 100 * uni;
    device_.counters(uni).word52[1] = uni;
  }
  for (const std::uint32_t port : {0U, 1U, 4U}) {
    PortStatsRecord record = {};
    record.port = port;
    record.rxOctets = 77;
    EXPECT_EQ(send(BRMGR_CMD_PORT_STATS, record), 0);
    EXPECT_EQ(BytesOf(record), BytesOf(device_.counters(std::max(port, 1U)))) << port;
  }
}

TEST_F(PortCommands, Counters_OfNoPort_AreRefused) {
  for (const std::uint32_t port : {5U, 0xFFFFFFFFU}) {
    PortStatsRecord record = {};
    record.port = port;
    expectRefusal(
        BRMGR_CMD_PORT_STATS, record,
        "UNI port " + std::to_string(port) + ", but the chip has 4 ports, counted from 1");
  }
}

TEST_F(PortCommands, MacLimitAndLearn_AreKept) {
  expectDone(BRMGR_CMD_MAC_LIMIT, MacLimitRecord{0xFFFF});
  expectDone(BRMGR_CMD_MAC_LEARN, MacLearnRecord{0x80000001});
  EXPECT_EQ(ports().macLimit, 0xFFFF);
  EXPECT_EQ(ports().macLearn, 0x80000001U);
}

TEST_F(PortCommands, VlanConfiguration_IsKeptAsToldLast) {
  EXPECT_TRUE(ports().vlans.empty());
  auto table = std::make_unique<PortVlanTable>();
  table->port[0].pvid = 100;
  table->port[31].stackingList[511].svid = 500;
  EXPECT_EQ(request(BRMGR_CMD_VLAN_REBUILD, table.get(), sizeof(*table), BRMGR_FLAG_INPUT), 0);
  ASSERT_EQ(ports().vlans.size(), 32U);
  EXPECT_EQ(ports().vlans[0].pvid, 100);
  EXPECT_EQ(ports().vlans[31].stackingList[511].svid, 500);
  table->port[0].pvid = 200;
  EXPECT_EQ(request(BRMGR_CMD_VLAN_REBUILD, table.get(), sizeof(*table), BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(ports().vlans[0].pvid, 200);
}

TEST_F(PortCommands, ShortRecord_IsRefused) {
  struct Row {
    std::uint32_t code;
    std::uint32_t size;
  };
  constexpr std::array<Row, 8> kRows = {
      {{35, 48}, {39, 48}, {58, 16}, {85, 16}, {95, 216}, {126, 12}, {132, 2}, {133, 4}}};
  std::array<std::uint8_t, 216> record = {};
  const std::string before = dump();
  for (const Row& row : kRows) {
    EXPECT_EQ(request(row.code, record.data(), row.size - 1, BRMGR_FLAG_INPUT), EINVAL) << row.code;
    EXPECT_EQ(lastCommand().reason, "short record");
  }
  EXPECT_EQ(dump(), before);
  EXPECT_FALSE(ports().macLimit);
  EXPECT_FALSE(ports().macLearn);
}

}  // namespace
}  // namespace virtual_onu
