/// @file
/// Tests of the commands about ports: links, states, isolation, mirroring, registers, VLAN objects.
#include <gmock/gmock.h>

#include "capture_file.h"
#include "run_lines.h"
#include "scratch.h"

namespace onu {
namespace {

using test::FrameTo;
using test::Last;
using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::Scratch;
using test::With;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// Forwards all untagged frames of UNI ports 1 and 2. Nobody has powered the PHYs down.
const Words kForwarding = {"InitDrv", "RdpaIcInit",
                           "Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=2 vlanNum=0 forward=pass",
                           "Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=3 vlanNum=0 forward=pass"};

/// The port's element of "show ports" behind the lines.
Json PortAfter(const Words& lines, std::size_t uni) {
  return Last(With(lines, {"show ports"}))["ports"].at(uni - 1);
}

/// The outcome of the frame that the last line sends.
std::string OutcomeAfter(const Words& lines) {
  return Last(lines)["frames"].at(0)["outcome"].get<std::string>();
}

TEST(Ports, Init_LeavesThePhysDownUntilThePortIsOpened) {
  EXPECT_EQ(OutcomeAfter({"send uni1 dst 01:80:c2:00:00:00"}), "no_class") << "without a start";
  EXPECT_EQ(OutcomeAfter({"Init", "send uni1 dst 01:80:c2:00:00:00"}), "port_link_down");
  const Words open = {"Init", "SetPortAdminState 1 1", "send uni1 dst 01:80:c2:00:00:00"};
  EXPECT_EQ(OutcomeAfter(open), "flow_trap");
  EXPECT_EQ(OutcomeAfter({"Init", "SetPortAdminState 1 1", "SetPortAdminState 1 0",
                          "send uni1 dst 01:80:c2:00:00:00"}),
            "port_admin_down");
  EXPECT_EQ(OutcomeAfter({"Init", "SetPortAdminState 1 1", "send uni2 udp"}), "port_link_down");
}

TEST(Ports, Show_WithoutAnyCommand) {
  EXPECT_EQ(RunLines({"config eth 2", "show ports"}).out,
            "port  admin  link  speed  duplex  pause  isolated  mirror  in  octets  out  octets\n"
            "uni1  up     up    1000   full    none   -         -       0   0       0    0\n"
            "uni2  up     up    1000   full    none   -         -       0   0       0    0\n"
            "wan   -      -     -      -       -      -         -       0   0       0    0\n");
}

TEST(Ports, Show_EveryColumn) {
  const Ran ran = RunLines(
      With(kForwarding,
           {"config feature 27 1", "SetPortAdminState 3 0", "link uni2 up 100 full",
            "SetPortIsolateMask 1 6", "SetPortMirrorDestport 4", "SetPortMirrorMode 1 0 0 0",
            "SetPortMirrorEnable 1", "send uni1 udp length 100", "clear trace", "show ports"}));
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, EndsWith("port  admin  link  speed  duplex  pause  isolated   mirror        "
                                "    in  octets  out  octets\n"
                                "uni1  up     up    1000   full    none   uni2,uni3  received to "
                                "uni4  1   100     0    0\n"
                                "uni2  up     up    100    full    none   uni1       received to "
                                "uni4  0   0       0    0\n"
                                "uni3  down   down  -      -       -      uni1       received to "
                                "uni4  0   0       0    0\n"
                                "uni4  up     up    1000   full    none   -          destination   "
                                "    0   0       1    100\n"
                                "wan   -      -     -      -       -      -          -             "
                                "    0   0       1    100\n"));
}

TEST(Ports, Show_MirrorDirections) {
  const auto mirror = [](const std::string& mode) {
    const Words lines = {"InitDrv", "SetPortMirrorDestport 4",
                         "SetPortMirrorMode " + mode + " 0 0 0", "SetPortMirrorEnable 1"};
    const Json port = PortAfter(lines, 1);
    return Words{port["mirrorReceivedTo"].dump(), port["mirrorTransmittedTo"].dump()};
  };
  EXPECT_THAT(mirror("1"), ElementsAre("\"uni4\"", "null"));
  EXPECT_THAT(mirror("2"), ElementsAre("null", "\"uni4\""));
  EXPECT_THAT(mirror("3"), ElementsAre("\"uni4\"", "\"uni4\""));
  EXPECT_THAT(RunLines({"InitDrv", "SetPortMirrorDestport 4", "SetPortMirrorMode 2 0 0 0",
                        "SetPortMirrorEnable 1", "show ports"})
                  .out,
              HasSubstr("transmitted to uni4"));
  EXPECT_THAT(RunLines({"InitDrv", "SetPortMirrorDestport 4", "SetPortMirrorMode 3 0 0 0",
                        "SetPortMirrorEnable 1", "show ports"})
                  .out,
              HasSubstr("both to uni4"));
}

TEST(Ports, Show_WhatTheDriverAndTheShellKeep) {
  const Json port = PortAfter({"InitDrv", "SetPortLoopback 2 1", "SetPortStpEnable 7"}, 2);
  EXPECT_EQ(port["loopback"], true);
  EXPECT_EQ(port["spanningTree"], 7);
  EXPECT_EQ(port["transparent"], false);
  EXPECT_EQ(port["passesFrames"], true);
  EXPECT_EQ(port["mirrorDestination"], false);
}

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

TEST(Isolation, FrameForANeighbour_PassesUntilThePortsAreIsolated) {
  const Words seen = With(kForwarding, {"send uni2 src 02:00:00:00:00:22 dst 02:00:00:00:00:33"});
  const std::string frame = "send uni1 dst 02:00:00:00:00:22";
  const Ran passed = RunLinesAsJson(With(seen, {frame}));
  EXPECT_EQ(passed.lastDocument()["frames"][0]["egress"], Json::array({"uni2"}));

  const Ran held = RunLines(With(seen, {"SetPortIsolateMask 1 2", frame}));
  EXPECT_THAT(held.out, HasSubstr("1      dropped  no_egress  - (egress_isolated: uni2)  "));
  const Json document =
      RunLinesAsJson(With(seen, {"SetPortIsolateMask 1 2", frame, "show counters"})).lastDocument();
  EXPECT_THAT(document["counters"].dump(),
              HasSubstr(R"({"port":"uni2","outcome":"egress_isolated","disposition":"drop",)"));

  EXPECT_EQ(OutcomeAfter(With(seen, {"SetPortIsolateMask 1 2", "SetPortIsolateMask 1 0", frame})),
            "flow_forward");
}

TEST(Isolation, Explain_NamesTheNeighbourAndTheClosedPort) {
  const Words seen = With(kForwarding, {"send uni2 src 02:00:00:00:00:22 dst 02:00:00:00:00:33",
                                        "SetPortIsolateMask 2 1"});
  const Ran ran = RunLines(With(seen, {"explain uni1 dst 02:00:00:00:00:22"}));
  EXPECT_THAT(ran.out, EndsWith("outcome: no_egress, dropped "
                                "(every port that the frame was to leave by is closed to it)\n"
                                "MAC table: 02:00:00:00:00:22 in VLAN 0 is at uni2 (dynamic)\n"
                                "switched locally: the destination was seen at uni2\n"
                                "not to uni2: egress_isolated\n"));
}

const Words kMirroring = With(
    kForwarding, {"SetPortMirrorDestport 3", "SetPortMirrorMode 1 0 0 0", "SetPortMirrorEnable 1"});

TEST(Mirror, Out_WritesTheCopiesToTheMirrorPort) {
  const Scratch scratch;
  const std::string capture =
      scratch.write("in.pcap", test::CaptureOf({FrameTo("01:80:c2:00:00:00")}));
  const std::string out = scratch / "out";
  const Ran ran = RunLinesAsJson(With(kMirroring, {"send uni1 " + capture + " --out " + out}));
  EXPECT_EQ(ran.lastDocument()["captures"], Json::array({out + "/trap.pcap", out + "/uni3.pcap"}));
  const std::vector<CapturedFrame> copies = ReadCapture(out + "/uni3.pcap");
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(copies[0].bytes, FrameTo("01:80:c2:00:00:00"));
  EXPECT_EQ(copies[0].time.tv_sec, 1) << "the time of the frame";
}

TEST(Mirror, LostCopy_IsNotWritten) {
  const Scratch scratch;
  const std::string out = scratch / "out";
  const Ran ran =
      RunLinesAsJson(With(kMirroring, {"link uni3 down", "send uni1 udp --out " + out}));
  EXPECT_EQ(ran.lastDocument()["captures"], Json::array({out + "/wan.pcap"}));
  const Json copies = ran.lastDocument()["frames"][0]["copies"];
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(copies[0]["outcome"], "egress_link_down");
}

TEST(Mirror, Verdict_NamesEachCopy) {
  const Ran ran = RunLinesAsJson(With(kMirroring, {"send uni1 udp"}));
  const Json frame = ran.lastDocument()["frames"][0];
  ASSERT_EQ(frame["copies"].size(), 1U);
  const Json& copy = frame["copies"][0];
  EXPECT_EQ(copy["port"], "uni3");
  EXPECT_EQ(copy["of"], "uni1");
  EXPECT_EQ(copy["when"], "received");
  EXPECT_EQ(copy["outcome"], "mirrored");
  EXPECT_EQ(copy["frame"], frame["frame"]) << "no VLAN action here";
  EXPECT_THAT(RunLines(With(kMirroring, {"send uni1 udp"})).out,
              HasSubstr("flow_forward  wan (mirrored: uni3)  "));
  EXPECT_THAT(RunLines(With(kMirroring, {"explain uni1 udp"})).out,
              EndsWith("copy of the frame received at uni1, to uni3: mirrored\n"));
}

TEST(Phy, Show_ListsRegistersAndLooksWithoutEffect) {
  const Ran ran = RunLines({"link uni1 down", "link uni1 up", "show phy 1", "show phy 1"});
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, HasSubstr("register  name                value   set\n"
                                 "0         control             0x1140  negotiate full-duplex "
                                 "speed-1000\n"
                                 "1         status              0x7969  negotiated\n"))
      << "the link was down since the status was read last";
  EXPECT_EQ(ran.out.find("link\n"), std::string::npos) << "the second look shows the same";
  EXPECT_EQ(ran.out.find("\n16 "), std::string::npos);
  EXPECT_THAT(RunLines({"InitPort", "show phy 1"}).out,
              HasSubstr("\n24        -                   0xf077  -\n"));
}

