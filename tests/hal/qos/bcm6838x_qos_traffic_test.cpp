/// @file
/// What classification rules do to frames: for each field a frame that meets the condition and one
/// that just does not, re-marking, access control, precedence, and the queue under each scheme.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <bcm6838x_vlan_mode.h>
#include <hal_bcm6838x.h>

#include "base/text.h"
#include "datapath/data_path.h"
#include "frame/words.h"
#include "qos_rules.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using virtual_onu::Bytes;
using virtual_onu::Outcome;
using virtual_onu::PortId;
using virtual_onu::Verdict;

/// The frame of words separated by blanks.
Bytes Frame(const std::string& words) {
  std::istringstream text(words);
  const std::vector<std::string> list(std::istream_iterator<std::string>(text), {});
  const auto frame = virtual_onu::BuildFrame(list);
  EXPECT_TRUE(std::holds_alternative<Bytes>(frame)) << words;
  const Bytes* bytes = std::get_if<Bytes>(&frame);
  return bytes == nullptr ? Bytes() : *bytes;
}

/// A value with these bytes at a place.
RuleValue ValueAt(std::size_t at, const Bytes& bytes) {
  RuleValue value = {};
  std::ranges::copy(bytes, value.begin() + static_cast<std::ptrdiff_t>(at));
  return value;
}

RuleValue Ipv4(const std::string& address) {
  return ValueAt(2, virtual_onu::ParseIp(address).value());
}

RuleValue Ipv6(const std::string& address) {
  return ValueAt(0, virtual_onu::ParseIp(address).value());
}

class QosTrafficTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_Init(), 0U);
    for (std::uint32_t port = 1; port <= 4; ++port) {
      ASSERT_EQ(BCM6838X_SetPortAdminState(port, 1), 0);
    }
  }

  Verdict offer(const std::string& words, std::uint32_t uni = 1) {
    return unit.dataPath().offer(PortId::Uni(uni), Frame(words));
  }

  /// The queue of a forwarded frame; nothing when no flow took it.
  std::optional<std::uint32_t> queueOf(const std::string& words, std::uint32_t uni = 1) {
    const Verdict verdict = offer(words, uni);
    EXPECT_TRUE(verdict.outcome == Outcome::FlowForward || verdict.outcome == Outcome::NoFlow)
        << words;
    return verdict.queue;
  }

  static void apply(std::uint32_t port, std::initializer_list<QosClassRule> rules) {
    const QosClassRuleSet set = SetOf(port, rules);
    ASSERT_EQ(BCM6838X_ApplyQosClassification(&set), 0U);
  }
};

struct TrafficRow {
  std::uint32_t field;
  RuleValue value;
  std::vector<std::string> meets;
  std::vector<std::string> misses;
};

const std::string kUdp = "udp vlan 100 pcp 1 ";
const std::string kUdp6 = kUdp + "ip6 ";
const std::string kTcp = "tcp vlan 100 ";

std::vector<TrafficRow> LinkRows() {
  return {
      {BCM6838X_QOS_FIELD_DESTINATION_MAC,
       ValueAt(0, {2, 0, 0, 0, 0, 9}),
       {kUdp + "dst 02:00:00:00:00:09", kUdp6 + "dst 02:00:00:00:00:09"},
       {kUdp + "dst 02:00:00:00:00:08", kUdp + "dst 06:00:00:00:00:09",
        kUdp + "src 02:00:00:00:00:09 dst 02:00:00:00:01:09"}},
      {BCM6838X_QOS_FIELD_SOURCE_MAC,
       ValueAt(0, {2, 0, 0, 0, 0, 9}),
       {kUdp + "src 02:00:00:00:00:09", kUdp6 + "src 02:00:00:00:00:09"},
       {kUdp + "src 02:00:00:00:00:0b", kUdp + "src 06:00:00:00:00:09",
        kUdp + "dst 02:00:00:00:00:09"}},
      {BCM6838X_QOS_FIELD_PRIORITY,
       NumberValue(5),
       {"udp vlan 100 pcp 5", "udp vlan 100 pcp 5 ip6"},
       {"udp vlan 100 pcp 4", "udp vlan 100 pcp 1", "udp vlan 5 pcp 1"}},
      {BCM6838X_QOS_FIELD_VLAN_ID,
       NumberValue(4094),
       {"udp vlan 4094", "udp vlan 4094 ip6"},
       {"udp vlan 4095", "udp vlan 2046", "udp vlan 4094 vlan 4094", "udp"}},
      {BCM6838X_QOS_FIELD_ETHERTYPE,
       NumberValue(0x0806),
       {"arp vlan 100"},
       {kUdp, "vlan 100 ethertype 0807", "vlan 100 ethertype 8806", "pppoe vlan 100"}},
      {BCM6838X_QOS_FIELD_ETHERTYPE,
       NumberValue(0x86DD),
       {kUdp6},
       {kUdp, "vlan 100 ethertype 86dc"}},
  };
}

