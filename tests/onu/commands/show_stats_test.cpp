/// @file
/// Tests of the counters of the UNI ports: their values, and their rates by the second.
#include <gmock/gmock.h>
#include <memory>
#include <string>

#include "run_lines.h"
#include "scratch.h"

namespace onu {
namespace {

using test::Documents;
using test::Ran;
using test::RunLines;
using test::With;
using testing::EndsWith;
using testing::HasSubstr;

/// UNI port 1 forwards untagged frames and gets those of VLAN 100.
const Words kForwarding = {"Init", "SetPortAdminState 1 1", "AddUsTag 1 100 0"};

/// Seconds that pass at once, each with something that happens in it; the user ends the watch when
/// nothing more is to happen.
class ScriptedTicker : public Ticker {
 public:
  explicit ScriptedTicker(int seconds) : left_(seconds) {}
  bool second() override { return left_-- > 0; }

 private:
  int left_;
};

TEST(ShowStats, Counters_AreThoseOfTheGetters) {
  const Json stats =
      Documents(With(kForwarding,
                     {"send uni1 udp length 60", "send uni1 udp length 1514",
                      "send uni1 udp dst ff:ff:ff:ff:ff:ff length 61", "send uni1 udp vlan 7",
                      "send wan udp vlan 100 length 500", "show stats"}))
          .back()["stats"];
  ASSERT_EQ(stats.size(), 4U);
  // 64 + 1518 + 65 + 64 octets received, 504 transmitted.
  EXPECT_EQ(stats[0],
            Json({{"port", "uni1"},    {"rxOctets", 1711}, {"rxUnicast", 3},  {"rxMulticast", 0},
                  {"rxBroadcast", 1},  {"rxErrors", 1},    {"rxDiscards", 1}, {"rx64", 2},
                  {"rx65to127", 1},    {"rx128to255", 0},  {"rx256to511", 0}, {"rx512to1023", 0},
                  {"rx1024to1518", 1}, {"txOctets", 504},  {"txUnicast", 1},  {"txMulticast", 0},
                  {"txBroadcast", 0},  {"txErrors", 0},    {"txDiscards", 0}, {"tx64", 0},
                  {"tx65to127", 0},    {"tx128to255", 0},  {"tx256to511", 1}, {"tx512to1023", 0},
                  {"tx1024to1518", 0}}));
  EXPECT_EQ(stats[3]["port"], "uni4");
}

TEST(ShowStats, Text_HasAColumnForEachPort) {
  const std::string text = RunLines({"config eth 2", "InitDrv", "clear trace", "show stats"}).out;
  EXPECT_THAT(text, HasSubstr("counter                   uni1  uni2\n"
                              "received octets           0     0\n"));
  EXPECT_THAT(text, EndsWith("transmitted of 1024-1518  0     0\n"));
  EXPECT_THAT(RunLines({"InitDrv", "show stats 2"}).out,
              HasSubstr("\ncounter                   uni2\nreceived octets           0\n"));
}

TEST(ShowStats, GettersThatFail_AreLeftOut) {
  const Json stats = Documents({"show stats 1"}).back()["stats"];
  EXPECT_EQ(stats[0]["rxOctets"], nullptr) << "the device is not open";
  EXPECT_EQ(stats[0]["tx1024to1518"], nullptr);
  EXPECT_THAT(RunLines({"show stats 1"}).out, HasSubstr("\nreceived unicast          -\n"));
}

TEST(ShowStats, WrongUse_IsRefused) {
  EXPECT_EQ(RunLines({"show stats 5"}).errors,
            "test: show stats: expected a UNI port from 1 to 4, got 5\n");
  EXPECT_EQ(RunLines({"show stats --count 3"}).errors,
            "test: show stats: --count: expected --watch with it\n");
  EXPECT_EQ(RunLines({"show stats --watch"}).errors,
            "test: show stats: expected --count with --watch, "
            "since nobody is at the prompt to end it\n");
}

TEST(ShowStats, Watch_ShowsTheRatesOfEverySecond) {
  const std::string out =
      RunLines(
          With(kForwarding, {"send uni1 udp length 60", "send uni1 udp length 96",
                             "send wan udp vlan 100 length 500", "show stats 1 --watch --count 2"}))
          .out;
  EXPECT_THAT(out, EndsWith("1.0 s uni1: in 2.0 frames/s 164.0 octets/s 0.0 discards/s 0.0 "
                            "errors/s, out 1.0 frames/s 504.0 octets/s 0.0 discards/s\n"
                            "2.0 s uni1: in 0.0 frames/s 0.0 octets/s 0.0 discards/s 0.0 errors/s, "
                            "out 0.0 frames/s 0.0 octets/s 0.0 discards/s\n"));
}

TEST(ShowStats, Watch_CountsFromTheLastWatch) {
  const auto documents = Documents(
      With(kForwarding, {"show stats 2 --watch --count 3", "send uni1 udp vlan 7",
                         "show stats 1 --watch --count 1", "send uni1 01020304050607080910111213ff",
                         "send uni1 udp", "show stats 1 --watch --count 1"}));
  // Port 1 was not read before: one discarded frame in four seconds; then one frame in one second.
  const Json& first = documents.at(documents.size() - 6);
  EXPECT_EQ(first["milliseconds"], 4000);
  EXPECT_EQ(first["rates"][0]["rxFrames"], 0.25);
  EXPECT_EQ(first["rates"][0]["rxDiscards"], 0.25);
  EXPECT_EQ(first["rates"][0]["rxOctets"], 16.0);
  const Json& last = documents.at(documents.size() - 2);
  EXPECT_EQ(last["milliseconds"], 5000);
  EXPECT_EQ(last["rates"][0]["rxFrames"], 2.0);
  EXPECT_EQ(documents.back()["seconds"], 1);
}

TEST(ShowStats, Watch_EndsWhenTheUserHasHadEnough) {
  SessionOptions options;
  options.makeTicker = [] { return std::make_unique<ScriptedTicker>(3); };
  const auto endless = Documents({"show stats 1 --watch"}, options);
  ASSERT_EQ(endless.size(), 4U);
  EXPECT_EQ(endless[2]["milliseconds"], 3000);
  EXPECT_EQ(endless[3]["seconds"], 3);
  EXPECT_EQ(Documents({"show stats --watch --count 2"}, options).size(), 3U);
  EXPECT_EQ(Documents({"show stats --watch --count 9"}, options).back()["seconds"], 3);
}

TEST(ShowStats, AllPorts_HaveALineEach) {
  const auto documents = Documents({"config eth 3", "show stats --watch --count 1"});
  ASSERT_EQ(documents[1]["rates"].size(), 3U);
  EXPECT_EQ(documents[1]["rates"][2]["port"], "uni3");
}

TEST(ShowStats, Journal_ReplaysReadingsAndSeconds) {
  const test::Scratch scratch;
  const std::string file = (scratch.path() / "session.json").string();
  // Without the start-up, which the library does differently the second time.
  const Words lines = {"send uni1 udp", "show stats 1",  "show stats --watch --count 2",
                       "clear stats 1", "send uni1 udp", "journal save " + file};
  EXPECT_THAT(RunLines(lines).out, EndsWith(": 5 calls saved\n"));
  const Ran replayed = RunLines({"journal replay " + file});
  EXPECT_EQ(replayed.errors, "");
  EXPECT_THAT(replayed.out, HasSubstr("5 calls, "));
}

}  // namespace
}  // namespace onu
