/// @file
/// Tests of the pump between the ends and the unit; the unit is a function that the test gives.
#include "live/pump.h"

#include <array>
#include <chrono>
#include <gmock/gmock.h>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "wire.h"

namespace virtual_onu {
namespace {

using std::chrono::milliseconds;
using test::FrameOf;
using test::Wire;
using testing::ElementsAre;
using testing::Pair;

constexpr int kNoStop = -1;
constexpr PortId kWan = PortId::Wan();
constexpr PortId kUni1 = PortId::Uni(1);
constexpr PortId kUni2 = PortId::Uni(2);

/// Ends at uni1 and the WAN side; frames go to the other side as they are unless the test says
/// otherwise.
class PumpTest : public testing::Test {
 protected:
  PumpTest() {
    pump.bind(kUni1, uni1.takeNear("one"));
    pump.bind(kWan, wan.takeNear("network"));
  }

  Verdict decide(PortId port, ByteView frame) {
    offered.emplace_back(port, Bytes(frame.begin(), frame.end()));
    if (verdict) {
      return *verdict;
    }
    Verdict other;
    other.outcome = Outcome::FlowForward;
    other.deliveries = {{port.isWan() ? kUni1 : kWan, "", {}, {}, offered.back().second}};
    return other;
  }

  bool turn() { return pump.turn(kNoStop, milliseconds(0)); }

  static Verdict Dropped(Outcome outcome) {
    Verdict dropped;
    dropped.outcome = outcome;
    return dropped;
  }

