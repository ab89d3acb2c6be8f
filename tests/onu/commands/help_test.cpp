/// @file
/// Tests of help texts.
#include <gmock/gmock.h>

#include "commands/command_table.h"
#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

TEST(Help, Overview_NamesEveryEntry) {
  const std::string text = RunLines({"help"}).out;
  for (const std::string& name : AllCommands().names()) {
    EXPECT_THAT(text, HasSubstr("  " + name));
  }
}

TEST(Help, OnAnEntry_ShowsUsageArgumentsAndExamples) {
  const std::string text = RunLines({"help show trace"}).out;
  EXPECT_EQ(text,
            "show trace [N] [since SEQ]\n"
            "  lists what left the library: commands with their records decoded, log lines, calls\n"
            "\nArguments\n"
            "  N: only the newest N events (a number from 0 to 4294967295)\n"
            "  since SEQ: only events from this sequence number on "
            "(a number from 0 to 4294967295)\n"
            "\nExample\n  Init\n  show trace\n"
            "\nExample\n  Init\n  show trace 2\n"
            "\nExample\n  Init\n  show trace since 5\n");
}

TEST(Help, OnAnEntry_ListsTheWordsToChooseFrom) {
  EXPECT_THAT(RunLines({"help config"}).out,
              HasSubstr("    eth N: number of Ethernet UNI ports\n"));
  EXPECT_THAT(RunLines({"help explain"}).out, HasSubstr("    vlan "));
  EXPECT_THAT(RunLines({"help ioctl"}).out, HasSubstr("    FLOW_ADD: "));
}

TEST(Help, OnSomethingUnknown_IsWrongUse) {
  const test::Ran ran = RunLines({"help sned"});
  EXPECT_EQ(ran.status, ExitStatus::WrongUse);
  EXPECT_EQ(ran.errors,
            "test: help: unknown command \"sned\"; did you mean \"send\"? "
            "(help lists the commands)\n");
}

TEST(Help, Json_HoldsTheText) {
  const Json document = RunLinesAsJson({"help quit"}).lastDocument();
  EXPECT_EQ(document["text"].get<std::string>().substr(0, 5), "quit\n");
}

}  // namespace
}  // namespace onu
