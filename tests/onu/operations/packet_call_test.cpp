/// @file
/// Tests of the packet path's operations as lines: the frames, records and events made of words.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "run_lines.h"
#include "run_program.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::EndsWith;
using testing::HasSubstr;

/// Destination and source address, a tag of VID 100 and priority 5, type 0x88B5.
const std::string kAddresses = "ffffffffffff021122334455";
const std::string kTagged = kAddresses + "8100a06488b50000";
const std::string kUntagged = kAddresses + "88b50000";

TEST(PacketOperation, GetTag_TellsTheTag) {
  EXPECT_EQ(RunLines({"GetTag " + kTagged}).out,
            "BCM6838X_GetTag(" + kTagged + ") = 1\n  vid = 100\n  pri = 5\n");
  const Json document = RunLinesAsJson({"GetTag " + kTagged}).lastDocument();
  EXPECT_EQ(document["vid"], 100);
  EXPECT_EQ(document["pri"], 5);
}

TEST(PacketOperation, TagHelpers_ReportTheFrame) {
  EXPECT_THAT(RunLines({"RemoveVlanTag " + kTagged}).out,
              HasSubstr(" = 0 (ok)\n  frame " + kUntagged + " ("));
  EXPECT_THAT(RunLines({"TranslateVlanTag 200 3 " + kTagged}).out,
              HasSubstr(" = 0 (ok)\n  frame " + kAddresses + "810060c888b50000 ("));
  EXPECT_THAT(RunLines({"AddVlanTag 100 5 " + kUntagged}).out,
              HasSubstr(" = 0 (ok)\n  frame " + kTagged + " ("));
  EXPECT_THAT(RunLines({"RemoveVlanTag " + kUntagged}).out,
              HasSubstr(" = 1 (failed)\n  frame " + kUntagged + " ("));
}

TEST(PacketOperation, AccordVlan_TakesSourceAndDestination) {
  EXPECT_THAT(RunLines({"AccordVlan 1 0 " + kUntagged}).out,
              HasSubstr(") = 0\n  frame " + kUntagged + " ("));
  EXPECT_THAT(RunLines({"AccordVlan 0 5 " + kUntagged}).out, HasSubstr(") = 1\n"));
  EXPECT_THAT(RunLines({"AccordVlan 5 0 " + kUntagged}).out, HasSubstr(") = 1\n"));
}

TEST(PacketOperation, Predicates_LookAtTheFrame) {
  EXPECT_THAT(RunLines({"IsPPPoEProtocol " + kAddresses + "8863"}).out, EndsWith(" = 1\n"));
  EXPECT_THAT(RunLines({"IsPPPoEProtocol " + kUntagged}).out, EndsWith(" = 0\n"));
  EXPECT_THAT(RunLines({"IsDHCPProtocol udp dport 67"}).out, EndsWith(" = 1\n"));
  EXPECT_THAT(RunLines({"IsDHCPProtocol udp dport 68"}).out, EndsWith(" = 0\n"));
  EXPECT_THAT(RunLines({"IsMldPacket " + kUntagged}).out, EndsWith(" = 0\n"));
}

TEST(PacketOperation, Transmits_SendTheFrameToThePort) {
  const Ran ran = RunLinesAsJson({"InitDrv", "SendPacket 2 " + kUntagged, "show trace 1"});
  const Json event = ran.lastDocument()["events"][0];
  EXPECT_EQ(event["name"], "BRMGR_CMD_SEND_PKT");
  EXPECT_EQ(event["sent"]["desPort"], 2);
  EXPECT_EQ(event["sent"]["size"], 16);
  EXPECT_EQ(event["sent"]["data"], kUntagged + "0000");
}

