/// @file
/// Tests of the command that lists the ports: states, isolation, mirroring.
#include <gmock/gmock.h>

#include "commands/two_ports.h"
#include "language/capture_file.h"
#include "run_lines.h"
#include "scratch.h"

namespace onu {
namespace {

using test::FrameTo;
using test::kForwarding;
using test::OutcomeAfter;
using test::PortAfter;
using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::Scratch;
using test::With;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

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

}  // namespace
}  // namespace onu
