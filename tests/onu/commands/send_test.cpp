/// @file
/// Tests of sending frames: verdicts, counts, captures in and out.
#include <filesystem>
#include <gmock/gmock.h>
#include <string>

#include "base/text.h"
#include "language/capture_file.h"
#include "run_lines.h"
#include "scratch.h"

namespace onu {
namespace {

using test::CaptureOf;
using test::FrameTo;
using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::Scratch;
using test::With;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

constexpr const char* kBridgeGroup = "01:80:c2:00:00:00";
constexpr const char* kUnknown = "00:00:00:00:00:09";

/// Forwards all untagged frames of UNI port 1, and all downstream ones.
const Words kForwarding = {"InitDrv", "RdpaIcInit",
                           "Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=2 vlanNum=0 forward=pass",
                           "Ioctl FLOW_ADD dir=ds icIndex=0 ingressPort=0 vlanNum=0 forward=pass"};

TEST(Send, Verdict_NamesDispositionOutcomeAndDestination) {
  const Json document = RunLinesAsJson({"Init", "SetPortAdminState 1 1",
                                        std::string("send uni1 dst ") + kBridgeGroup})
                            .lastDocument();
  EXPECT_EQ(document["command"], "send");
  EXPECT_EQ(document["port"], "uni1");
  const Json& frame = document["frames"].at(0);
  EXPECT_EQ(frame["disposition"], "trap");
  EXPECT_EQ(frame["outcome"], "flow_trap");
  EXPECT_EQ(frame["dir"], "us");
  EXPECT_EQ(frame["icIndex"], 2);
  EXPECT_EQ(frame["flowIndex"], 2);
  EXPECT_EQ(frame["vlanActionIndex"], nullptr);
  EXPECT_EQ(frame["egress"], Json::array());
  EXPECT_EQ(frame["source"], "");
  EXPECT_EQ(document["counts"], Json({{"frames", 1}, {"forward", 0}, {"trap", 1}, {"drop", 0}}));
}

TEST(Send, Capture_GivesALineForEachFrameAndCounts) {
  const Scratch scratch;
  const std::string capture =
      scratch.write("in.pcap", CaptureOf({FrameTo(kBridgeGroup), FrameTo(kUnknown)}));
  const Ran ran = RunLines({"Init", "SetPortAdminState 1 1", "send uni1 " + capture});
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, HasSubstr("1      trapped  flow_trap  unit, event BPDU of port 1  "));
  EXPECT_THAT(ran.out, HasSubstr("2      dropped  no_flow    -                           "));
  EXPECT_THAT(
      ran.out,
      EndsWith("2 frames: 0 forwarded, 1 trapped, 1 dropped\n1 event waits for the library\n"));
}

TEST(Send, NumberedFrame_IsTakenAlone) {
  const Scratch scratch;
  const std::string capture =
      scratch.write("in.pcap", CaptureOf({FrameTo(kBridgeGroup), FrameTo(kUnknown)}));
  const Json frames =
      RunLinesAsJson({"Init", "SetPortAdminState 1 1", "send uni1 " + capture + "#2"})
          .lastDocument()["frames"];
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0]["source"], capture + "#2");
  EXPECT_EQ(frames[0]["outcome"], "no_flow");
}

TEST(Send, SeveralCaptures_AreSentInTurn) {
  const Scratch scratch;
  const std::string capture = scratch.write("in.pcap", CaptureOf({FrameTo(kBridgeGroup)}));
  const Json document =
      RunLinesAsJson({"send uni1 " + capture + " " + capture + "#1"}).lastDocument();
  EXPECT_EQ(document["counts"]["frames"], 2);
}

TEST(Send, HexAndWords_AreTheSameFrame) {
  const Json words = RunLinesAsJson({"send wan udp vlan 100 pcp 5 dport 67"}).lastDocument();
  const auto hex = words["frames"][0]["frame"]["bytes"].get<std::string>();
  EXPECT_THAT(hex, HasSubstr("8100a0640800")) << "the tag: PCP 5, VID 100, then IPv4";
  const Json again = RunLinesAsJson({"send wan " + hex}).lastDocument();
  EXPECT_EQ(again["frames"], words["frames"]);
}

TEST(Send, Hex_MayBeARunt) {
  for (const char* words : {"00", "\"\"", "0180c2000000"}) {
    const Json frame =
        RunLinesAsJson({std::string("send uni1 ") + words}).lastDocument()["frames"][0];
    EXPECT_EQ(frame["outcome"], "runt_frame") << words;
  }
}

