/// @file
/// Tests of the frames that reach the library: events that wait, what the library makes of them, what it
/// sent.
#include <cstddef>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "base/text.h"
#include "language/capture_file.h"
#include "run_lines.h"
#include "run_program.h"

namespace onu {
namespace {

using test::Doings;
using test::Last;
using test::Ran;
using test::RunLines;
using test::With;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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

}  // namespace
}  // namespace onu
