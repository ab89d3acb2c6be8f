/// @file
/// Frames in the words of the counter record: size bins at both limits, casts, directions and
/// outcomes.
#include "datapath/port_statistics.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "datapath/rate_limits.h"
#include "ports_fixture.h"

namespace virtual_onu {
namespace {

using Word = std::uint32_t PortStatsRecord::*;
using Counted = std::map<std::string, std::uint32_t>;

struct NamedWord {
  const char* name;
  Word word;
};

/// Every word that the library reads.
const std::vector<NamedWord> kWords = {
    {"rxOctets", &PortStatsRecord::rxOctets},
    {"rx64", &PortStatsRecord::rx64},
    {"rx65to127", &PortStatsRecord::rx65to127},
    {"rx128to255", &PortStatsRecord::rx128to255},
    {"rx256to511", &PortStatsRecord::rx256to511},
    {"rx512to1023", &PortStatsRecord::rx512to1023},
    {"rx1024to1518", &PortStatsRecord::rx1024to1518},
    {"rxMulticast", &PortStatsRecord::rxMulticast},
    {"rxBroadcast", &PortStatsRecord::rxBroadcast},
    {"rxUnicast", &PortStatsRecord::rxUnicast},
    {"rxDiscard", &PortStatsRecord::rxDiscard},
    {"rxWord22", &PortStatsRecord::rxWord22},
    {"rxError23", &PortStatsRecord::rxError23},
    {"rxError24", &PortStatsRecord::rxError24},
    {"txOctets", &PortStatsRecord::txOctets},
    {"tx64", &PortStatsRecord::tx64},
    {"tx65to127", &PortStatsRecord::tx65to127},
    {"tx128to255", &PortStatsRecord::tx128to255},
    {"tx256to511", &PortStatsRecord::tx256to511},
    {"tx512to1023", &PortStatsRecord::tx512to1023},
    {"tx1024to1518", &PortStatsRecord::tx1024to1518},
    {"txDiscard", &PortStatsRecord::txDiscard},
    {"txMulticast", &PortStatsRecord::txMulticast},
    {"txBroadcast", &PortStatsRecord::txBroadcast},
    {"txUnicast", &PortStatsRecord::txUnicast},
    {"txError47", &PortStatsRecord::txError47},
    {"txError51", &PortStatsRecord::txError51},
};

/// Forwards every frame, upstream to the WAN side and downstream to all UNI ports.
class PortStatisticsTest : public testing::Test {
 protected:
  PortStatisticsTest() : path(chip.tables, chip.ports(kUniPorts), Limits(qos, clock)) {
    chip.addMatchAll(kUp);
    chip.addMatchAll(kDown);
    path.countInto(PortStatistics([this](std::uint32_t uni) -> PortStatsRecord& {
      EXPECT_GE(uni, 1U);
      EXPECT_LE(uni, kUniPorts);
      return counters[uni];
    }));
  }

  /// A frame of a length on the wire, its check sequence included.
  static Bytes FrameOf(std::size_t onTheWire, const std::string& macs = kMacs) {
    Bytes frame = Hex(macs + kPlain);
    frame.resize(onTheWire - 4);
    return frame;
  }

  Outcome send(PortId port, ByteView frame) { return path.offer(port, frame).outcome; }

  /// The words of a port that are not zero.
  Counted of(std::uint32_t uni) {
    Counted counted;
    for (const NamedWord& word : kWords) {
      if (counters[uni].*word.word != 0) {
        counted[word.name] = counters[uni].*word.word;
      }
    }
    return counted;
  }