TEST(Send, Out_WritesWhatLeftEachPort) {
  const Scratch scratch;
  const std::string capture =
      scratch.write("in.pcap", CaptureOf({FrameTo(kBridgeGroup), FrameTo(kUnknown)}));
  const std::string out = scratch / "out/deep";
  const Ran ran = RunLinesAsJson(With(kForwarding, {"send uni1 " + capture + " --out " + out}));
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(ran.lastDocument()["captures"], Json::array({out + "/trap.pcap", out + "/wan.pcap"}));
  const std::vector<CapturedFrame> trapped = ReadCapture(out + "/trap.pcap");
  ASSERT_EQ(trapped.size(), 1U);
  EXPECT_EQ(trapped[0].bytes, FrameTo(kBridgeGroup));
  EXPECT_EQ(trapped[0].time.tv_sec, 1);
  const std::vector<CapturedFrame> forwarded = ReadCapture(out + "/wan.pcap");
  ASSERT_EQ(forwarded.size(), 1U);
  EXPECT_EQ(forwarded[0].bytes, FrameTo(kUnknown));
  EXPECT_EQ(forwarded[0].time.tv_sec, 2) << "the time stays that of the frame as captured";
}

TEST(Send, Out_WritesOneFilePerPortDownstream) {
  const Scratch scratch;
  const std::string out = scratch / "out";
  const Json document =
      RunLinesAsJson(With(kForwarding, {"send wan dst " + std::string(kUnknown) + " --out " + out}))
          .lastDocument();
  const auto ports = document["frames"][0]["egress"].get<Words>();
  EXPECT_THAT(ports, ElementsAre("uni1", "uni2", "uni3", "uni4"));
  for (const std::string& port : ports) {
    const std::filesystem::path capture = std::filesystem::path(out) / (port + ".pcap");
    EXPECT_EQ(ReadCapture(capture.string()).size(), 1U) << port;
  }
}

TEST(Send, Failures_SayWhatAndWhere) {
  const Scratch scratch;
  const std::string good = scratch.write("good.pcap", CaptureOf({FrameTo(kUnknown)}));
  const std::string cut = scratch.write("cut.pcap", CaptureOf({FrameTo(kUnknown)}, 20));
  const std::string wifi = scratch.write("wifi.pcap", CaptureOf({}, 65535, 105));
  const std::string junk = scratch.write("junk.pcap", "not a capture");
  std::string half = CaptureOf({FrameTo(kUnknown)});
  half.resize(half.size() - 5);
  const std::string broken = scratch.write("broken.pcap", half);
  struct Case {
    std::string words;
    ExitStatus status;
    std::string text;
  };
  const Case cases[] = {
      {cut, ExitStatus::WorkFailed, "cut.pcap#1: the capture holds 20 of the frame's 60 bytes"},
      {wifi, ExitStatus::WorkFailed, "wifi.pcap: expected Ethernet frames, got link layer 802.11"},
      {junk, ExitStatus::WorkFailed, "cannot read the capture: "},
      {broken, ExitStatus::WorkFailed, "broken.pcap: truncated dump file"},
      {"none.pcap", ExitStatus::WorkFailed, "none.pcap: No such file or directory"},
      {good + "#0", ExitStatus::WrongUse, "expected the number of a frame from 1 to 1, got \"0\""},
      {good + "#2", ExitStatus::WrongUse, "expected the number of a frame from 1 to 1, got \"2\""},
      {good + "#x", ExitStatus::WrongUse, "got \"x\""},
      {good + " udp", ExitStatus::WrongUse, "expected another capture"},
      {"upd", ExitStatus::WrongUse, "send: FRAME: "},
      {good + " --out " + junk, ExitStatus::WorkFailed, "cannot create the directory"},
  };
  for (const Case& one : cases) {
    const Ran ran = RunLines({"send uni1 " + one.words});
    EXPECT_EQ(ran.status, one.status) << one.words;
    EXPECT_THAT(ran.errors, HasSubstr(one.text)) << one.words;
    EXPECT_EQ(std::ranges::count(ran.errors, '\n'), 1) << ran.errors;
  }
}

TEST(Send, Port_MustBeOneOfTheUnit) {
  const Ran ran = RunLines({"config eth 2", "send uni3 udp"});
  EXPECT_EQ(ran.errors,
            "test: send: PORT: expected uni1, uni2, wan, got \"uni3\"; the unit has no more ports "
            "(config eth)\n");
}

}  // namespace
}  // namespace onu