TEST(PacketOperation, Transmits_OfEachKind) {
  struct Row {
    std::string operation;
    std::string command;
  };
  for (const Row& row :
       {Row{"SendBpduPkt", "BRMGR_CMD_SEND_BPDU"}, Row{"SendDhcpPkt", "BRMGR_CMD_SEND_DHCP"},
        Row{"SendPPPoEPkt", "BRMGR_CMD_SEND_PPPOE"},
        Row{"RdpaSendIgmpPkt", "BRMGR_CMD_SEND_PKT"}}) {
    const Ran ran = RunLinesAsJson({"InitDrv", row.operation + " 3 " + kUntagged, "show trace 1"});
    const Json event = ran.lastDocument()["events"][0];
    EXPECT_EQ(event["name"], row.command);
    EXPECT_EQ(event["sent"]["desPort"], 3);
    EXPECT_THAT(event["sent"]["data"].get<std::string>(), testing::StartsWith(kUntagged));
  }
}

TEST(PacketOperation, AFrameTooLongForItsRecord_IsToldWhole) {
  const std::string longFrame = kUntagged + std::string(4000, '0');  // two digits a byte
  EXPECT_THAT(RunLines({"InitDrv", "SendDhcpPkt 3 " + longFrame}).out,
              EndsWith(" = 2 (invalid)\n"));
}

TEST(PacketOperation, Relays_GetTheFrameAtItsOffset) {
  EXPECT_THAT(RunLines({"InitDrv", "DhcpRelayHandle 2 udp dport 67"}).out, EndsWith(" = 0 (ok)\n"));
  EXPECT_THAT(RunLines({"InitDrv", "PPPoERelayHandle 2 " + kAddresses + "8863"}).out,
              EndsWith(" = 0 (ok)\n"));
  EXPECT_THAT(RunLines({"InitDrv", "PPPoERelayHandle 2 " + kUntagged}).out,
              EndsWith(" = 1 (failed)\n"));
}

TEST(PacketOperation, GetEvent_ReadsTheEventOfTheLine) {
  EXPECT_THAT(RunLines({"InitDrv", "GetEvent 3 2 " + kUntagged}).out,
              HasSubstr(" = 0 (ok)\n  BrmgrEvent eventType=3 length=16 "));
  EXPECT_THAT(RunLines({"GetEvent 3 2 " + kUntagged}).out, HasSubstr(" = "));
}

TEST(PacketOperation, CapturePacket_HandsTheFrameToItsClient) {
  const std::string igmp =
      "01005e010203021122334455080046000020000000000102" + std::string(40, '0');
  const Ran ran = RunLinesAsJson({"InitDrv", "CapturePacket 1 2 " + igmp, "show trace 1"});
  EXPECT_EQ(ran.lastDocument()["events"][0]["call"],
            "IGMP_DispatchPacket(" + igmp + ", vid 0, port 2)");
  const Ran bpdu = RunLinesAsJson({"InitDrv", "CapturePacket 3 2 " + kUntagged, "show trace 1"});
  EXPECT_THAT(bpdu.lastDocument()["events"][0]["message"].get<std::string>(), EndsWith(kUntagged))
      << "the frame of a BPDU lies two bytes further";
}

/// A frame of a capture, and what the three predicates say of it.
struct CaptureRow {
  std::string frame;
  int mld;
  int dhcp;
  int pppoe;
};

