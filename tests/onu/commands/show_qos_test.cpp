/// @file
/// Tests of what is said of a port's QoS: rules, rates, and the steps of an explanation and a verdict.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Last;
using test::RunLines;
using test::Text;
using test::With;
using testing::EndsWith;
using testing::HasSubstr;

const Words kRules = {"Init", "SetPortAdminState 1 1",
                      "ApplyQosClassification 1 0 1,7,VlanId=200,Ipv4TosDscp=184 8,0,VlanId=100"};

TEST(ShowQos, NothingTold) {
  const std::string nothing =
      "no rules\n"
      "scheduling scheme, as the flows show it: unknown, no rule re-marks\n"
      "policer: none\n"
      "line rate: not told\n"
      "downstream limit: none\n"
      "DSCP map: not told\n";
  EXPECT_EQ(Text({"show qos 1"}), nothing) << "before the start-up";
  EXPECT_THAT(Text({"Init", "show qos 4"}), EndsWith(" (ok)\n" + nothing));
}

TEST(ShowQos, RulesInWords) {
  EXPECT_THAT(
      Text(With(kRules,
                {"AddQosClassificationRule 1 2 6,0,VlanId=100,L4DestPort=25", "show qos 1"})),
      HasSubstr("precedence  class  priority  flow  action  does                             keys\n"
                "1           5      14        0     0       set the outer pcp to 7, queue 7  "
                "outerVid=200 dscp=184 ingressPort=2 vlanNum=1\n"
                "6           7      9         0     none    drop                             "
                "l4DstPort=25 outerVid=100 ingressPort=2 vlanNum=1\n"
                "8           6      7         0     1       set the outer pcp to 0, queue 0  "
                "outerVid=100 ingressPort=2 vlanNum=1\n"
                "scheduling scheme, as the flows show it: 0, the strict queues 0 to 7\n"));
}

TEST(ShowQos, OtherPort_HasItsOwnRules) {
  EXPECT_EQ(Last(With(kRules, {"show qos 2"}))["rules"], Json::array());
  EXPECT_EQ(Last(With(kRules, {"show qos 1"}))["rules"].size(), 2U);
}

TEST(ShowQos, RuleThatTheChipLost_IsSaid) {
  const Json rules =
      Last(With(kRules, {"Ioctl FLOW_DEL dir=us icIndex=5 flowIndex=0", "show qos 1"}))["rules"];
  ASSERT_EQ(rules.size(), 2U);
  EXPECT_EQ(rules[0]["steps"], Json::array({"nothing: the chip has no such flow"}));
  EXPECT_EQ(rules[0]["queue"], nullptr);
  EXPECT_EQ(rules[0]["keys"], "-");
  EXPECT_EQ(rules[0]["priority"], 14);
  EXPECT_EQ(rules[1]["steps"], Json::array({"set the outer pcp to 0", "queue 0"}));
}

TEST(ShowQos, RuleWhoseUndoingFailed_ShowsWhatIsLeft) {
  // The action is made, class and delete of the action are refused.
  const Json rules = Last({"Init", "fault from 2", "AddQosClassificationRule 1 0 1,7,VlanId=200",
                           "fault clear", "show qos 1"})["rules"];
  ASSERT_EQ(rules.size(), 1U);
  EXPECT_EQ(rules[0]["icIndex"], nullptr);
  EXPECT_EQ(rules[0]["flowIndex"], nullptr);
  EXPECT_EQ(rules[0]["vlanActionIndex"], 0);
}

TEST(ShowQos, Scheme_0_IsThatOfTheFlows) {
  EXPECT_EQ(Last(With(kRules, {"show qos 1"}))["scheme"], 0);
}

TEST(ShowQos, Scheme_1_IsThatOfTheFlows) {
  const Words lines = With(kRules, {"SetQosSchedule 1", "show qos 1"});
  EXPECT_THAT(Text(lines), HasSubstr("it: 1, the weighted queues 8 to 15\n"));
}

TEST(ShowQos, Scheme_RuleAddedAfterTheChange_IsMixed) {
  const Words lines =
      With(kRules, {"SetQosSchedule 1", "AddQosClassificationRule 1 0 4,3,VlanId=7", "show qos 1"});
  EXPECT_EQ(Last(lines)["scheme"], "mixed");
}

TEST(ShowQos, Scheme_FlowInNoBank_ShowsNone) {
  const Words lines = {"Init", "SetQosSchedule 1", "AddQosClassificationRule 1 0 4,3,VlanId=7",
                       "SetQosSchedule 0", "show qos 1"};
  EXPECT_EQ(Last(lines)["scheme"], nullptr);
  EXPECT_EQ(Last(lines)["rules"][0]["queue"], 4294967291) << "3 less 8, in 32 bits";
  EXPECT_THAT(Text(lines),
              HasSubstr("it: unknown, no flow is in the queue of its priority in a bank\n"));
}

