/// @file
/// Tests of the command that plugs a link partner in: links, and what the library's task is told of
/// them.
#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "commands/two_ports.h"
#include "run_lines.h"

namespace onu {
namespace {

using test::Doings;
using test::kForwarding;
using test::Last;
using test::OutcomeAfter;
using test::PortAfter;
using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::ElementsAre;
using testing::EndsWith;

/// The library's task listens to the kernel.
const Words kStart = {"config run-tasks on", "Init"};

TEST(Link, Down_TakesTheLinkAndTheFrames) {
  EXPECT_EQ(PortAfter({"link uni1 down"}, 1)["link"], nullptr);
  EXPECT_EQ(OutcomeAfter(With(kForwarding, {"link uni1 down", "send uni1 udp"})), "port_link_down");
  EXPECT_EQ(OutcomeAfter(With(kForwarding, {"link uni2 down", "send uni1 udp"})), "flow_forward");
  EXPECT_EQ(OutcomeAfter(With(kForwarding, {"link uni1 down", "link uni1 up", "send uni1 udp"})),
            "flow_forward");
}

TEST(Link, EverySpeedAndDuplex_IsWhatTheLibraryReads) {
  struct Row {
    const char* mode;
    int result;
  };
  // The library's numbering of negotiation results.
  const Row rows[] = {{"10 half", 0}, {"100 half", 1}, {"1000 half", 2},
                      {"10 full", 3}, {"100 full", 4}, {"1000 full", 5}};
  for (const Row& row : rows) {
    const Json document =
        RunLinesAsJson({std::string("link uni1 up ") + row.mode, "GetPortNegResult 1"})
            .lastDocument();
    EXPECT_EQ(document["result"], 0);
    EXPECT_EQ(document["negResult"], row.result) << row.mode;
  }
}

TEST(Link, Text_SaysWhatBecameOfTheLink) {
  EXPECT_EQ(RunLines({"link uni1 up"}).out,
            "uni1: partner, link up, 1000 Mbit/s full duplex, pause none\n");
  EXPECT_EQ(RunLines({"link uni1 down"}).out, "uni1: no partner, link down\n");
  EXPECT_THAT(RunLines({"SetPortAdminState 1 0", "link uni1 up 10 half"}).out,
              EndsWith("uni1: partner, link down\n"))
      << "the PHY is powered down";
}

TEST(Link, Pause_IsUsedWhenBothEndsOfferIt) {
  EXPECT_EQ(PortAfter({"link uni1 up pause"}, 1)["link"]["pause"], "none");
  EXPECT_EQ(PortAfter({"PauseAbilitySet 1 2", "link uni1 up pause"}, 1)["link"]["pause"], "both");
  EXPECT_EQ(PortAfter({"PauseAbilitySet 1 2", "link uni1 up 100 full"}, 1)["link"]["pause"],
            "none");
}

/// What the management process is told of a link: port, and whether it is up.
std::string LinkMessage(const std::string& code, bool up) {
  return "0100000002000001" + code + (up ? "01" : "00") + std::string(50, '0');
}

TEST(PacketPath, ALinkThatChanges_IsToldToTheTask) {
  const Words open = With(kStart, {"SetPortAdminState 2 1"});
  const Json down = Last(With(open, {"clear trace", "link uni2 down", "show trace"}));
  EXPECT_THAT(Doings(down["events"]),
              ElementsAre(LinkMessage("0103", false), LinkMessage("0203", false)));
}

TEST(PacketPath, ALinkThatComesUp_IsToldWithItsSpeed) {
  const Json up = Last(With(kStart, {"SetPortAdminState 2 1", "link uni2 down", "clear trace",
                                     "link uni2 up 100 half", "show trace"}));
  EXPECT_THAT(Doings(up["events"]),
              ElementsAre(LinkMessage("0103", true), LinkMessage("0203", true)));
  std::vector<Json> rates;
  for (const Json& event : up["events"]) {
    if (event["kind"] == "command" && event["name"] == "BRMGR_CMD_PORT_STATE") {
      rates.push_back(event["sent"]);
    }
  }
  ASSERT_EQ(rates.size(), 1U);
  EXPECT_EQ(rates.front()["port"], 3);
  EXPECT_EQ(rates.front()["rate"], 100000000);
}

/// The names of the events: kinds of calls and messages, lines of the shell, commands.
std::vector<std::string> Course(const Json& events) {
  std::vector<std::string> course;
  for (const Json& event : events) {
    if (event["kind"] == "command") {
      course.push_back(event["name"].get<std::string>());
    } else if (event["kind"] == "log") {
      course.push_back(event["text"].get<std::string>());
    } else {
      course.push_back(event["kind"].get<std::string>());
    }
  }
  return course;
}

TEST(PacketPath, ALinkThatTheLibraryChanges_IsToldBehindTheLineThatDidIt) {
  const Words open = With(kStart, {"SetPortAdminState 2 1", "clear trace"});
  const Json down = Last(With(open, {"SetPortAdminState 2 0", "show trace"}));
  EXPECT_THAT(Course(down["events"]),
              ElementsAre("BRMGR_CMD_PORT_ADMIN", "shell", "UNI port[2] MODE change to [6]\r\n",
                          "message", "message"));
}

TEST(PacketPath, ALinkThatTheLibraryBringsUp_IsToldWithItsRate) {
  const Json up = Last(With(kStart, {"clear trace", "SetPortAdminState 2 1", "show trace"}));
  EXPECT_THAT(Course(up["events"]),
              ElementsAre("BRMGR_CMD_PORT_ADMIN", "shell", "UNI port[2] MODE change to [0]\r\n",
                          "BRMGR_CMD_PORT_STATE", "message", "message"));
}

TEST(PacketPath, ANegotiationThatTheLibraryForces_IsTold) {
  const Words open = With(kStart, {"SetPortAdminState 2 1", "link uni2 up", "clear trace"});
  const Json forced = Last(With(open, {"SetPortNegMode 2 4", "show trace"}));
  EXPECT_THAT(Course(forced["events"]), testing::Contains("UNI port[2] MODE change to [2]\r\n"));
}

TEST(PacketPath, Start_TellsThatThePortsAreDown) {
  const Json start = Last(With(kStart, {"show trace"}));
  const std::vector<std::string> course = Course(start["events"]);
  for (const char* port : {"1", "2", "3", "4"}) {
    EXPECT_EQ(
        std::ranges::count(course, std::string("UNI port[") + port + "] MODE change to [6]\r\n"), 1)
        << port;
  }
}

TEST(PacketPath, ALinkThatChangedBeforeTheTaskListened_IsNotTold) {
  const Json start = Last({"link uni3 down", "config run-tasks on", "Init", "show trace"});
  EXPECT_THAT(Course(start["events"]),
              testing::Not(testing::Contains("UNI port[3] MODE change to [6]\r\n")));
}

TEST(PacketPath, ALinkThatStays_IsNotTold) {
  const Json same = Last(With(kStart, {"SetPortAdminState 2 1", "link uni2 up"}));
  EXPECT_EQ(same["told"], false);
}

TEST(PacketPath, WithoutATask_NobodyIsTold) {
  EXPECT_EQ(Last({"Init", "SetPortAdminState 2 1", "link uni2 down"})["told"], false);
}

}  // namespace
}  // namespace onu