TEST(PacketCaptures, Predicates) {
  const std::vector<CaptureRow> rows = {
      {"stp.pcap#1", 0, 0, 0},
      {"stp.pcap#3", 0, 0, 0},
      {"dhcp.pcap#1", 0, 1, 0},
      {"dhcp.pcap#2", 0, 0, 0},
      {"dhcp.pcap#3", 0, 1, 0},
      {"dhcp.pcap#4", 0, 0, 0},
      {"pppoe-discovery.pcap#1", 0, 0, 1},
      {"pppoe-discovery.pcap#2", 0, 0, 1},
      {"pppoe-discovery.pcap#3", 0, 0, 1},
      {"pppoe-discovery.pcap#4", 0, 0, 1},
      {"pppoe-discovery.pcap#5", 0, 0, 1},
      {"igmp-join.pcap#1", 0, 0, 0},
      {"igmpv3-join.pcap#1", 0, 0, 0},
      {"mld-report.pcap#1", 1, 0, 0},
      {"mld-report.pcap#2", 1, 0, 0},
      {"mld-report.pcap#3", 1, 0, 0},
      {"mld-report.pcap#4", 1, 0, 0},
      {"arp-ping.pcap#1", 0, 0, 0},
      {"arp-ping.pcap#3", 0, 0, 0},
      {"vlan-ping.pcap#1", 0, 0, 0},
      {"qinq-ping.pcap#3", 0, 0, 0},
  };
  for (const CaptureRow& row : rows) {
    const std::string path = (test::Sources() / "tests/data" / row.frame).string();
    EXPECT_EQ(RunLinesAsJson({"IsMldPacket " + path}).lastDocument()["result"], row.mld) << path;
    EXPECT_EQ(RunLinesAsJson({"IsDHCPProtocol " + path}).lastDocument()["result"], row.dhcp)
        << path;
    EXPECT_EQ(RunLinesAsJson({"IsPPPoEProtocol " + path}).lastDocument()["result"], row.pppoe)
        << path;
  }
}

/// The newest event of the trace behind an operation on a frame of a capture, as its kind and name.
std::string NewestEvent(const std::string& operation, const std::string& frame) {
  const std::string path = (test::Sources() / "tests/data" / frame).string();
  const Ran ran = RunLinesAsJson({"InitDrv", operation + " " + path, "show trace 1"});
  const Json event = ran.lastDocument()["events"][0];
  if (event["kind"] == "command") {
    return event["name"].get<std::string>();
  }
  const auto call = event["call"].get<std::string>();
  return call.substr(0, call.find('(')) + call.substr(call.rfind(", vid"));
}

TEST(PacketCaptures, CapturePacket_EveryFrameReachesItsClient) {
  for (const int number : {1, 2, 3}) {
    EXPECT_EQ(NewestEvent("CapturePacket 1 2", "igmp-join.pcap#" + std::to_string(number)),
              "IGMP_DispatchPacket, vid 0, port 2)");
  }
  for (const int number : {1, 2, 3, 4}) {
    EXPECT_EQ(NewestEvent("CapturePacket 1 3", "igmpv3-join.pcap#" + std::to_string(number)),
              "IGMP_DispatchPacket, vid 0, port 3)");
    EXPECT_EQ(NewestEvent("CapturePacket 1 4", "mld-report.pcap#" + std::to_string(number)),
              "MLD_DispatchPacket, vid 0, port 4)");
  }
  for (const int number : {1, 3}) {
    EXPECT_EQ(NewestEvent("CapturePacket 6 2", "dhcp.pcap#" + std::to_string(number)),
              "BRMGR_CMD_SEND_DHCP");
  }
  for (const int number : {1, 2, 3, 4, 5}) {
    EXPECT_EQ(NewestEvent("CapturePacket 7 2", "pppoe-discovery.pcap#" + std::to_string(number)),
              "BRMGR_CMD_SEND_PPPOE");
  }
}

TEST(PacketCaptures, SendPacket_SortsThemByKind) {
  struct Row {
    std::string frame;
    std::string command;
  };
  for (const Row& row :
       {Row{"stp.pcap#1", "BRMGR_CMD_SEND_BPDU"}, Row{"stp.pcap#3", "BRMGR_CMD_SEND_BPDU"},
        Row{"dhcp.pcap#1", "BRMGR_CMD_SEND_DHCP"}, Row{"dhcp.pcap#2", "BRMGR_CMD_SEND_PKT"},
        Row{"pppoe-discovery.pcap#2", "BRMGR_CMD_SEND_PPPOE"},
        Row{"igmp-join.pcap#1", "BRMGR_CMD_SEND_PKT"},
        Row{"mld-report.pcap#1", "BRMGR_CMD_SEND_PKT"},
        Row{"qinq-ping.pcap#1", "BRMGR_CMD_SEND_PKT"}}) {
    EXPECT_EQ(NewestEvent("SendPacket 2", row.frame), row.command) << row.frame;
  }
}

}  // namespace
}  // namespace onu
