/// @file
/// Each key field: a frame that equals it, one that just does not, one that has no such field.
#include <algorithm>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "chip_builder.h"
#include "datapath/data_path.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kUniPorts = 4;

using FlowEdit = std::function<void(IngressFlowRule&)>;

Outcome OutcomeUnder(std::uint32_t fieldMask, const FlowEdit& edit, const std::string& frame,
                     PortId port = PortId::Uni(1)) {
  const std::uint32_t dir = port.isWan() ? kDown : kUp;
  ChipBuilder chip;
  chip.addClass(dir, 0, fieldMask, 1);
  edit(chip.addFlow(dir, 0, 0));
  return DataPath(chip.tables, chip.ports(kUniPorts)).offer(port, Hex(frame)).outcome;
}

void Set(std::uint8_t (&field)[6], std::array<std::uint8_t, 6> mac) {
  std::copy(mac.begin(), mac.end(), field);
}

void Set(std::uint8_t (&field)[16], const std::string& address) {
  const Bytes bytes = ParseIp(address).value();
  std::copy(bytes.begin(), bytes.end(), field);
}

struct KeyCase {
  std::uint32_t bit;
  std::string frame;
  FlowEdit equal;
  FlowEdit unequal;  ///< applied after `equal`
};

const std::vector<KeyCase>& KeyCases() {
  static const std::vector<KeyCase> cases = {
      {BRMGR_KEY_SOURCE_IP, kUdp4, [](auto& flow) { Set(flow.srcIp, "192.0.2.1"); },
       [](auto& flow) { flow.srcIp[3] = 2; }},
      {BRMGR_KEY_SOURCE_IP, kTcp6,
       [](auto& flow) {
         flow.srcIpVersion = 1;
         Set(flow.srcIp, "2001:db8::1");
       },
       [](auto& flow) { flow.srcIp[15] = 2; }},
      {BRMGR_KEY_DESTINATION_IP, kUdp4, [](auto& flow) { Set(flow.dstIp, "192.0.2.2"); },
       [](auto& flow) { flow.dstIp[0] = 193; }},
      {BRMGR_KEY_DESTINATION_IP, kTcp6,
       [](auto& flow) {
         flow.dstIpVersion = 1;
         Set(flow.dstIp, "2001:db8::2");
       },
       [](auto& flow) { flow.dstIp[4] = 1; }},
      {BRMGR_KEY_L4_SOURCE, kUdp4, [](auto& flow) { flow.l4SrcPort = 68; },
       [](auto& flow) { flow.l4SrcPort = 67; }},
      {BRMGR_KEY_L4_SOURCE, kTcp6, [](auto& flow) { flow.l4SrcPort = 1024; },
       [](auto& flow) { flow.l4SrcPort = 1025; }},
      {BRMGR_KEY_L4_DESTINATION, kUdp4, [](auto& flow) { flow.l4DstPort = 67; },
       [](auto& flow) { flow.l4DstPort = 68; }},
      {BRMGR_KEY_OUTER_VID, kDoubleTagged, [](auto& flow) { flow.outerVid = 200; },
       [](auto& flow) { flow.outerVid = 100; }},
      {BRMGR_KEY_DESTINATION_MAC, kUntagged,
       [](auto& flow) {
         Set(flow.dstMac, {2, 0, 0, 0, 0, 2});
       },
       [](auto& flow) { flow.dstMac[5] = 1; }},
      {BRMGR_KEY_SOURCE_MAC, kUntagged,
       [](auto& flow) {
         Set(flow.srcMac, {2, 0, 0, 0, 0, 1});
       },
       [](auto& flow) { flow.srcMac[0] = 0; }},
      {BRMGR_KEY_ETHERTYPE, kDoubleTagged, [](auto& flow) { flow.etherType = 0x88B5; },
       [](auto& flow) { flow.etherType = 0x88A8; }},
      {BRMGR_KEY_IP_PROTOCOL, kUdp4, [](auto& flow) { flow.ipProtocol = 17; },
       [](auto& flow) { flow.ipProtocol = 6; }},
      {BRMGR_KEY_IP_PROTOCOL, kMldReport, [](auto& flow) { flow.ipProtocol = 58; },
       [](auto& flow) { flow.ipProtocol = 0; }},
      {BRMGR_KEY_DSCP, kUdp4, [](auto& flow) { flow.dscp = 0xB8; },
       [](auto& flow) { flow.dscp = 0xB8 >> 2U; }},
      {BRMGR_KEY_DSCP, kTcp6, [](auto& flow) { flow.dscp = 0xB8; },
       [](auto& flow) { flow.dscp = 0xB9; }},
      {BRMGR_KEY_INGRESS_PORT, kUntagged, [](auto& flow) { flow.ingressPort = 2; },
       [](auto& flow) { flow.ingressPort = 1; }},
      {BRMGR_KEY_OUTER_PBIT, kDoubleTagged, [](auto& flow) { flow.outerPbit = 3; },
       [](auto& flow) { flow.outerPbit = 5; }},
      {BRMGR_KEY_VLAN_NUM, kDoubleTagged, [](auto& flow) { flow.vlanNum = 2; },
       [](auto& flow) { flow.vlanNum = 1; }},
  };
  return cases;
}

