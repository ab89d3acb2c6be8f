/// @file
/// Tests of policers with their line-rate reports, the downstream rate limit and the DSCP map.
#include <array>
#include <cstdint>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "phy/phy.h"
#include "qos_rules.h"
#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using virtual_onu::LinkPartner;

const std::string kTrace = "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_policer.cpp ";
const std::string kInvalid = "log 4 hal/switch/bcm6838x/src/bcm6838x_qos_policer.cpp ";

constexpr std::uint32_t kGigabit = 1000000000;

std::string PolicerSent(std::uint32_t port, std::uint32_t rate) {
  return Sent("POLICER_ADD", 1,
              WireRecord(24).u32(4, rate).u32(8, 0x7A720).u32(12, 1).u32(16, 1).u32(20, port));
}

std::string PolicerDeleteSent(std::uint32_t port) {
  return Sent("POLICER_DEL", 0, WireRecord(8).u32(0, 1).u32(4, port));
}

std::string RateSent(std::uint32_t port, std::uint32_t rate) {
  return Sent("PORT_STATE", 0, WireRecord(8).u32(0, port + 1).u32(4, rate));
}

std::string CallLogged(const std::string& values) {
  return kTrace + "BCM6838X_SetQosUsPolicer(<line>) " + values + "\r\n";
}

std::string RangeLogged(const std::string& port) {
  std::string line = kInvalid;
  line += "BCM6838X_SetQosUsPolicer(<line>), port=";
  return line += port + " is out of range\r\n";
}

LinkPartner Unplugged() {
  LinkPartner partner;
  partner.present = false;
  return partner;
}

LinkPartner ForcedTo(std::uint32_t speed, bool fullDuplex) {
  LinkPartner partner;
  partner.negotiates = false;
  partner.forced = {speed, fullDuplex};
  return partner;
}

class QosPolicerTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitQoS(), 0U);
    forget();
  }

  /// The commands of a call that succeeds; what it prints is in printed_.
  std::vector<std::string> set(std::uint32_t port, std::uint32_t cir) {
    forget();
    const QosUsPolicerCfg cfg = {port, cir, 3, 4};
    testing::internal::CaptureStdout();
    EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
    static_cast<void>(std::fflush(stdout));
    printed_ = testing::internal::GetCapturedStdout();
    return commands();
  }

  std::string printed_;
};

// Required: policer-logs-ebs-first
TEST_F(QosPolicerTest, Policer_Log_NamesEbsBeforeCbs) {
  const QosUsPolicerCfg cfg = {2, 64, 1000, 2000};
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_THAT(left(), ElementsAre(CallLogged("port=2, cir = 64, ebs = 2000, cbs = 1000"),
                                  PolicerSent(2, 64000), RateSent(2, kGigabit)));
}

TEST_F(QosPolicerTest, Policer_Log_ShowsWordsSigned) {
  const QosUsPolicerCfg cfg = {1, 0, 0xFFFFFFFF, 0x80000000};
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_THAT(logLines(), ElementsAre(CallLogged("port=1, cir = 0, ebs = -2147483648, cbs = -1")));
}

// Required: policer-rate-0-in-range, policer-made-anew, policer-burst-fixed
TEST_F(QosPolicerTest, Policer_SetChangedAndRemoved) {
  EXPECT_THAT(set(1, 0), ElementsAre(RateSent(1, kGigabit))) << "there is none to remove";
  EXPECT_THAT(set(1, 64), ElementsAre(PolicerSent(1, 64000), RateSent(1, kGigabit)));
  EXPECT_THAT(set(1, 64),
              ElementsAre(PolicerDeleteSent(1), PolicerSent(1, 64000), RateSent(1, kGigabit)));
  EXPECT_THAT(set(1, 128),
              ElementsAre(PolicerDeleteSent(1), PolicerSent(1, 128000), RateSent(1, kGigabit)));
  EXPECT_THAT(set(1, 0), ElementsAre(PolicerDeleteSent(1), RateSent(1, kGigabit)));
  EXPECT_THAT(set(1, 0), ElementsAre(RateSent(1, kGigabit)));
  EXPECT_THAT(set(1, 65), ElementsAre(PolicerSent(1, 65000), RateSent(1, kGigabit)));
}