TEST(Phy, Json_HasAllRegisters) {
  const Json document = RunLinesAsJson({"link uni2 up 100 half", "show phy 2"}).lastDocument();
  EXPECT_EQ(document["port"], "uni2");
  EXPECT_EQ(document["partner"], true);
  EXPECT_EQ(document["link"], Json({{"speed", 100}, {"duplex", "half"}, {"pause", "none"}}));
  ASSERT_EQ(document["registers"].size(), 32U);
  EXPECT_EQ(document["registers"][5]["value"], "0x4081") << "acknowledge, 100 half, IEEE 802.3";
  EXPECT_EQ(document["registers"][5]["set"], Json::array({"acknowledge", "100-half"}));
}

TEST(Vlans, Show_WanObjectsThenThoseOfThePorts) {
  const Ran ran = RunLines({"AddLanVlan 2 300", "AddWanVlan 2 200 10", "AddLanVlan 1 30",
                            "AddWanVlan 1 100 4096", "show vlans"});
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, EndsWith("port  object  vlan      vids\n"
                                "wan   wan0    wan0_100  100\n"
                                "wan   wan0    wan0_200  200\n"
                                "uni1  lan0    lan0_30   30\n"
                                "uni2  lan1    lan1_300  300\n"));
}

TEST(Vlans, Json_HasTheVidsAsNumbers) {
  const Json vlans = RunLinesAsJson({"AddWanVlan 2 200 10", "show vlans"}).lastDocument()["vlans"];
  EXPECT_EQ(vlans.dump(), R"([{"port":"wan","object":"wan0","vlan":"wan0_200","vids":[200]}])");
}

