/// @file
/// Tests of the commands of policing and rates.
#include <array>
#include <cerrno>
#include <cstdint>
#include <string>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

class QosCommands : public DeviceTest {
 protected:
  /// Sends a record that must be refused; the tables stay as they are.
  template <typename Record>
  void expectRefusal(std::uint32_t code, Record record, int error, const std::string& reason) {
    const std::string before = dump();
    EXPECT_EQ(send(code, record), error);
    EXPECT_EQ(lastCommand().reason, reason);
    EXPECT_EQ(dump(), before);
  }

  /// Sends a record that must be taken.
  template <typename Record>
  void expectDone(std::uint32_t code, Record record) {
    EXPECT_EQ(send(code, record), 0) << lastCommand().reason;
  }

  static DscpMapRecord MapOf(std::uint32_t port, std::uint8_t first, std::uint8_t last) {
    DscpMapRecord record = {};
    record.port = port;
    record.priority[0] = first;
    record.priority[63] = last;
    return record;
  }

  [[nodiscard]] const QosTables& qos() const { return device_.qosTables(); }

  /// Everything that the tables hold, as text.
  [[nodiscard]] std::string dump() const {
    std::string text;
    for (const auto& [uni, policer] : qos().policers) {
      text += "policer " + std::to_string(uni) + " " + ToHex(BytesOf(policer.cfg)) + "\n";
    }
    for (const auto& [uni, rate] : qos().lineRates) {
      text += "line " + std::to_string(uni) + " " + std::to_string(rate) + "\n";
    }
    for (const auto& [uni, limit] : qos().dsLimits) {
      text += "limit " + std::to_string(uni) + " " + std::to_string(limit.rate) + "\n";
    }
    for (const auto& [uni, map] : qos().dscpMaps) {
      text += "map " + std::to_string(uni) + " " + ToHex(map) + "\n";
    }
    return text;
  }
};

TEST_F(QosCommands, UntilTold_NothingIsLimited) {
  EXPECT_EQ(dump(), "");
}

TEST_F(QosCommands, Policer_IsKeptReplacedAndDeleted) {
  const PolicerCfg slow = {0, 64000, 501536, 1, 1, 4};
  const PolicerCfg fast = {0, 128000, 501536, 1, 1, 4};
  expectDone(BRMGR_CMD_POLICER_ADD, slow);
  expectDone(BRMGR_CMD_POLICER_ADD, PolicerCfg{0, 256000, 501536, 1, 1, 1});
  expectDone(BRMGR_CMD_POLICER_ADD, fast);
  ASSERT_EQ(qos().policers.size(), 2U);
  EXPECT_EQ(BytesOf(qos().policers.at(4).cfg), BytesOf(fast));
  EXPECT_EQ(qos().policers.at(1).cfg.rate, 256000U);
  EXPECT_GT(qos().policers.at(4).serial, qos().policers.at(1).serial) << "it is the newest";
  expectDone(BRMGR_CMD_POLICER_DEL, PolicerDel{1, 4});
  EXPECT_EQ(qos().policers.size(), 1U);
  EXPECT_TRUE(qos().policers.contains(1));
  expectRefusal(BRMGR_CMD_POLICER_DEL, PolicerDel{1, 4}, ENOENT, "UNI port 4 has no policer");
}

TEST_F(QosCommands, LineRate_IsThatOfTheDevicePort) {
  expectDone(BRMGR_CMD_PORT_STATE, PortRateRecord{2, 1000000000});
  expectDone(BRMGR_CMD_PORT_STATE, PortRateRecord{5, 100000000});
  expectDone(BRMGR_CMD_PORT_STATE, PortRateRecord{5, 10000000});
  EXPECT_EQ(dump(), "line 1 1000000000\nline 4 10000000\n");
}

TEST_F(QosCommands, DownstreamLimit_ZeroTakesItAway) {
  expectDone(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{1, 5000});
  expectDone(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{4, 7000});
  EXPECT_EQ(dump(), "limit 1 5000\nlimit 4 7000\n");
  expectDone(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{1, 0});
  EXPECT_EQ(dump(), "limit 4 7000\n");
  expectDone(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{1, 0});
  EXPECT_EQ(dump(), "limit 4 7000\n");
}

TEST_F(QosCommands, DownstreamLimit_SetAgain_IsAnother) {
  expectDone(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{1, 5000});
  const std::uint64_t first = qos().dsLimits.at(1).serial;
  expectDone(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{1, 5000});
  EXPECT_GT(qos().dsLimits.at(1).serial, first);
}

TEST_F(QosCommands, DscpMap_IsThatOfTheDevicePort) {
  expectDone(BRMGR_CMD_DSCP_MAP, MapOf(2, 5, 7));
  expectDone(BRMGR_CMD_DSCP_MAP, MapOf(5, 1, 2));
  ASSERT_EQ(qos().dscpMaps.size(), 2U);
  EXPECT_EQ(qos().dscpMaps.at(1).front(), 5);
  EXPECT_EQ(qos().dscpMaps.at(1).back(), 7);
  EXPECT_EQ(qos().dscpMaps.at(4).front(), 1);
}

TEST_F(QosCommands, UniPortOutOfRange_IsRefused) {
  for (const std::uint32_t uni : {0U, 5U, 0xFFFFFFFFU}) {
    const std::string reason = "UNI port " + std::to_string(uni) + " is none of 1 to 4";
    expectRefusal(BRMGR_CMD_POLICER_ADD, PolicerCfg{0, 64000, 501536, 1, 1, uni}, EINVAL, reason);
    expectRefusal(BRMGR_CMD_POLICER_DEL, PolicerDel{1, uni}, EINVAL, reason);
    expectRefusal(BRMGR_CMD_DS_RATE_LIMIT, DsRateLimitRecord{uni, 5000}, EINVAL, reason);
  }
}

TEST_F(QosCommands, DevicePortOutOfRange_IsRefused) {
  for (const std::uint32_t port : {0U, 1U, 6U, 0xFFFFFFFFU}) {
    const std::string reason = "device port " + std::to_string(port) + " is none of 2 to 5";
    expectRefusal(BRMGR_CMD_DSCP_MAP, MapOf(port, 1, 1), EINVAL, reason);
  }
}

TEST_F(QosCommands, LineRateOfAPortThatDoesNotExist_IsTakenAndForgotten) {
  for (const std::uint32_t port : {0U, 1U, 6U, 0xFFFFFFFFU}) {
    expectDone(BRMGR_CMD_PORT_STATE, PortRateRecord{port, 10000000});
  }
  EXPECT_TRUE(qos().lineRates.empty());
}

TEST_F(QosCommands, ShortRecord_IsRefused) {
  struct Row {
    std::uint32_t code;
    std::uint32_t size;
  };
  constexpr std::array<Row, 5> kRows = {{{61, 8}, {105, 24}, {106, 8}, {111, 68}, {123, 8}}};
  std::array<std::uint8_t, 68> record = {};
  for (const Row& row : kRows) {
    EXPECT_EQ(request(row.code, record.data(), row.size - 1, BRMGR_FLAG_INPUT), EINVAL) << row.code;
    EXPECT_EQ(lastCommand().reason, "short record");
  }
  EXPECT_EQ(dump(), "");
}

}  // namespace
}  // namespace virtual_onu