std::vector<TrafficRow> AddressRows() {
  return {
      {BCM6838X_QOS_FIELD_DESTINATION_IP,
       Ipv4("10.1.2.3"),
       {kUdp + "dip 10.1.2.3"},
       {kUdp + "dip 10.1.2.2", kUdp + "dip 138.1.2.3", kUdp + "sip 10.1.2.3",
        kUdp + "dip a01:203::", "arp vlan 100 dip 10.1.2.3"}},
      {BCM6838X_QOS_FIELD_SOURCE_IP,
       Ipv4("10.1.2.3"),
       {kUdp + "sip 10.1.2.3"},
       {kUdp + "sip 10.1.2.2", kUdp + "sip 138.1.2.3", kUdp + "dip 10.1.2.3",
        kUdp + "sip a01:203::", "arp vlan 100 sip 10.1.2.3"}},
      {BCM6838X_QOS_FIELD_DESTINATION_IPV6,
       Ipv6("2001:db8::3"),
       {kUdp + "dip 2001:db8::3"},
       {kUdp + "dip 2001:db8::2", kUdp + "dip a001:db8::3", kUdp + "dip 2001:db8:0:1::3",
        kUdp + "sip 2001:db8::3", kUdp + "dip 32.1.13.184"}},
      {BCM6838X_QOS_FIELD_SOURCE_IPV6,
       Ipv6("2001:db8::3"),
       {kUdp + "sip 2001:db8::3"},
       {kUdp + "sip 2001:db8::2", kUdp + "sip a001:db8::3", kUdp + "sip 2001:db8:0:1::3",
        kUdp + "dip 2001:db8::3", kUdp + "sip 32.1.13.184"}},
  };
}

std::vector<TrafficRow> IpRows() {
  return {
      {BCM6838X_QOS_FIELD_IP_PROTOCOL,
       NumberValue(17),
       {kUdp, kUdp6},
       {kTcp, kTcp + "ip6", "vlan 100 ip proto 16", "vlan 100 ip6 proto 16", "arp vlan 100"}},
      // The whole byte is compared: DSCP 46 is 0xb8.
      {BCM6838X_QOS_FIELD_DSCP,
       NumberValue(0xB8),
       {kUdp + "dscp 46", kUdp6 + "dscp 46"},
       {kUdp + "dscp 47", kUdp6 + "dscp 47", kUdp + "dscp 14", kUdp, kUdp6, "arp vlan 100"}},
      {BCM6838X_QOS_FIELD_L4_SOURCE,
       NumberValue(5060),
       {kUdp + "sport 5060", kUdp6 + "sport 5060", kTcp + "sport 5060", kTcp + "ip6 sport 5060"},
       {kUdp + "sport 5061", kUdp6 + "sport 5061", kTcp + "sport 4", kUdp + "dport 5060",
        kUdp6 + "dport 5060", "icmp vlan 100"}},
      {BCM6838X_QOS_FIELD_L4_DESTINATION,
       NumberValue(5060),
       {kUdp + "dport 5060", kUdp6 + "dport 5060", kTcp + "dport 5060", kTcp + "ip6 dport 5060"},
       {kUdp + "dport 5061", kUdp6 + "dport 5061", kTcp + "dport 4", kUdp + "sport 5060",
        kUdp6 + "sport 5060", "icmp vlan 100"}},
  };
}

