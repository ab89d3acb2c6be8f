/// @file
/// Tests of the binding of words to argument rows.
#include "language/argument.h"

#include <gmock/gmock.h>

#include "commands/command_table.h"
#include "language/failure.h"
#include "session/config_table.h"

namespace onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const ArgumentRows kRows = {
    {"PORT", ArgumentType::Port, "a port"},
    {"N", ArgumentType::Number, "a number", Presence::Optional},
    {"S", ArgumentType::Number, "a seed", Presence::Optional, "seed"},
    {"ALL", ArgumentType::Flag, "everything", Presence::Optional, "--all"},
};
const ArgumentRows kRestRows = {
    {"PORT", ArgumentType::Port, "a port"},
    {"WORD", ArgumentType::Word, "words", Presence::Rest},
    {"DIR", ArgumentType::Directory, "a directory", Presence::Optional, "--out"},
};

/// The text of the failure, which must be wrong use.
std::string ErrorOf(const ArgumentRows& rows, const Words& words) {
  try {
    BindArguments("cmd", rows, words);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::WrongUse);
    return failure.what();
  }
  return "bound";
}

TEST(Argument, Bind_FillsRowsInOrder) {
  const Arguments bound = BindArguments("cmd", kRows, Words{"uni2", "0x10"});
  EXPECT_EQ(bound.word("PORT"), "uni2");
  EXPECT_EQ(bound.number("N"), 16U);
  EXPECT_FALSE(bound.has("S"));
  EXPECT_EQ(bound.optionalNumber("S"), std::nullopt);
  EXPECT_THAT(bound.words("S"), IsEmpty());
}

TEST(Argument, Bind_TakesKeywordsAnywhere) {
  const Arguments bound = BindArguments("cmd", kRows, Words{"seed", "7", "wan", "--all"});
  EXPECT_EQ(bound.word("PORT"), "wan");
  EXPECT_EQ(bound.optionalNumber("S"), 7U);
  EXPECT_TRUE(bound.has("ALL"));
  EXPECT_FALSE(bound.has("N"));
}

TEST(Argument, Bind_RestTakesAllButKeywords) {
  const Arguments bound =
      BindArguments("cmd", kRestRows, Words{"uni1", "udp", "--out", "dir", "vlan", "100"});
  EXPECT_THAT(bound.words("WORD"), ElementsAre("udp", "vlan", "100"));
  EXPECT_EQ(bound.word("DIR"), "dir");
}

TEST(Argument, Bind_SaysWhatIsMissing) {
  EXPECT_EQ(ErrorOf(kRows, {}),
            "argument PORT is missing: expected uni1 to uni32 or wan; "
            "usage: cmd PORT [N] [seed S] [--all]");
  EXPECT_EQ(ErrorOf(kRestRows, {"uni1"}),
            "argument WORD is missing: expected a word; usage: cmd PORT WORD... [--out DIR]");
  EXPECT_EQ(ErrorOf(kRows, {"uni1", "seed"}),
            "\"seed\" wants a number from 0 to 4294967295 behind it; "
            "usage: cmd PORT [N] [seed S] [--all]");
}

TEST(Argument, Bind_SaysWhatIsTooMuch) {
  EXPECT_EQ(ErrorOf(kRows, {"uni1", "1", "2"}),
            "unexpected argument \"2\"; usage: cmd PORT [N] [seed S] [--all]");
  EXPECT_EQ(ErrorOf(kRows, {"uni1", "--all", "--all"}),
            "\"--all\" is given twice; usage: cmd PORT [N] [seed S] [--all]");
}

TEST(Argument, Bind_ChecksTypes) {
  EXPECT_EQ(ErrorOf(kRows, {"lan1"}),
            "PORT: expected uni1 to uni32 or wan, got \"lan1\"; "
            "usage: cmd PORT [N] [seed S] [--all]");
  EXPECT_EQ(ErrorOf(kRows, {"uni1", "-1"}),
            "N: expected a number from 0 to 4294967295, got \"-1\"; "
            "usage: cmd PORT [N] [seed S] [--all]");
}

TEST(Argument, Types_AcceptWhatTheyExpect) {
  struct Case {
    const ArgumentType& type;
    const char* word;
    bool accepted;
  };
  const Case cases[] = {
      {ArgumentType::CommandCode, "100", true},
      {ArgumentType::CommandCode, "flow_add", true},
      {ArgumentType::CommandCode, "BRMGR_CMD_FLOW_ADD", true},
      {ArgumentType::CommandCode, "FLOW", false},
      {kConfigKeyType, "eth", true},
      {kConfigKeyType, "ethernet", false},
      {ArgumentType::Duplex, "half", true},
      {ArgumentType::Duplex, "auto", false},
      {ArgumentType::FieldWord, "vid=1", true},
      {ArgumentType::FieldWord, "vid", false},
      {ArgumentType::File, "", false},
      {ArgumentType::Fraction, "0.25", true},
      {ArgumentType::Fraction, "1", true},
      {ArgumentType::Fraction, "1.01", false},
      {ArgumentType::Fraction, "-0.1", false},
      {ArgumentType::Fraction, "nan", false},
      {ArgumentType::Hex, "00ff", true},
      {ArgumentType::Hex, "0f0", false},
      {ArgumentType::Ip, "239.1.2.3", true},
      {ArgumentType::Ip, "ff0e::1", true},
      {ArgumentType::Ip, "239.1.2", false},
      {ArgumentType::LinkState, "down", true},
      {ArgumentType::LinkState, "off", false},
      {ArgumentType::Mac, "02:00:00:00:00:0a", true},
      {ArgumentType::Mac, "02:00:00:00:00", false},
      {ArgumentType::Port, "uni32", true},
      {ArgumentType::Port, "uni33", false},
      {ArgumentType::Speed, "1000", true},
      {ArgumentType::Speed, "2500", false},
      {ArgumentType::Switch, "on", true},
      {ArgumentType::Switch, "On", false},
      {ArgumentType::UniPort, "uni32", true},
      {ArgumentType::UniPort, "wan", false},
      {ArgumentType::UniPort, "uni33", false},
      {ArgumentType::Word, "", true},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(one.type.accepts(one.word), one.accepted) << Expected(one.type) << ": " << one.word;
  }
}

TEST(Argument, Types_EveryTypeSaysWhatItExpects) {
  std::set<const ArgumentType*> types;
  for (const Command* command : AllCommands().all()) {
    for (const Argument& row : command->arguments) {
      types.insert(&row.type.get());
    }
  }
  ASSERT_GT(types.size(), 10U);
  for (const ArgumentType* type : types) {
    EXPECT_FALSE(Expected(*type).empty());
    EXPECT_EQ(type->title.empty() || !type->choices().empty(), true);
  }
}

TEST(Argument, NextArgument_IsTheRowOfTheNextWord) {
  EXPECT_EQ(NextArgument(kRows, Words{})->name, "PORT");
  EXPECT_EQ(NextArgument(kRows, Words{"uni1"})->name, "N");
  EXPECT_EQ(NextArgument(kRows, Words{"uni1", "seed"})->name, "S");
  EXPECT_EQ(NextArgument(kRows, Words{"uni1", "1"}), nullptr);
  EXPECT_EQ(NextArgument(kRestRows, Words{"uni1", "a", "b"})->name, "WORD");
  EXPECT_EQ(NextArgument(kRows, Words{"lan1"}), nullptr);
}

}  // namespace
}  // namespace onu