TEST(ShowQos, Scheme_RuleThatDrops_ShowsNone) {
  EXPECT_EQ(Last({"Init", "AddQosClassificationRule 1 2 6,0,VlanId=100", "show qos 1"})["scheme"],
            nullptr);
}

TEST(ShowQos, RatesAndMap) {
  const Words lines = {"Init",
                       "SetPortAdminState 1 1",
                       "SetQosUsPolicer 1 64 0 0",
                       "SetQosDsRateLimit 0 1000",
                       "StreamSetDscpMap 1 46=5 8=1 9=1",
                       "AddUsTag 1 500 3",
                       "send uni1 udp length 1000",
                       "show qos 1"};
  EXPECT_THAT(Text(lines),
              EndsWith("policer: 64000 bit/s, burst 501536 octets, 500536 octets left\n"
                       "line rate: 1000000000 bit/s\n"
                       "downstream limit: 1000000 bit/s\n"
                       "DSCP map: 0-7=0 8-9=1 10-45=0 46=5 47-63=0\n"));
  const Json shown = Last(lines);
  EXPECT_EQ(shown["policer"], Json({{"rate", 64000}, {"burst", 501536}, {"tokensLeft", 500536}}));
  EXPECT_EQ(shown["lineRate"], 1000000000);
  EXPECT_EQ(shown["downstreamLimit"], 1000000);
  EXPECT_EQ(shown["dscpMap"].size(), 64U);
  EXPECT_EQ(shown["dscpMap"][46], 5);
}

TEST(ShowQos, PortThatTheUnitDoesNotHave_IsRefused) {
  EXPECT_EQ(RunLines({"show qos 0"}).errors,
            "test: show qos: expected a UNI port from 1 to 4, got 0\n");
  EXPECT_EQ(RunLines({"show qos 5"}).status, ExitStatus::WrongUse);
}

TEST(ExplainQos, Steps_NamePolicerRemarkAndQueue) {
  const std::string rule = Text(With(kRules, {"explain uni1 udp vlan 200 pcp 1 dscp 46"}));
  EXPECT_THAT(rule, HasSubstr("\npolicer: none\nVLAN action 0: "));
  EXPECT_THAT(rule, HasSubstr("\nre-mark: pcp 1 to 7, dscp 46 stays\nqueue: 7\nbefore: "));
  const Words policed = {"Init", "SetPortAdminState 1 1", "SetQosUsPolicer 1 64 0 0",
                         "AddUsTag 1 500 3"};
  EXPECT_THAT(Text(With(policed, {"explain uni1 udp length 1000"})),
              HasSubstr("\npolicer of uni1: passed, 500536 octets left\n"));
  EXPECT_THAT(Text(With(policed, {"Ioctl POLICER_DEL word0=1 port=1", "explain uni1 udp"})),
              HasSubstr("\npolicer of uni1: the port has none, passed\n"));
  EXPECT_THAT(
      Text(With(policed, {"Ioctl POLICER_ADD rate=64000 burst=59 port=1", "explain uni1 udp"})),
      HasSubstr("\npolicer of uni1: policed, 59 octets left\n"));
  EXPECT_THAT(Text({"Init", "SetPortAdminState 1 1", "explain uni1 udp"}),
              HasSubstr("\npolicer: none\nVLAN action: none\nre-mark: none\nqueue: none\n"));
}

TEST(VerdictQos, Members_NamePolicerAndRemark) {
  const Json rule = Last(With(kRules, {"send uni1 arp vlan 100 pcp 5"}))["frames"][0];
  EXPECT_EQ(rule["policer"], nullptr);
  EXPECT_EQ(rule["remark"], Json({{"pcpFrom", 5}, {"pcpTo", 0}, {"dscp", nullptr}}));
  EXPECT_EQ(rule["queue"], 0);
  const Words policed = {"Init", "SetPortAdminState 1 1", "AddUsTag 1 500 3",
                         "Ioctl POLICER_ADD rate=64000 burst=100 port=1"};
  const auto policer = [&](const Words& lines) { return Last(lines)["frames"][0]["policer"]; };
  EXPECT_EQ(policer(With(policed, {"send uni1 udp"})), nullptr) << "the flow names none";
  const Words named = {"Init",
                       "SetPortAdminState 1 1",
                       "SetQosUsPolicer 1 64 0 0",
                       "AddUsTag 1 500 3",
                       "Ioctl POLICER_ADD rate=64000 burst=100 port=1",
                       "send uni1 udp"};
  EXPECT_EQ(policer(named),
            Json({{"port", "uni1"}, {"exists", true}, {"passed", true}, {"tokensLeft", 40}}));
  EXPECT_EQ(policer(With(named, {"send uni1 udp"})),
            Json({{"port", "uni1"}, {"exists", true}, {"passed", false}, {"tokensLeft", 40}}));
}

}  // namespace
}  // namespace onu