/// How many frames met their rows, and how many just did not.
struct Seen {
  std::size_t met = 0;
  std::size_t missed = 0;
};

class QosFieldTest : public QosTrafficTest {
 protected:
  Seen expectRows(const std::vector<TrafficRow>& rows) {
    Seen seen;
    for (const TrafficRow& row : rows) {
      apply(1, {});
      for (const std::string& words : row.meets) {
        EXPECT_EQ(queueOf(words), std::nullopt) << words;
      }
      apply(1, {With(EmptyRule(1, 1, kIpv4Remark, 6), row.field, row.value)});
      for (const std::string& words : row.meets) {
        EXPECT_EQ(queueOf(words), 6U) << words;
        EXPECT_EQ(queueOf(words, 2), std::nullopt) << "another port: " << words;
        ++seen.met;
      }
      for (const std::string& words : row.misses) {
        EXPECT_EQ(queueOf(words), std::nullopt) << words;
        ++seen.missed;
      }
    }
    return seen;
  }
};

TEST_F(QosFieldTest, LinkFields_TakeTheFramesThatMeetThemAndNoOther) {
  const Seen seen = expectRows(LinkRows());
  EXPECT_EQ(seen.met, 10U);
  EXPECT_EQ(seen.missed, 19U);
}

TEST_F(QosFieldTest, Addresses_TakeTheFramesThatMeetThemAndNoOther) {
  const Seen seen = expectRows(AddressRows());
  EXPECT_EQ(seen.met, 4U);
  EXPECT_EQ(seen.missed, 20U);
}

TEST_F(QosFieldTest, ProtocolPortsAndDscp_TakeTheFramesOfBothIpVersions) {
  const Seen seen = expectRows(IpRows());
  EXPECT_EQ(seen.met, 12U);
  EXPECT_EQ(seen.missed, 23U);
}

TEST_F(QosFieldTest, FieldsWithoutAKey_DoNotNarrowTheRule) {
  int fields = 0;
  for (const std::uint32_t field : {9U, 14U, 15U, 16U, 17U, 18U, 19U, 20U, 21U, 22U, 0xFFFFFFFFU}) {
    QosClassRule rule = With(EmptyRule(1, 1, kIpv4Remark, 6), field, CountingValue());
    rule = With(rule, BCM6838X_QOS_FIELD_VLAN_ID, NumberValue(100));
    apply(1, {rule});
    EXPECT_EQ(queueOf(kUdp), 6U) << field;
    EXPECT_EQ(queueOf(kUdp6), 6U) << field;
    EXPECT_EQ(queueOf("udp vlan 101"), std::nullopt) << field;
    ++fields;
  }
  EXPECT_EQ(fields, 11);
}

TEST_F(QosFieldTest, RuleTypes_DoNotTellTheIpVersion) {
  int types = 0;
  for (const std::uint32_t type : {0U, 1U, 3U}) {
    apply(1, {With(EmptyRule(1, 1, type, 6), BCM6838X_QOS_FIELD_DSCP, NumberValue(0xB8))});
    EXPECT_EQ(queueOf(kUdp + "dscp 46"), 6U) << type;
    EXPECT_EQ(queueOf(kUdp6 + "dscp 46"), 6U) << type;
    ++types;
  }
  EXPECT_EQ(types, 3);
}

TEST_F(QosTrafficTest, SeveralConditions_MustAllBeMet) {
  QosClassRule rule = With(RemarkRule(1, 1), BCM6838X_QOS_FIELD_DSCP, NumberValue(0xB8));
  rule = With(rule, BCM6838X_QOS_FIELD_L4_DESTINATION, NumberValue(5060));
  apply(1, {rule});
  EXPECT_EQ(queueOf("udp vlan 100 dscp 46 dport 5060"), 7U);
  EXPECT_EQ(queueOf("udp vlan 101 dscp 46 dport 5060"), std::nullopt);
  EXPECT_EQ(queueOf("udp vlan 100 dscp 45 dport 5060"), std::nullopt);
  EXPECT_EQ(queueOf("udp vlan 100 dscp 46 dport 5061"), std::nullopt);
}