TEST(Keys, EqualFrame_MatchesAndUnequalFrameDoesNot) {
  std::uint32_t covered = 0;
  for (const KeyCase& test : KeyCases()) {
    SCOPED_TRACE(HexNumber(test.bit) + " " + test.frame);
    EXPECT_EQ(OutcomeUnder(test.bit, test.equal, test.frame), Outcome::FlowForward);
    const FlowEdit unequal = [&test](IngressFlowRule& flow) {
      test.equal(flow);
      test.unequal(flow);
    };
    EXPECT_EQ(OutcomeUnder(test.bit, unequal, test.frame), Outcome::NoFlow);
    covered |= test.bit;
  }
  std::uint32_t all = 0;
#define ADD_KEY(bit, name, field) all |= (bit);
  BRMGR_KEY_LIST(ADD_KEY)
#undef ADD_KEY
  EXPECT_EQ(covered, all);
}

TEST(Keys, KeyThatTheMaskDoesNotName_IsNotCompared) {
  const FlowEdit edit = [](IngressFlowRule& flow) {
    flow.outerVid = 200;
    flow.vlanNum = 7;
    flow.ingressPort = 9;
  };
  EXPECT_EQ(OutcomeUnder(BRMGR_KEY_OUTER_VID, edit, kDoubleTagged), Outcome::FlowForward);
}

TEST(Keys, SeveralKeys_MustAllBeEqual) {
  constexpr std::uint32_t kMask = BRMGR_KEY_INGRESS_PORT | BRMGR_KEY_OUTER_VID | BRMGR_KEY_VLAN_NUM;
  const auto edit = [](std::uint32_t port, std::uint16_t vid, std::uint8_t tags) {
    return [=](IngressFlowRule& flow) {
      flow.ingressPort = port;
      flow.outerVid = vid;
      flow.vlanNum = tags;
    };
  };
  EXPECT_EQ(OutcomeUnder(kMask, edit(2, 100, 1), kTagged), Outcome::FlowForward);
  EXPECT_EQ(OutcomeUnder(kMask, edit(3, 100, 1), kTagged), Outcome::NoFlow);
  EXPECT_EQ(OutcomeUnder(kMask, edit(2, 101, 1), kTagged), Outcome::NoFlow);
  EXPECT_EQ(OutcomeUnder(kMask, edit(2, 100, 2), kTagged), Outcome::NoFlow);
}

// The flow's value is 0 in each case, as in a record in which nobody set the key.
TEST(Keys, FieldThatTheFrameDoesNotHave_EqualsNothing) {
  const FlowEdit nothing = [](IngressFlowRule&) {};
  const std::vector<std::pair<std::uint32_t, std::string>> absent = {
      {BRMGR_KEY_OUTER_VID, kUntagged},     {BRMGR_KEY_OUTER_PBIT, kUntagged},
      {BRMGR_KEY_SOURCE_IP, kArpRequest},   {BRMGR_KEY_DESTINATION_IP, kUntagged},
      {BRMGR_KEY_IP_PROTOCOL, kUntagged},   {BRMGR_KEY_DSCP, kUntagged},
      {BRMGR_KEY_L4_SOURCE, kIgmpReport},   {BRMGR_KEY_L4_DESTINATION, kUntagged},
      {BRMGR_KEY_L4_SOURCE, kUdp4Fragment},
  };
  for (const auto& [bit, frame] : absent) {
    EXPECT_EQ(OutcomeUnder(bit, nothing, frame), Outcome::NoFlow) << HexNumber(bit) << frame;
  }
}

