/// @file
/// Tests of the commands of the packet path: events that wait, what the library makes of them, what
/// it sent, and the kernel's messages.
#include <algorithm>
#include <cstddef>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "base/text.h"
#include "capture_file.h"
#include "run_lines.h"
#include "run_program.h"

namespace onu {
namespace {

using test::Last;
using test::Ran;
using test::RunLines;
using test::With;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Words kStart = {"config run-tasks on", "Init"};
const Words kPorts = {"Init",
                      "SetPortPvid 1 100",
                      "SetPortPriority 1 3",
                      "SetVlanTag 1",
                      "SetVlanTransparent 2",
                      "SetPortAdminState 1 1",
                      "SetPortAdminState 2 1"};

std::string Capture(const std::string& name) {
  return (test::Sources() / "tests/data" / name).string();
}

/// A frame of a capture of the repository, from 1.
std::string FrameOf(const std::string& name, std::size_t number) {
  return virtual_onu::ToHex(ReadCapture(Capture(name)).at(number - 1).bytes);
}

/// The same with the tag of port 1: priority 3, VID 100.
std::string TaggedFrameOf(const std::string& name, std::size_t number) {
  return FrameOf(name, number).insert(24, "81006064");
}

/// The calls, shell lines and messages in a list of events.
std::vector<std::string> Doings(const Json& events) {
  std::vector<std::string> doings;
  for (const Json& event : events) {
    if (event["kind"] == "call") {
      doings.push_back(event["call"].get<std::string>());
    } else if (event["kind"] == "shell") {
      doings.push_back(event["line"].get<std::string>());
    } else if (event["kind"] == "message") {
      doings.push_back(event["message"].get<std::string>());
    }
  }
  return doings;
}

/// A length below 256 as a word of this machine.
std::string LengthWord(std::size_t length) {
  return virtual_onu::ToHex(virtual_onu::Bytes{static_cast<std::uint8_t>(length), 0, 0, 0});
}

TEST(PacketPath, Send_TellsTheEventAndHowManyWait) {
  const Json document = Last(With(kPorts, {"send uni2 stp", "send uni1 igmp"}));
  EXPECT_EQ(document["frames"].at(0)["event"],
            Json({{"type", 1}, {"name", "MCAST_IN"}, {"port", 1}, {"lost", nullptr}}));
  EXPECT_EQ(document["pending"], 2);
}

TEST(PacketPath, Send_OfAFrameThatIsNotTrapped_HasNoEvent) {
  const Json document = Last(With(kPorts, {"send uni2 dhcp"}));
  EXPECT_EQ(document["frames"].at(0)["event"], nullptr);
  EXPECT_EQ(document["pending"], 0);
}

TEST(PacketPath, Send_TellsAnEventThatIsLost) {
  Words lines = kPorts;
  lines.insert(lines.end(), 33, "send uni2 stp");
  const Json document = Last(lines);
  EXPECT_EQ(document["frames"].at(0)["event"]["lost"], "event_queue_full");
  EXPECT_EQ(document["pending"], 32);
}

TEST(PacketPath, Explain_TellsTheEventAndChangesNothing) {
  const Json document = Last(With(kPorts, {"send uni2 stp", "explain uni1 stp"}));
  EXPECT_EQ(document["event"]["name"], "BPDU");
  EXPECT_EQ(document["event"]["port"], 1);
  EXPECT_EQ(document["pending"], 1);
}

TEST(PacketPath, Explain_InText) {
  const Ran ran = RunLines(With(kPorts, {"send uni2 stp", "explain uni1 stp"}));
  EXPECT_THAT(ran.out, HasSubstr("it would become event BPDU of port 1\n"
                                 "1 event waits for the library\n"));
}

TEST(PacketPath, Capture_TakesAtMostTheEventsThatWait) {
  const Words lines = With(kPorts, {"send uni2 " + Capture("stp.pcap")});
  const Json two = Last(With(lines, {"capture 2"}));
  EXPECT_EQ(two["events"].size(), 2U);
  EXPECT_EQ(two["events"].at(0)["result"], 0);
  EXPECT_EQ(two["pending"], 3);
}

TEST(PacketPath, Capture_WithoutEvents_TakesNone) {
  const Ran ran = RunLines(With(kPorts, {"capture", "capture 5"}));
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, HasSubstr("no event was taken\nnothing was transmitted\n"
                                 "no event was taken\nnothing was transmitted\n"));
}

struct ClientRow {
  std::string capture;
  std::size_t frame;
  std::string client;
};

TEST(PacketPath, CapturedFrames_ReachTheirClientsWithTheTagOfThePort) {
  const std::vector<ClientRow> rows = {{"igmp-join.pcap", 1, "IGMP_DispatchPacket"},
                                       {"igmp-join.pcap", 3, "IGMP_DispatchPacket"},
                                       {"igmpv3-join.pcap", 1, "IGMP_DispatchPacket"},
                                       {"mld-report.pcap", 1, "MLD_DispatchPacket"},
                                       {"mld-report.pcap", 4, "MLD_DispatchPacket"},
                                       {"dhcp.pcap", 1, "DHCPRELAY_HandlePacket"},
                                       {"dhcp.pcap", 3, "DHCPRELAY_HandlePacket"},
                                       {"pppoe-discovery.pcap", 1, "PPPOERELAY_HandlePacket"},
                                       {"pppoe-discovery.pcap", 3, "PPPOERELAY_HandlePacket"},
                                       {"pppoe-discovery.pcap", 5, "PPPOERELAY_HandlePacket"}};
  Words lines = With(kPorts, {"SetDhcpTrapEnable 1", "SetPPPoETrapEnable 1"});
  std::vector<std::string> expected;
  for (const ClientRow& row : rows) {
    lines.push_back("send uni1 " + Capture(row.capture) + "#" + std::to_string(row.frame));
    expected.push_back(row.client + "(" + TaggedFrameOf(row.capture, row.frame) +
                       ", vid 100, port 1)");
  }
  const Json events = Last(With(lines, {"capture"}))["events"];
  std::vector<std::string> calls;
  for (const Json& event : events) {
    for (const std::string& doing : Doings(event["left"])) {
      calls.push_back(doing);
    }
  }
  EXPECT_EQ(calls, expected);
}

TEST(PacketPath, CapturedBpdus_ReachTheSpanningTreeProcess) {
  const Json events = Last(With(kPorts, {"send uni1 " + Capture("stp.pcap"), "capture"}))["events"];
  ASSERT_EQ(events.size(), 5U);
  for (std::size_t i = 0; i < events.size(); ++i) {
    const std::string frame = FrameOf("stp.pcap", i + 1);
    // Port and length, on this machine, then the frame.
    EXPECT_THAT(Doings(events.at(i)["left"]),
                ElementsAre("01000000" + LengthWord(frame.size() / 2) + frame));
  }
}

TEST(PacketPath, CapturedFramesOfTheNetwork_GoToThePortsUnderTheirRules) {
  const std::vector<std::pair<std::string, std::size_t>> frames = {
      {"igmp-join.pcap", 1}, {"igmpv3-join.pcap", 2}, {"mld-report.pcap", 1}};
  Words lines = kPorts;
  for (const auto& [capture, number] : frames) {
    lines.push_back("send wan " + Capture(capture) + "#" + std::to_string(number));
  }
  std::vector<std::string> sent;
  const Json transmitted = Last(With(lines, {"capture"}))["transmitted"];
  for (const Json& one : transmitted) {
    EXPECT_EQ(one["port"], "uni2") << "the other ports do not take untagged frames";
    sent.push_back(one["frame"]["bytes"].get<std::string>());
  }
  EXPECT_THAT(sent, ElementsAre(FrameOf("igmp-join.pcap", 1), FrameOf("igmpv3-join.pcap", 2),
                                FrameOf("mld-report.pcap", 1)));
}

TEST(PacketPath, ClientsThatAreOn_SendTheFramesOn) {
  const Json document =
      Last(With(kPorts, {"clients on", "SetDhcpTrapEnable 1", "SetPPPoETrapEnable 1",
                         "send uni1 " + Capture("dhcp.pcap") + "#1",
                         "send uni1 " + Capture("pppoe-discovery.pcap") + "#1",
                         "send uni1 " + Capture("igmp-join.pcap") + "#1",
                         "send uni2 " + Capture("mld-report.pcap") + "#1",
                         "send uni2 " + Capture("stp.pcap") + "#3", "capture"}));
  std::vector<std::string> sent;
  for (const Json& one : document["transmitted"]) {
    EXPECT_EQ(one["port"], "wan");
    EXPECT_EQ(one["outcome"], "transmitted");
    sent.push_back(one["frame"]["bytes"].get<std::string>());
  }
  EXPECT_THAT(sent,
              ElementsAre(TaggedFrameOf("dhcp.pcap", 1), TaggedFrameOf("pppoe-discovery.pcap", 1),
                          TaggedFrameOf("igmp-join.pcap", 1), FrameOf("mld-report.pcap", 1),
                          FrameOf("stp.pcap", 3)));
}

TEST(PacketPath, ClientsThatAreOff_OnlyRecord) {
  const Json document =
      Last(With(kPorts, {"clients on", "clients off", "send uni2 igmp", "capture"}));
  EXPECT_THAT(document["transmitted"], IsEmpty());
  EXPECT_EQ(document["events"].size(), 1U);
}

TEST(PacketPath, ShowTransmitted_ListsTheNewest) {
  const Words lines = With(kPorts, {"SendPacket 1 " + Capture("stp.pcap") + "#1",
                                    "SendPacket 2 udp", "SendPacket 3 udp"});
  const Json all = Last(With(lines, {"show transmitted"}))["transmitted"];
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all.at(0)["command"], "BRMGR_CMD_SEND_BPDU");
  EXPECT_EQ(all.at(0)["port"], "uni1");
  EXPECT_EQ(all.at(0)["frame"]["bytes"], FrameOf("stp.pcap", 1));
  EXPECT_EQ(all.at(2)["outcome"], "egress_link_down");
}