TEST_F(QosPolicerTest, Policer_Ports_AreIndependent) {
  EXPECT_THAT(set(1, 64), ElementsAre(PolicerSent(1, 64000), RateSent(1, kGigabit)));
  EXPECT_THAT(set(2, 0), ElementsAre(RateSent(2, kGigabit)));
  EXPECT_THAT(set(2, 100), ElementsAre(PolicerSent(2, 100000), RateSent(2, kGigabit)));
  EXPECT_THAT(set(1, 0), ElementsAre(PolicerDeleteSent(1), RateSent(1, kGigabit)));
  EXPECT_THAT(set(2, 0), ElementsAre(PolicerDeleteSent(2), RateSent(2, kGigabit)));
}

// Required: refused-rate-still-reports-line
TEST_F(QosPolicerTest, Policer_RateOutOfRange_IsPrintedAndTheLineRateReported) {
  int refused = 0;
  for (const std::uint32_t cir : {1U, 2U, 32U, 63U}) {
    EXPECT_THAT(set(3, cir), ElementsAre(RateSent(3, kGigabit)));
    EXPECT_EQ(printed_, "BCM6838X_SetQosUsPolicer(), error: cir[" + std::to_string(cir) +
                            "] is out of range!\r\n");
    ++refused;
  }
  EXPECT_EQ(refused, 4);
  EXPECT_THAT(set(3, 64), ElementsAre(PolicerSent(3, 64000), RateSent(3, kGigabit)));
  EXPECT_EQ(printed_, "");
  EXPECT_THAT(set(3, 63), ElementsAre(RateSent(3, kGigabit))) << "the policer stays";
  EXPECT_THAT(set(3, 0), ElementsAre(PolicerDeleteSent(3), RateSent(3, kGigabit)));
  EXPECT_EQ(printed_, "");
}

// Required: policer-rate-wraps
TEST_F(QosPolicerTest, Policer_RateWrapsIn32Bits) {
  // 4294968 x 1000 is 2^32 + 704, below the least rate; 4295032 x 1000 is 2^32 + 64704.
  EXPECT_THAT(set(1, 4294968), ElementsAre(RateSent(1, kGigabit)));
  EXPECT_EQ(printed_, "BCM6838X_SetQosUsPolicer(), error: cir[4294968] is out of range!\r\n");
  EXPECT_THAT(set(1, 4295032), ElementsAre(PolicerSent(1, 64704), RateSent(1, kGigabit)));
  // 2^29 x 1000 is a multiple of 2^32.
  EXPECT_THAT(set(2, 0x20000000), ElementsAre(PolicerSent(2, 0), RateSent(2, kGigabit)));
  // (2^32 - 1) x 1000 is 2^32 x 999 + 4294966296.
  EXPECT_THAT(set(3, 0xFFFFFFFF), ElementsAre(PolicerSent(3, 4294966296), RateSent(3, kGigabit)));
  EXPECT_EQ(printed_, "");
}

TEST_F(QosPolicerTest, Policer_RateOutOfRange_IsPrintedSigned) {
  // 0x8000003F x 1000 is a multiple of 2^32 and 63000.
  EXPECT_THAT(set(1, 0x8000003F), ElementsAre(RateSent(1, kGigabit)));
  EXPECT_EQ(printed_, "BCM6838X_SetQosUsPolicer(), error: cir[-2147483585] is out of range!\r\n");
}