TEST(Keys, VlanNum_UntaggedFrame_EqualsZero) {
  EXPECT_EQ(OutcomeUnder(
                BRMGR_KEY_VLAN_NUM, [](auto&) {}, kUntagged),
            Outcome::FlowForward);
}

TEST(Keys, VlanNum_PriorityTaggedFrame_CountsItsTag) {
  const std::string frame = kMacs + "8100 e000 " + kPlain;
  EXPECT_EQ(OutcomeUnder(
                BRMGR_KEY_VLAN_NUM, [](auto& flow) { flow.vlanNum = 1; }, frame),
            Outcome::FlowForward);
  EXPECT_EQ(OutcomeUnder(
                BRMGR_KEY_OUTER_VID, [](auto&) {}, frame),
            Outcome::FlowForward);
}

TEST(Keys, EtherType_LengthField_IsNone) {
  const FlowEdit length = [](IngressFlowRule& flow) { flow.etherType = 0x0026; };
  EXPECT_EQ(OutcomeUnder(BRMGR_KEY_ETHERTYPE, length, kBpdu), Outcome::NoFlow);
}

TEST(Keys, Address_OfTheOtherVersion_DoesNotMatch) {
  const auto edit = [](std::uint32_t version) {
    return [version](IngressFlowRule& flow) {
      flow.srcIpVersion = version;
      Set(flow.srcIp, "192.0.2.1");
    };
  };
  EXPECT_EQ(OutcomeUnder(BRMGR_KEY_SOURCE_IP, edit(0), kUdp4), Outcome::FlowForward);
  EXPECT_EQ(OutcomeUnder(BRMGR_KEY_SOURCE_IP, edit(1), kUdp4), Outcome::NoFlow);
  EXPECT_EQ(OutcomeUnder(BRMGR_KEY_SOURCE_IP, edit(2), kUdp4), Outcome::NoFlow);
}

TEST(Keys, Address_Ipv4_ComparesFourBytesOnly) {
  const FlowEdit edit = [](IngressFlowRule& flow) {
    Set(flow.srcIp, "192.0.2.1");
    flow.srcIp[4] = 0xFF;
  };
  EXPECT_EQ(OutcomeUnder(BRMGR_KEY_SOURCE_IP, edit, kUdp4), Outcome::FlowForward);
}

TEST(Keys, IngressPort_IsOneAboveTheUniNumberAndZeroAtTheWan) {
  const auto port = [](std::uint32_t number) {
    return [number](IngressFlowRule& flow) { flow.ingressPort = number; };
  };
  constexpr std::uint32_t kMask = BRMGR_KEY_INGRESS_PORT;
  EXPECT_EQ(OutcomeUnder(kMask, port(5), kUntagged, PortId::Uni(4)), Outcome::FlowForward);
  EXPECT_EQ(OutcomeUnder(kMask, port(4), kUntagged, PortId::Uni(4)), Outcome::NoFlow);
  EXPECT_EQ(OutcomeUnder(kMask, port(0), kUntagged, PortId::Wan()), Outcome::FlowForward);
  EXPECT_EQ(OutcomeUnder(kMask, port(1), kUntagged, PortId::Wan()), Outcome::NoFlow);
}

// Required: unknown-key-never-matches
TEST(Keys, UnknownBit_NeverMatches) {
  EXPECT_EQ(OutcomeUnder(
                BRMGR_KEY_VLAN_NUM, [](auto&) {}, kUntagged),
            Outcome::FlowForward);
  EXPECT_EQ(OutcomeUnder(
                BRMGR_KEY_VLAN_NUM | 0x100U, [](auto&) {}, kUntagged),
            Outcome::NoFlow);
}

TEST(Keys, NoKeys_EveryFrameMatches) {
  EXPECT_EQ(OutcomeUnder(
                0, [](auto&) {}, kDoubleTagged),
            Outcome::FlowForward);
}

}  // namespace
}  // namespace virtual_onu