// Required: other-operators-skipped, rules-take-single-tagged-frames
TEST_F(QosTrafficTest, OperatorThatIsSkipped_TakesEverySingleTaggedFrameOfThePort) {
  apply(1, {With(EmptyRule(1, 1, kIpv4Remark, 3), BCM6838X_QOS_FIELD_VLAN_ID, NumberValue(100),
                 BCM6838X_QOS_OPERATOR_NOT_EQUAL)});
  EXPECT_EQ(queueOf("udp vlan 100"), 3U);
  EXPECT_EQ(queueOf("arp vlan 7"), 3U);
  EXPECT_EQ(queueOf("udp"), std::nullopt);
  EXPECT_EQ(queueOf("udp vlan 100 vlan 100"), std::nullopt);
  EXPECT_EQ(queueOf("udp vlan 100", 2), std::nullopt);
}

TEST_F(QosTrafficTest, RemarkRule_SetsThePriorityOfTheTagAndNothingElse) {
  apply(1, {With(EmptyRule(1, 1, kIpv4Remark, 6), BCM6838X_QOS_FIELD_VLAN_ID, NumberValue(100))});
  const Verdict verdict = offer("udp vlan 100 pcp 1 dport 5060");
  EXPECT_EQ(verdict.frame, Frame("udp vlan 100 pcp 6 dport 5060"));
  EXPECT_EQ(verdict.egress(), std::vector<PortId>{PortId::Wan()});
  EXPECT_EQ(verdict.queue, 6U);
}

TEST_F(QosTrafficTest, AclRule_DropsTheFrame) {
  apply(1, {AclRule(1, 1)});
  const Verdict verdict = offer("udp vlan 100");
  EXPECT_EQ(verdict.outcome, Outcome::FlowAccessControl);
  EXPECT_TRUE(verdict.egress().empty());
  EXPECT_EQ(offer("udp vlan 101").outcome, Outcome::NoFlow);
  apply(1, {RemarkRule(1, 1)});
  EXPECT_EQ(offer("udp vlan 100").outcome, Outcome::FlowForward);
}

TEST_F(QosTrafficTest, Precedence_DecidesBetweenRulesThatBothTakeTheFrame) {
  QosClassRule ports =
      With(EmptyRule(1, 2, kIpv4Remark, 5), BCM6838X_QOS_FIELD_L4_DESTINATION, NumberValue(5060));
  QosClassRule vlan =
      With(EmptyRule(1, 7, kIpv4Remark, 1), BCM6838X_QOS_FIELD_VLAN_ID, NumberValue(100));
  apply(1, {vlan, ports});
  EXPECT_EQ(queueOf("udp vlan 100 dport 5060"), 5U);
  EXPECT_EQ(queueOf("udp vlan 100 dport 5061"), 1U);
  ports.precedence = 8;
  apply(1, {vlan, ports});
  EXPECT_EQ(queueOf("udp vlan 100 dport 5060"), 1U);
  EXPECT_EQ(queueOf("udp vlan 101 dport 5060"), 5U);
}

// Required: rule-priorities-follow-ports
TEST_F(QosTrafficTest, Rules_ComeBeforeTheUnitsOwnClasses) {
  // The unit's own address is trapped by a class of priority 3; the lowest rule has priority 7.
  const std::string toTheUnit = "udp vlan 100 dst 02:00:5e:10:00:01";
  EXPECT_EQ(offer(toTheUnit).outcome, Outcome::FlowTrap);
  apply(1, {RemarkRule(1, 8)});
  EXPECT_EQ(offer(toTheUnit).outcome, Outcome::FlowForward);
}

