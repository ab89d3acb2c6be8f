/// @file
/// Tests of journals: saving, replaying, and finding differences.
#include <filesystem>
#include <gmock/gmock.h>

#include "report/json.h"
#include "run_lines.h"
#include "run_program.h"
#include "scratch.h"

namespace onu {
namespace {

using test::Finished;
using test::ReadFile;
using test::RunProgramIn;
using test::Scratch;
using testing::HasSubstr;
using testing::MatchesRegex;

/// A session that does something of every kind.
constexpr const char* kSession =
    "config eth 2\n"
    "config feature 27 0\n"
    "config board \"a board\"\n"
    "fault nth 4\n"
    "Init\n"
    "fault fraction 0.5 seed 3\n"
    "Ioctl FLOW_ADD dir=us icIndex=1 outerVid=100 vlanNum=1 ingressPort=2 forward=pass\n"
    "Ioctl VLAN_ACTION_ADD cmd=0x4 dir=ds flag 1\n"
    "Ioctl SEND_PKT raw 0102\n"
    "fault clear\n"
    "SetPortAdminState 1 1\n"
    "link uni1 up 100 half pause\n"
    "link uni2 down\n"
    "send uni1 udp vlan 100 dport 67\n"
    "send wan in.pcap\n"
    "show classes\n"
    "clear counters\n"
    "clear trace\n"
    "SetPortAdminState 1 0\n";

/// Runs the session and saves its journal as "journal.json" in the directory.
void SaveJournal(const Scratch& scratch, const std::string& session = kSession) {
  (void)scratch.write("in.pcap", test::CaptureOf({test::FrameTo("01:80:c2:00:00:00"),
                                                  test::FrameTo("02:00:5e:10:00:01"),
                                                  {0x01}}));
  const Finished saved =
      RunProgramIn(scratch.path(), {"run", "-"}, session + "journal save journal.json\n");
  ASSERT_EQ(saved.status, 0) << saved.errors;
  std::filesystem::remove(scratch / "in.pcap");
}

Finished Replay(const Scratch& scratch, const std::string& file = "journal.json") {
  return RunProgramIn(scratch.path(), {"-c", "journal replay " + file});
}

/// The journal with a change made to it, in the file "changed.json".
template <typename Change>
void ChangeJournal(const Scratch& scratch, Change change) {
  Json journal = Json::parse(ReadFile(scratch / "journal.json")).value();
  change(journal);
  (void)scratch.write("changed.json", journal.dump());
}

TEST(Journal, Replay_InANewProcessIsIdentical) {
  const Scratch scratch;
  SaveJournal(scratch);
  const Finished replayed = Replay(scratch);
  EXPECT_EQ(replayed.status, 0) << replayed.errors;
  EXPECT_THAT(replayed.out, MatchesRegex("20 calls, [0-9]+ records identical\n"));
  EXPECT_EQ(replayed.errors, "");
}

TEST(Journal, Replay_MakesTheSameJournal) {
  const Scratch scratch;
  SaveJournal(scratch);
  const Finished again = RunProgramIn(
      scratch.path(), {"-c", "journal replay journal.json", "-c", "journal save again.json"});
  ASSERT_EQ(again.status, 0) << again.errors;
  EXPECT_EQ(ReadFile(scratch / "again.json"), ReadFile(scratch / "journal.json"));
}

TEST(Journal, Replay_BringsTheConfigurationOfTheStart) {
  const Scratch scratch;
  const Finished saved = RunProgramIn(
      scratch.path(),
      {"--config", "ge=1", "--config", "board=B", "-c", "Init", "-c", "journal save journal.json"});
  ASSERT_EQ(saved.status, 0) << saved.errors;
  const Finished replayed =
      RunProgramIn(scratch.path(), {"-c", "journal replay journal.json", "-c", "show config"});
  EXPECT_EQ(replayed.status, 0) << replayed.errors;
  EXPECT_THAT(replayed.out, HasSubstr("\nge 1\n"));
  EXPECT_THAT(replayed.out, HasSubstr("\nboard B\n"));
}

TEST(Journal, File_HoldsRecordsLogLinesAndResults) {
  const Scratch scratch;
  SaveJournal(scratch, "fault nth 1\nInit\n");
  const Json journal = Json::parse(ReadFile(scratch / "journal.json")).value();
  EXPECT_EQ(journal["version"], 1);
  ASSERT_EQ(journal["calls"].size(), 2U);
  const Json& call = journal["calls"][1];
  EXPECT_EQ(call["words"], Json::array({"BCM6838X_Init"}));
  EXPECT_EQ(call["result"]["result"], 0);
  EXPECT_EQ(call["result"]["log"].size(), 1U);
  int records = 0;
  for (const Json& event : call["events"]) {
    if (event["kind"] == "command") {
      EXPECT_EQ(event["before"].get<std::string>().size(), 2 * event["length"].get<std::size_t>());
      EXPECT_TRUE(event.contains("after"));
      ++records;
    }
  }
  EXPECT_EQ(records, 17) << "ports, the default VLAN action, eight classes, six flows, feature";
}

TEST(Journal, TamperedRecord_IsFound) {
  const Scratch scratch;
  SaveJournal(scratch, "Init\n");
  ChangeJournal(scratch, [](Json& journal) {
    for (Json& event : journal["calls"][0]["events"]) {
      if (event["kind"] == "command" && event["code"] == 127) {
        event["before"] = "00000002";
      }
    }
  });
  const Finished replayed = Replay(scratch, "changed.json");
  EXPECT_EQ(replayed.status, 1);
  EXPECT_THAT(replayed.errors,
              MatchesRegex("onu: journal replay: call 1 \\(BCM6838X_Init\\): differs at "
                           "/events/[0-9]+/before: recorded \"00000002\", now \"00000001\"\n"));
  EXPECT_EQ(replayed.out, "");
}

TEST(Journal, TamperedResultsCallsAndCounts_AreFound) {
  const Scratch scratch;
  SaveJournal(scratch, "Init\nSetPortAdminState 1 1\nsend uni1 in.pcap\n");
  const auto replayChanged = [&scratch](auto change) {
    ChangeJournal(scratch, change);
    const Finished replayed = Replay(scratch, "changed.json");
    EXPECT_EQ(replayed.status, 1);
    return replayed.errors;
  };
  EXPECT_THAT(replayChanged([](Json& json) { json["calls"][0]["result"]["result"] = 1; }),
              HasSubstr("call 1 (BCM6838X_Init): differs at /result/result: recorded 1, now 0"));
  EXPECT_THAT(replayChanged([](Json& json) { json["calls"][0]["events"].erase(0); }),
              HasSubstr("differs at /events/1/"));
  EXPECT_THAT(replayChanged([](Json& json) {
                Json& events = json["calls"][0]["events"];
                events.erase(events.size() - 1);
              }),
              MatchesRegex(".*differs at /events: recorded [0-9]+ of them, now [0-9]+\n"));
  EXPECT_THAT(replayChanged([](Json& json) { json["calls"][2]["result"]["outcome"] = "no_flow"; }),
              HasSubstr("differs at /result/outcome: recorded \"no_flow\", now \"flow_trap\""));
  EXPECT_THAT(replayChanged([](Json& json) { json["calls"].erase(0); }),
              HasSubstr("call 1 (BCM6838X_SetPortAdminState 1 1): differs at /result/commands: "));
}

TEST(Journal, Replay_WantsAFreshSession) {
  const Scratch scratch;
  SaveJournal(scratch, "Init\n");
  const Finished replayed =
      RunProgramIn(scratch.path(), {"-c", "InitPort", "-c", "journal replay journal.json"});
  EXPECT_EQ(replayed.status, 1);
  EXPECT_EQ(replayed.errors,
            "onu: journal replay: expected a fresh session, got one in which \"BCM6838X_InitPort\" "
            "was done; replay in a new run of the program, before anything else\n");
}

TEST(Journal, Replay_RefusesWhatIsNoJournal) {
  const Scratch scratch;
  struct Case {
    const char* content;
    const char* text;
  };
  const Case cases[] = {
      {"", "expected a journal in JSON, got something else"},
      {"[1]", "expected a journal in JSON, got something else"},
      {R"({"version":2})", "expected a journal of version 1, got version 2"},
      {R"({"version":1})", "expected a journal with configuration and calls"},
      {R"({"version":1,"configuration":[],"calls":[{"words":[]}]})", "configuration and calls"},
      {R"({"version":1,"configuration":[[1,2]],"calls":[]})", "configuration and calls"},
      {R"({"version":1,"configuration":[["eth","x"]],"calls":[]})", "eth: expected a number"},
      {R"({"version":1,"configuration":[],"calls":[{"words":["journal","save","x"],"result":{},)"
       R"("events":[]}]})",
       "\"journal save\" is no command that a journal notes"},
      {R"({"version":1,"configuration":[],"calls":[{"words":["nothing"],"result":{},)"
       R"("events":[]}]})",
       "call 1 (nothing): unknown command"},
  };
  for (const Case& one : cases) {
    (void)scratch.write("bad.json", one.content);
    const Finished replayed = Replay(scratch, "bad.json");
    EXPECT_NE(replayed.status, 0) << one.content;
    EXPECT_THAT(replayed.errors, HasSubstr(one.text)) << one.content;
    EXPECT_EQ(std::ranges::count(replayed.errors, '\n'), 1) << replayed.errors;
    EXPECT_FALSE(std::filesystem::exists(scratch / "x"));
  }
  EXPECT_THAT(Replay(scratch, "absent.json").errors,
              HasSubstr("cannot read absent.json: No such file or directory"));
}

TEST(Journal, Save_FailsWhereItCannotWrite) {
  const Scratch scratch;
  const Finished saved = RunProgramIn(scratch.path(), {"-c", "journal save no/where.json"});
  EXPECT_EQ(saved.status, 1);
  EXPECT_EQ(saved.errors,
            "onu: journal save: cannot write no/where.json: No such file or directory\n");
}

TEST(Journal, ReadOnlyCommands_AreNotNoted) {
  const test::Ran ran = test::RunLinesAsJson({"show classes", "explain uni1 udp", "echo x", "help",
                                              "log on", "fault show", "journal save /dev/null"});
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(ran.lastDocument()["calls"], 0);
}

}  // namespace
}  // namespace onu