TEST(Actions, Show_CountsTheFlowsAndPortActionsThatNameThem) {
  const Words lines = {"InitDrv",
                       "RdpaIcInit",
                       "Ioctl VLAN_ACTION_ADD cmd=pop dir=ds",
                       "Ioctl VLAN_ACTION_ADD cmd=pop dir=us",
                       "Ioctl FLOW_ADD dir=ds icIndex=1 outerVid=1 forward=pass vlanActionIndex=0",
                       "Ioctl FLOW_ADD dir=ds icIndex=1 outerVid=2 forward=pass vlanActionIndex=0",
                       "AddPortAction 1 0 1 0",
                       "show actions"};
  const Json actions = RunLinesAsJson(lines).lastDocument()["actions"];
  ASSERT_EQ(actions.size(), 2U);
  EXPECT_EQ(actions[0]["dir"], "us");
  EXPECT_EQ(actions[0]["flows"], 0);
  EXPECT_EQ(actions[0]["portActions"], 0);
  EXPECT_EQ(actions[1]["flows"], 2);
  EXPECT_EQ(actions[1]["portActions"], 1);
  EXPECT_THAT(RunLines(lines).out,
              HasSubstr("dir  action  operations  vid  pbit  tpid    flows  ports\n"));
}

}  // namespace
}  // namespace onu