TEST(PacketPath, ShowTransmitted_InText) {
  const Ran ran = RunLines(With(
      kPorts, {"show transmitted", "SendPacket 1 stp", "SendPacket 2 stp", "show transmitted 1"}));
  EXPECT_THAT(ran.out, HasSubstr("nothing was transmitted\n"));
  EXPECT_THAT(ran.out, HasSubstr("number  command    port  outcome      frame\n"
                                 "2       SEND_BPDU  uni2  transmitted  "));
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

struct PressRow {
  std::string press;
  std::vector<std::string> doings;
};

void PrintTo(const PressRow& row, std::ostream* out) {
  *out << row.press;
}

class PacketPathPress : public testing::TestWithParam<PressRow> {};

TEST_P(PacketPathPress, IsMeasuredOnTheUnitsTime) {
  const Json pressed = Last(With(kStart, {GetParam().press}));
  EXPECT_EQ(pressed["listening"], true);
  EXPECT_EQ(Doings(pressed["left"]), GetParam().doings);
}

const std::vector<std::string> kReset = {"VOS_ResetDefaultCfg()", "VOS_TaskDelay(500)",
                                         "VOS_Reboot(11)"};
INSTANTIATE_TEST_SUITE_P(Durations, PacketPathPress,
                         testing::Values(PressRow{"button press", {"VOS_Reboot(11)"}},
                                         PressRow{"button press 4999", {"VOS_Reboot(11)"}},
                                         PressRow{"button press 5000", kReset},
                                         PressRow{"button press 60000", kReset}));

TEST(PacketPath, InFactoryMode_APressIsAnnouncedOnly) {
  const Json pressed = Last(With({"config factory-mode 1"}, With(kStart, {"button press 5000"})));
  const std::string announced =
      "/usr/local/bin/msgall.sh \"RST button press 250 milliseconds, restart system now\"";
  const std::string restart = "/usr/local/bin/msgall.sh \"[RST PRESS]Reboot System now ......\"";
  EXPECT_THAT(Doings(pressed["left"]), ElementsAre(announced, restart, announced, restart));
}

TEST(PacketPath, APressThatNobodyHears_SaysHowToListen) {
  const Ran ran = RunLines({"Init", "button press 5000"});
  EXPECT_THAT(ran.out, HasSubstr("button pressed for 5000 ms\nno task of the library listens: "
                                 "config run-tasks on, then Init\n"));
}

}  // namespace
}  // namespace onu