TEST_F(QosPolicerTest, LineRate_OfEveryMediaType) {
  struct Row {
    std::uint16_t control;
    LinkPartner partner;
    std::uint32_t rate;
  };
  LinkPartner halfGigabit;
  halfGigabit.advertisement = {0x01E1, 0x0100};
  const std::vector<Row> rows = {
      {0x1340, {}, 1000000000},
      {0x1340, halfGigabit, 1000000000},
      {0x2100, ForcedTo(100, true), 100000000},
      {0x2000, ForcedTo(100, false), 100000000},
      {0x0100, ForcedTo(10, true), 10000000},
      {0x0000, ForcedTo(10, false), 10000000},
  };
  for (const Row& row : rows) {
    unit.phy(4).setPartner(row.partner);
    unit.phy(4).write(0, row.control);
    EXPECT_THAT(set(4, 0), ElementsAre(RateSent(4, row.rate))) << row.control;
  }
  EXPECT_EQ(rows.size(), 6U);
}

TEST_F(QosPolicerTest, LineRate_LinkDown_IsNotReported) {
  unit.phy(1).setPartner(Unplugged());
  EXPECT_THAT(set(1, 64), ElementsAre(PolicerSent(1, 64000)));
  EXPECT_THAT(set(1, 63), IsEmpty());
  EXPECT_THAT(set(1, 0), ElementsAre(PolicerDeleteSent(1)));
}

TEST_F(QosPolicerTest, LineRate_NothingNegotiated_IsNotReported) {
  // Linked at 100 half without an acknowledge, so that the media type is not known.
  unit.phy(1).setPartner(ForcedTo(100, false));
  EXPECT_THAT(set(1, 0), IsEmpty());
}

TEST_F(QosPolicerTest, Policer_PortWithoutAnInterface_IsSetWithoutALineRate) {
  EXPECT_THAT(set(32, 64), ElementsAre(PolicerSent(32, 64000)));
  EXPECT_THAT(set(32, 0), ElementsAre(PolicerDeleteSent(32)));
}

TEST_F(QosPolicerTest, Policer_PortOutOfRange_IsLoggedAndChangesNothing) {
  const auto values = [](const std::string& port, const std::string& cir) {
    return "port=" + port + ", cir = " + cir + ", ebs = 4, cbs = 3";
  };
  int refused = 0;
  for (const std::string port : {"0", "33", "-1"}) {
    for (const std::string cir : {"0", "64"}) {
      EXPECT_THAT(set(static_cast<std::uint32_t>(std::stoi(port)),
                      static_cast<std::uint32_t>(std::stoi(cir))),
                  IsEmpty());
      EXPECT_EQ(printed_, "");
      EXPECT_THAT(logLines(), ElementsAre(CallLogged(values(port, cir)), RangeLogged(port)));
      ++refused;
    }
  }
  EXPECT_EQ(refused, 6);
}

TEST_F(QosPolicerTest, Policer_RateAndPortOutOfRange_TheRateIsPrintedAndThePortNotLookedAt) {
  int rounds = 0;
  for (const std::string port : {"0", "33", "-1"}) {
    set(static_cast<std::uint32_t>(std::stoi(port)), 63);
    EXPECT_EQ(printed_, "BCM6838X_SetQosUsPolicer(), error: cir[63] is out of range!\r\n");
    EXPECT_THAT(logLines(),
                ElementsAre(CallLogged("port=" + port + ", cir = 63, ebs = 4, cbs = 3")));
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
}

TEST_F(QosPolicerTest, LineRate_OfAPortOutOfRange_IsReportedAllTheSame) {
  // The interface is that of the low 8 bits, the device port has all of them.
  int reported = 0;
  for (const std::uint32_t cir : {0U, 63U, 64U}) {
    EXPECT_THAT(set(257, cir), ElementsAre(RateSent(257, kGigabit))) << cir;
    ++reported;
  }
  EXPECT_EQ(reported, 3);
}

TEST_F(QosPolicerTest, Policer_NthCommandRefused_ReturnsOkAndTheStateFollowsTheCall) {
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= 4; ++nth) {
    for (const bool onwards : {false, true}) {
      EXPECT_THAT(set(1, 64), ElementsAre(PolicerSent(1, 64000), RateSent(1, kGigabit)));
      if (onwards) {
        unit.device().faults().refuseFrom(nth);
      } else {
        unit.device().faults().refuseNth(nth);
      }
      EXPECT_THAT(set(1, 100),
                  ElementsAre(PolicerDeleteSent(1), PolicerSent(1, 100000), RateSent(1, kGigabit)));
      EXPECT_THAT(set(1, 0), ElementsAre(PolicerDeleteSent(1), RateSent(1, kGigabit)));
      unit.device().faults().clear();
      ++rounds;
    }
  }
  EXPECT_EQ(rounds, 8U);
}

