/// @file
/// Tests of completion.
#include "prompt/completion.h"

#include <filesystem>
#include <gmock/gmock.h>

#include "commands/command_table.h"
#include "scratch.h"
#include "session/console.h"

namespace onu {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

Words CandidatesOf(const std::string& line) {
  SessionOptions options;
  options.settings.platform.ethPorts = 2;
  Console console;
  Session session(options, AllCommands(), console, [](std::string_view) {});
  return Complete(session, line).candidates;
}

TEST(Completion, FirstWord_IsACommandOrAnOperation) {
  EXPECT_THAT(CandidatesOf("sho"), ElementsAre("show"));
  EXPECT_THAT(CandidatesOf("ex"), ElementsAre("explain"));
  EXPECT_THAT(CandidatesOf("initv"), ElementsAre("InitVlan"));
  EXPECT_THAT(CandidatesOf(""), Contains("show"));
  EXPECT_THAT(CandidatesOf(""), Contains("Ioctl"));
  EXPECT_THAT(CandidatesOf("xyz"), IsEmpty());
}

TEST(Completion, SecondWord_IsTheRestOfTheName) {
  EXPECT_THAT(CandidatesOf("show c"), ElementsAre("classes", "config", "counters"));
  EXPECT_THAT(CandidatesOf("show m"), ElementsAre("mac", "multicast"));
  EXPECT_THAT(CandidatesOf("fault "), ElementsAre("clear", "fraction", "from", "nth", "show"));
}

TEST(Completion, Ports_AreThoseOfTheUnit) {
  EXPECT_THAT(CandidatesOf("send "), ElementsAre("--out", "uni1", "uni2", "wan"));
  EXPECT_THAT(CandidatesOf("explain u"), ElementsAre("uni1", "uni2"));
  EXPECT_THAT(CandidatesOf("link "), ElementsAre("pause", "uni1", "uni2"));
}

TEST(Completion, Frames_AreWordsAndCaptures) {
  EXPECT_THAT(CandidatesOf("send uni1 vl"), ElementsAre("vlan"));
  const test::Scratch scratch;
  (void)scratch.write("one.pcap", "");
  (void)scratch.write("one.txt", "");
  std::filesystem::create_directory(scratch.path() / "one.d");
  EXPECT_THAT(CandidatesOf("send uni1 " + (scratch / "on")),
              ElementsAre(scratch / "one.d/", scratch / "one.pcap"));
}

TEST(Completion, Files_AndDirectories) {
  const test::Scratch scratch;
  (void)scratch.write("one.json", "");
  std::filesystem::create_directory(scratch.path() / "two");
  EXPECT_THAT(CandidatesOf("journal replay " + (scratch / "")),
              ElementsAre(scratch / "one.json", scratch / "two/"));
  EXPECT_THAT(CandidatesOf("send uni1 udp --out " + (scratch / "")), ElementsAre(scratch / "two/"));
  EXPECT_THAT(CandidatesOf("journal save /no/such/place/"), IsEmpty());
}

TEST(Completion, CommandsOfTheDevice_AndFieldsOfTheirRecords) {
  EXPECT_THAT(CandidatesOf("Ioctl flow_"), ElementsAre("FLOW_ADD", "FLOW_DEL"));
  EXPECT_THAT(CandidatesOf("Ioctl FLOW_DEL "),
              ElementsAre("dir=", "flag", "flowIndex=", "icIndex=", "len", "raw"));
  EXPECT_THAT(CandidatesOf("Ioctl FLOW_DEL dir=us fl"), ElementsAre("flag", "flowIndex="));
  EXPECT_THAT(CandidatesOf("Ioctl LASER_ON "), ElementsAre("flag", "len", "raw"));
  EXPECT_THAT(CandidatesOf("Ioctl FLOW_ADD res"), Not(Contains("reserved45=")));
  EXPECT_THAT(CandidatesOf("fault nth 1 IC_"), ElementsAre("IC_CREATE", "IC_DEL"));
}

TEST(Completion, Keywords_AreOfferedOnce) {
  EXPECT_THAT(CandidatesOf("show trace s"), ElementsAre("since"));
  EXPECT_THAT(CandidatesOf("show trace since 1 s"), IsEmpty());
  EXPECT_THAT(CandidatesOf("show log "), ElementsAre("level"));
  EXPECT_THAT(CandidatesOf("show log level "), IsEmpty());
}

TEST(Completion, ChoicesAndKeys) {
  EXPECT_THAT(CandidatesOf("log o"), ElementsAre("off", "on"));
  EXPECT_THAT(CandidatesOf("link uni1 "), ElementsAre("down", "pause", "up"));
  EXPECT_THAT(CandidatesOf("link uni1 up "), ElementsAre("10", "100", "1000", "pause"));
  EXPECT_THAT(CandidatesOf("link uni1 up 100 "), ElementsAre("full", "half", "pause"));
  EXPECT_THAT(CandidatesOf("show p"), ElementsAre("phy", "port", "ports"));
  EXPECT_THAT(CandidatesOf("config fail-m"), ElementsAre("fail-mac"));
  EXPECT_THAT(CandidatesOf("config fail-mac "), ElementsAre("off", "on"));
  EXPECT_THAT(CandidatesOf("config eth "), IsEmpty());
  EXPECT_THAT(CandidatesOf("help sh"), ElementsAre("show"));
  EXPECT_THAT(CandidatesOf("help show a"), ElementsAre("actions"));
}

TEST(Completion, Word_IsWhatIsTypedOfTheLastOne) {
  Console console;
  Session session({}, AllCommands(), console, [](std::string_view) {});
  EXPECT_EQ(Complete(session, "show cl").word, "cl");
  EXPECT_EQ(Complete(session, "show ").word, "");
}

}  // namespace
}  // namespace onu