  Wire uni1;
  Wire wan;
  std::optional<Verdict> verdict;
  std::vector<std::pair<PortId, Bytes>> offered;
  std::vector<std::string> gone;
  Pump pump{{[this](PortId port, ByteView frame) { return decide(port, frame); },
             [this](PortId port, const FrameEnd& end) {
               gone.push_back(port.name() + " " + end.name());
             }}};
};

TEST_F(PumpTest, Frames_GoToTheUnitAndLeaveWhereItSays) {
  uni1.send(FrameOf(1, 60));
  wan.send(FrameOf(2, 1518));
  EXPECT_TRUE(turn());
  EXPECT_THAT(offered, testing::UnorderedElementsAre(Pair(kUni1, FrameOf(1, 60)),
                                                     Pair(kWan, FrameOf(2, 1518))));
  EXPECT_EQ(wan.next(), FrameOf(1, 60));
  EXPECT_EQ(wan.next(), Bytes());
  EXPECT_EQ(uni1.next(), FrameOf(2, 1518));
  EXPECT_EQ(uni1.next(), Bytes());
}

TEST_F(PumpTest, Frames_AreCountedWhereTheyComeAndLeave) {
  uni1.send(FrameOf(1, 60));
  uni1.send(FrameOf(1, 100));
  EXPECT_TRUE(turn());
  EXPECT_THAT(pump.traffic(),
              ElementsAre(Pair(kWan, PortTraffic{.framesOut = 2, .octetsOut = 160, .outcomes = {}}),
                          Pair(kUni1, PortTraffic{.framesIn = 2,
                                                  .octetsIn = 160,
                                                  .outcomes = {{Outcome::FlowForward, 2}}})));
}

TEST_F(PumpTest, Verdict_MayEditAndMultiplyTheFrame) {
  verdict.emplace();
  verdict->outcome = Outcome::FlowForward;
  verdict->deliveries = {{kUni1, "", {}, {}, FrameOf(3, 64)}, {kWan, "", {}, {}, FrameOf(4, 68)}};
  wan.send(FrameOf(1));
  EXPECT_TRUE(turn());
  EXPECT_EQ(uni1.next(), FrameOf(3, 64));
  EXPECT_EQ(wan.next(), FrameOf(4, 68));
}

TEST_F(PumpTest, MirrorCopies_LeaveUnlessTheyAreHeldBack) {
  verdict = Dropped(Outcome::NoFlow);
  verdict->copies = {{kWan, kUni1, true, Outcome::Mirrored, FrameOf(3)},
                     {kWan, kUni1, true, Outcome::EgressLinkDown, FrameOf(4)}};
  uni1.send(FrameOf(3));
  EXPECT_TRUE(turn());
  EXPECT_EQ(wan.next(), FrameOf(3));
  EXPECT_EQ(wan.next(), Bytes());
}

TEST_F(PumpTest, TrappedAndDroppedFrames_LeaveNowhereAndAreCounted) {
  for (const Outcome outcome : {Outcome::FlowTrap, Outcome::NoFlow, Outcome::NoFlow}) {
    verdict = Dropped(outcome);
    uni1.send(FrameOf(1));
    EXPECT_TRUE(turn());
  }
  EXPECT_EQ(wan.next(), Bytes());
  EXPECT_EQ(uni1.next(), Bytes());
  EXPECT_THAT(pump.traffic().at(kUni1).outcomes,
              ElementsAre(Pair(Outcome::FlowTrap, 1), Pair(Outcome::NoFlow, 2)));
  EXPECT_EQ(pump.traffic().at(kUni1).framesIn, 3);
}

TEST_F(PumpTest, EventsThatDoNotReachTheLibrary_AreCounted) {
  verdict = Dropped(Outcome::FlowTrap);
  uni1.send(FrameOf(1));
  EXPECT_TRUE(turn());
  EXPECT_EQ(pump.traffic().at(kUni1).eventsLost, 0);
  verdict->eventLoss = Outcome::EventQueueFull;
  uni1.send(FrameOf(1));
  EXPECT_TRUE(turn());
  EXPECT_EQ(pump.traffic().at(kUni1).eventsLost, 1);
  EXPECT_EQ(pump.traffic().at(kUni1).framesIn, 2);
}

TEST_F(PumpTest, Transmit_LeavesByThePortAndIsCountedApart) {
  pump.transmit(kUni1, FrameOf(5, 70));
  EXPECT_EQ(uni1.next(), FrameOf(5, 70));
  EXPECT_EQ(wan.next(), Bytes());
  EXPECT_EQ(pump.traffic().at(kUni1),
            (PortTraffic{.framesOut = 1, .octetsOut = 70, .transmitted = 1, .outcomes = {}}));
  EXPECT_TRUE(offered.empty());
}

TEST_F(PumpTest, FramesForAPortWithoutAnEnd_AreLost) {
  pump.transmit(kUni2, FrameOf(5));
  verdict.emplace();
  verdict->outcome = Outcome::FlowForward;
  verdict->deliveries = {{kUni2, "", {}, {}, FrameOf(3)}};
  wan.send(FrameOf(3));
  EXPECT_TRUE(turn());
  EXPECT_EQ(pump.traffic().at(kUni2), (PortTraffic{.lost = 2, .outcomes = {}}));
}

TEST_F(PumpTest, FramesThatTheFarEndDoesNotTake_AreLost) {
  wan.cut();
  uni1.send(FrameOf(1));
  EXPECT_TRUE(turn());
  EXPECT_EQ(pump.traffic().at(kWan), (PortTraffic{.lost = 1, .outcomes = {}}));
}

TEST_F(PumpTest, Turn_NothingToDo_IsTrueAndChangesNothing) {
  EXPECT_TRUE(turn());
  EXPECT_THAT(pump.traffic(), ElementsAre(Pair(kWan, PortTraffic{}), Pair(kUni1, PortTraffic{})));
}

TEST_F(PumpTest, Turn_Stopped_IsFalseAndLeavesTheFrames) {
  std::array<int, 2> stop = {-1, -1};
  ASSERT_EQ(pipe(stop.data()), 0);
  uni1.send(FrameOf(1));
  ASSERT_EQ(write(stop[1], "x", 1), 1);
  EXPECT_FALSE(pump.turn(stop[0], milliseconds(10'000)));
  EXPECT_TRUE(offered.empty());
  EXPECT_TRUE(turn());
  EXPECT_EQ(offered.size(), 1U);
  close(stop[0]);
  close(stop[1]);
}

TEST_F(PumpTest, Turn_ManyFrames_ServesEveryPort) {
  for (int i = 0; i < Pump::kFramesPerTurn + 1; ++i) {
    wan.send(FrameOf(2));
  }
  uni1.send(FrameOf(1));
  EXPECT_TRUE(turn());
  EXPECT_EQ(pump.traffic().at(kWan).framesIn, Pump::kFramesPerTurn);
  EXPECT_EQ(pump.traffic().at(kUni1).framesIn, 1);
  EXPECT_TRUE(turn());
  EXPECT_EQ(pump.traffic().at(kWan).framesIn, Pump::kFramesPerTurn + 1);
}

TEST_F(PumpTest, EndGone_IsToldOnceBehindItsFramesAndTheOthersGoOn) {
  uni1.send(FrameOf(1));
  uni1.cut();
  EXPECT_TRUE(turn());
  EXPECT_TRUE(turn());
  EXPECT_THAT(gone, ElementsAre("uni1 one"));
  EXPECT_EQ(wan.next(), FrameOf(1));
  wan.send(FrameOf(2));
  EXPECT_TRUE(turn());
  EXPECT_EQ(offered.size(), 2U);
}

TEST_F(PumpTest, EndThatOnlySendsNoMore_StillTakesFrames) {
  wan.finish();
  EXPECT_TRUE(turn());
  EXPECT_THAT(gone, ElementsAre("wan network"));
  uni1.send(FrameOf(1));
  EXPECT_TRUE(turn());
  EXPECT_EQ(wan.next(), FrameOf(1));
}

TEST_F(PumpTest, AllEndsGone_EndsTheRun) {
  uni1.cut();
  wan.cut();
  EXPECT_FALSE(turn());
  EXPECT_THAT(gone, testing::UnorderedElementsAre("uni1 one", "wan network"));
  EXPECT_FALSE(turn());
  EXPECT_EQ(gone.size(), 2U);
}

TEST_F(PumpTest, Bind_TwoEndsToOnePort_IsAnError) {
  Wire other;
  EXPECT_THROW(pump.bind(kUni1, other.takeNear("two")), std::logic_error);
}

TEST_F(PumpTest, Transmit_WhileTurning_CountsEveryFrame) {
  constexpr int kFrames = 1000;
  std::thread library([this] {
    for (int i = 0; i < kFrames; ++i) {
      pump.transmit(kUni1, FrameOf(5));
    }
  });
  for (int i = 0; i < kFrames; ++i) {
    wan.send(FrameOf(2));
    turn();
    while (!uni1.next().empty()) {
    }
  }
  library.join();
  const PortTraffic traffic = pump.traffic().at(kUni1);
  EXPECT_EQ(traffic.framesOut + traffic.lost, 2 * kFrames);
  EXPECT_GT(traffic.transmitted, 0);
}

}  // namespace
}  // namespace virtual_onu