TEST_F(QosTrafficTest, Policer_PassesItsBurstAndThenItsRate) {
  const QosUsPolicerCfg cfg = {1, 64, 0, 0};
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  // Tag mode builds a flow after the policer was set, so that it names the policer.
  EXPECT_GE(BCM6838X_AddUsTag(1, 100, 0), 0);
  const std::string words = "udp length 1000";
  for (int i = 0; i < 501; ++i) {
    ASSERT_EQ(offer(words).outcome, Outcome::FlowForward) << i;
  }
  EXPECT_EQ(offer(words).outcome, Outcome::Policed);
  unit.clock().advance(57);  // 536 octets were left, and 57 ms give 456
  EXPECT_EQ(offer(words).outcome, Outcome::Policed);
  unit.clock().advance(1);
  EXPECT_EQ(offer(words).outcome, Outcome::FlowForward);
}

TEST_F(QosTrafficTest, Policer_DoesNotHoldClassifiedFramesBack) {
  const QosUsPolicerCfg cfg = {1, 64, 0, 0};
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  apply(1, {RemarkRule(1, 1)});
  for (int i = 0; i < 600; ++i) {
    ASSERT_EQ(queueOf("udp vlan 100 length 1000"), 7U) << i;
  }
  EXPECT_EQ(offer("udp vlan 100").policer, std::nullopt);
}

// Required: policer-made-anew
TEST_F(QosTrafficTest, Policer_SetAgain_BeginsFullAndRemoved_PolicesNothing) {
  QosUsPolicerCfg cfg = {1, 64, 0, 0};
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_GE(BCM6838X_AddUsTag(1, 100, 0), 0);
  const auto burst = [this] {
    int passed = 0;
    while (passed < 1000 && offer("udp length 1000").outcome == Outcome::FlowForward) {
      ++passed;
    }
    return passed;
  };
  EXPECT_EQ(burst(), 501);
  EXPECT_EQ(burst(), 0);
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_EQ(burst(), 501);
  cfg.cir = 63;
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_EQ(burst(), 0) << "a rate out of range leaves the policer as it is";
  cfg.cir = 0;
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_EQ(burst(), 1000);
}

TEST_F(QosTrafficTest, DownstreamLimit_HoldsTheFramesOfItsPortBack) {
  const QosDsRateLimitCfg cfg = {0, 64};
  EXPECT_EQ(BCM6838X_SetQosDsRateLimit(&cfg), 0U);
  EXPECT_GE(BCM6838X_AddUsTag(1, 100, 0), 0);
  const Bytes frame = Frame("udp vlan 100 length 1000");
  const PortId limited = PortId::Uni(1);
  const auto reaches = [&] {
    const std::vector<PortId> egress = unit.dataPath().offer(PortId::Wan(), frame).egress();
    EXPECT_THAT(egress, testing::Contains(PortId::Uni(2)));
    return std::ranges::count(egress, limited) == 1;
  };
  for (int i = 0; i < 501; ++i) {
    ASSERT_TRUE(reaches()) << i;
  }
  EXPECT_FALSE(reaches());
  unit.clock().advance(58);
  EXPECT_TRUE(reaches());
}

TEST_F(QosTrafficTest, Schedule_MovesTheFramesBetweenTheBanks) {
  apply(1, {RemarkRule(1, 1)});
  apply(2, {RemarkRule(2, 3)});
  EXPECT_EQ(queueOf("udp vlan 100"), 7U);
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_EQ(queueOf("udp vlan 100"), 15U);
  EXPECT_EQ(queueOf("udp vlan 100", 2), 13U);
  EXPECT_EQ(offer("udp vlan 100 pcp 0").frame, Frame("udp vlan 100 pcp 7"));
  EXPECT_EQ(BCM6838X_SetQosSchedule(0), 0U);
  EXPECT_EQ(queueOf("udp vlan 100"), 7U);
  EXPECT_EQ(queueOf("udp vlan 100", 2), 5U);
}

}  // namespace
}  // namespace hal_test