// Required: ds-limit-index-from-0
TEST_F(QosPolicerTest, Limit_SendsTheIndexPlusOneAndTheRateInBits) {
  struct Row {
    QosDsRateLimitCfg cfg;
    std::uint32_t port;
    std::uint32_t rate;
  };
  const std::vector<Row> rows = {
      {{0, 100}, 1, 100000},
      {{3, 0}, 4, 0},
      {{0xFFFFFFFF, 4294968}, 0, 704},
      {{1, 1000000}, 2, 1000000000},
  };
  for (const Row& row : rows) {
    forget();
    EXPECT_EQ(BCM6838X_SetQosDsRateLimit(&row.cfg), 0U);
    EXPECT_EQ(commands(),
              std::vector<std::string>{
                  Sent("DS_RATE_LIMIT", 0, WireRecord(8).u32(0, row.port).u32(4, row.rate))});
  }
  EXPECT_EQ(rows.size(), 4U);
}

std::array<std::uint8_t, 64> CountingMap() {
  std::array<std::uint8_t, 64> map = {};
  std::iota(map.begin(), map.end(), std::uint8_t{0x80});
  return map;
}

TEST_F(QosPolicerTest, DscpMap_SendsTheDataPathPortAndTheMap) {
  const std::array<std::uint8_t, 64> map = CountingMap();
  for (const auto& [port, sent] : {std::pair{1U, 2U}, {4U, 5U}, {0x1FFU, 0x100U}, {0U, 1U}}) {
    forget();
    EXPECT_EQ(BCM6838X_StreamSetDscpMap(port, map.data()), 0U);
    EXPECT_EQ(commands(), std::vector<std::string>{
                              Sent("DSCP_MAP", 0, WireRecord(68).u32(0, sent).bytes(4, map))});
  }
}

// Required: limits-succeed
TEST_F(QosPolicerTest, LimitAndMap_Refused_ReturnOk) {
  unit.device().faults().refuseFrom(1);
  const QosDsRateLimitCfg limit = {0, 100};
  EXPECT_EQ(BCM6838X_SetQosDsRateLimit(&limit), 0U);
  EXPECT_EQ(BCM6838X_StreamSetDscpMap(1, CountingMap().data()), 0U);
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(61), RefusalLogged(111)));
}

// Required: limits-succeed
TEST_F(QosPolicerTest, NullPointers_AreLoggedAndChangeNothing) {
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(nullptr), 0U);
  EXPECT_EQ(BCM6838X_SetQosDsRateLimit(nullptr), 0U);
  EXPECT_EQ(BCM6838X_StreamSetDscpMap(1, nullptr), 0U);
  EXPECT_THAT(left(),
              ElementsAre(kInvalid + "BCM6838X_SetQosUsPolicer(<line>), null pointer\r\n",
                          kInvalid + "BCM6838X_SetQosDsRateLimit(<line>), null pointer\r\n",
                          kInvalid + "BCM6838X_StreamSetDscpMap(<line>), null pointer\r\n"));
}

}  // namespace
}  // namespace hal_test