  QosTables qos;
  Clock clock;
  ChipBuilder chip;
  DataPath path;
  std::map<std::uint32_t, PortStatsRecord> counters;
};

struct LengthRow {
  std::uint32_t onTheWire;
  const char* bin;  ///< without its direction; null for none
};

const std::vector<LengthRow> kLengths = {
    {64, "64"},          {65, "65to127"},      {127, "65to127"},     {128, "128to255"},
    {255, "128to255"},   {256, "256to511"},    {511, "256to511"},    {512, "512to1023"},
    {1023, "512to1023"}, {1024, "1024to1518"}, {1518, "1024to1518"}, {1519, nullptr},
    {9220, nullptr},
};

/// What one unicast frame of that length counts.
Counted Once(const std::string& side, const LengthRow& row) {
  Counted expected = {{side + "Octets", row.onTheWire}, {side + "Unicast", 1}};
  if (row.bin != nullptr) {
    expected[side + row.bin] = 1;
  }
  return expected;
}

TEST_F(PortStatisticsTest, Received_EverySizeBinAtBothLimits) {
  for (const LengthRow& row : kLengths) {
    counters.clear();
    EXPECT_EQ(send(kUni2, FrameOf(row.onTheWire)), Outcome::FlowForward);
    EXPECT_EQ(of(2), Once("rx", row)) << row.onTheWire;
    EXPECT_EQ(of(1), Counted()) << "another port";
  }
  EXPECT_EQ(kLengths.size(), 13U);
}

TEST_F(PortStatisticsTest, Transmitted_EverySizeBinAtBothLimits) {
  for (const LengthRow& row : kLengths) {
    counters.clear();
    EXPECT_EQ(send(PortId::Wan(), FrameOf(row.onTheWire)), Outcome::FlowForward);
    for (std::uint32_t uni = 1; uni <= kUniPorts; ++uni) {
      EXPECT_EQ(of(uni), Once("tx", row)) << row.onTheWire << " at " << uni;
    }
  }
}

TEST_F(PortStatisticsTest, ShortFrame_CountsAsItIsPaddedOnTheWire) {
  send(kUni1, FrameOf(63));
  send(kUni1, Hex(kMacs + "0000"));  // 14 octets
  EXPECT_EQ(of(1), (Counted{{"rxOctets", 128}, {"rx64", 2}, {"rxUnicast", 2}}));
}

TEST_F(PortStatisticsTest, Casts_FollowTheDestination) {
  const std::string source = "020000000001 ";
  for (const std::string destination :
       {"ffffffffffff ", "01005e000001 ", "333300000001 ", "fffffffffffe ", "020000000002 "}) {
    send(kUni1, FrameOf(64, destination + source));
    send(PortId::Wan(), FrameOf(64, destination + source));
  }
  // Of fffffffffffe the group bit is set, and it is not the broadcast address.
  EXPECT_EQ(of(1), (Counted{{"rxOctets", 320},
                            {"rx64", 5},
                            {"rxBroadcast", 1},
                            {"rxMulticast", 3},
                            {"rxUnicast", 1},
                            {"txOctets", 320},
                            {"tx64", 5},
                            {"txBroadcast", 1},
                            {"txMulticast", 3},
                            {"txUnicast", 1}}));
}

TEST_F(PortStatisticsTest, Length_IsThatAtThePort) {
  chip.tables.downstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  chip.addAction(kDown, 0, BRMGR_TAG_POP);
  Bytes frame = Hex(kTagged);
  frame.resize(124);  // 128 on the wire, 124 without the tag
  send(PortId::Wan(), frame);
  send(kUni1, frame);
  EXPECT_EQ(of(1), (Counted{{"txOctets", 124},
                            {"tx65to127", 1},
                            {"txUnicast", 1},
                            {"rxOctets", 128},
                            {"rx128to255", 1},
                            {"rxUnicast", 1}}));
}

TEST_F(PortStatisticsTest, DroppedFrame_IsReceivedAndDiscarded) {
  const Counted discarded = {{"rxOctets", 64}, {"rx64", 1}, {"rxUnicast", 1}, {"rxDiscard", 1}};
  IngressFlowRule& flow = chip.tables.upstream.classes.at(0).flows.at(0);
  flow.forward = BRMGR_FORWARD_ACL;
  EXPECT_EQ(send(kUni1, FrameOf(64)), Outcome::FlowAccessControl);
  EXPECT_EQ(of(1), discarded);
  flow.forward = BRMGR_FORWARD_PASS;
  flow.policer = 2;
  qos.policers[2] = {{0, 0, 10, 1, 1, 2}, 1};
  EXPECT_EQ(send(kUni2, FrameOf(64)), Outcome::Policed);
  EXPECT_EQ(of(2), discarded);
  chip.tables.upstream.classes.clear();
  EXPECT_EQ(send(kUni3, FrameOf(64)), Outcome::NoClass);
  EXPECT_EQ(of(3), discarded);
}

TEST_F(PortStatisticsTest, TrappedFrame_IsReceivedAndNotDiscarded) {
  chip.tables.upstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_TRAP;
  EXPECT_EQ(send(kUni1, FrameOf(64)), Outcome::FlowTrap);
  EXPECT_EQ(of(1), (Counted{{"rxOctets", 64}, {"rx64", 1}, {"rxUnicast", 1}}));
}

TEST_F(PortStatisticsTest, DamagedFrame_IsAnErrorAndNothingElse) {
  EXPECT_EQ(send(kUni1, Hex("020000000002")), Outcome::RuntFrame);
  EXPECT_EQ(send(kUni1, {}), Outcome::RuntFrame);
  EXPECT_EQ(send(kUni1, Hex(kMacs + "8100 00")), Outcome::TruncatedTag);
  EXPECT_EQ(of(1), Counted({{"rxError23", 3}}));
}

TEST_F(PortStatisticsTest, FrameThatCannotCome_IsNotCounted) {
  chip.portTables.settings[1].adminUp = false;
  chip.linksDown.insert(2);
  EXPECT_EQ(send(kUni1, FrameOf(64)), Outcome::PortAdminDown);
  EXPECT_EQ(send(kUni2, FrameOf(64)), Outcome::PortLinkDown);
  EXPECT_EQ(send(PortId::Uni(9), FrameOf(64)), Outcome::UnknownPort);
  EXPECT_EQ(send(PortId::Wan(), FrameOf(64)), Outcome::FlowForward);
  EXPECT_EQ(of(1), Counted());
  EXPECT_EQ(of(2), Counted());
  EXPECT_EQ(of(3), (Counted{{"txOctets", 64}, {"tx64", 1}, {"txUnicast", 1}}));
}

TEST_F(PortStatisticsTest, DownstreamLimit_DiscardsAtItsPortAlone) {
  qos.dsLimits[2] = {1, 1};
  const Bytes frame = FrameOf(501540);  // the bucket, and no octet more
  send(PortId::Wan(), frame);
  EXPECT_EQ(of(2), (Counted{{"txOctets", 501540}, {"txUnicast", 1}}));
  send(PortId::Wan(), frame);
  EXPECT_EQ(of(2), (Counted{{"txOctets", 501540}, {"txUnicast", 1}, {"txDiscard", 1}}));
  EXPECT_EQ(of(1), (Counted{{"txOctets", 1003080}, {"txUnicast", 2}}));
}

TEST_F(PortStatisticsTest, MirroredCopy_IsTransmittedByTheMirrorPort) {
  chip.portTables.mirror = {0, DevicePortOf(3), 1, 1};
  send(kUni1, FrameOf(64));
  EXPECT_EQ(of(3), (Counted{{"txOctets", 64}, {"tx64", 1}, {"txUnicast", 1}}));
  chip.linksDown.insert(3);
  send(kUni1, FrameOf(64));
  EXPECT_EQ(of(3), (Counted{{"txOctets", 64}, {"tx64", 1}, {"txUnicast", 1}}));
}

TEST_F(PortStatisticsTest, Counters_WrapAt32Bits) {
  counters[1].rxOctets = 0xFFFFFFC1;  // 63 below the end
  counters[1].rx64 = 0xFFFFFFFF;
  send(kUni1, FrameOf(64));
  EXPECT_EQ(of(1), (Counted{{"rxOctets", 1}, {"rxUnicast", 1}}));
}

TEST_F(PortStatisticsTest, ExplainAndClear_LeaveTheCounters) {
  send(kUni1, FrameOf(64));
  const Counted before = of(1);
  static_cast<void>(path.explain(kUni1, FrameOf(64)));
  path.clearCounters();
  EXPECT_EQ(of(1), before);
}

}  // namespace
}  // namespace virtual_onu
