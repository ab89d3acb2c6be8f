/// @file
/// Tests of the program as a process: options, scripts, exit status, what it leaves alone.
#include <filesystem>
#include <gmock/gmock.h>

#include "run_program.h"
#include "scratch.h"

namespace onu {
namespace {

using test::Finished;
using test::Output;
using test::RunProgram;
using test::RunProgramHere;
using test::Scratch;
using test::Surroundings;
using testing::HasSubstr;
using testing::MatchesRegex;

TEST(Program, Version_IsOneLine) {
  const Finished finished = RunProgramHere({"--version"});
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, MatchesRegex("onu [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Program, Help_ListsTheOptions) {
  const Finished finished = RunProgramHere({"--help"});
  EXPECT_EQ(finished.status, 0);
  for (const char* word : {"--json", "--log", "--config", "--keep-going", "run", "help"}) {
    EXPECT_THAT(finished.out, HasSubstr(word));
  }
}

TEST(Program, HelpSubcommand_ExplainsACommand) {
  const Finished finished = RunProgramHere({"help", "show", "trace"});
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, testing::StartsWith("show trace [N] [since SEQ]\n"));
}

TEST(Program, Commands_RunInOrder) {
  const Finished finished = RunProgramHere({"-c", "echo one", "-c", "echo two"});
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.out, "one\ntwo\n");
}

TEST(Program, Script_StopsAtTheFirstError) {
  const Scratch scratch;
  const std::string script = scratch.write("a.onu", "echo one\necho \"\nnonsense\necho two\n");
  const Finished finished = RunProgramHere({"run", script});
  EXPECT_EQ(finished.status, 2);
  EXPECT_EQ(finished.out, "one\n");
  EXPECT_THAT(finished.errors, testing::StartsWith(script + ":2: "));
}

TEST(Program, KeepGoing_RunsTheRestAndKeepsTheFirstStatus) {
  const Scratch scratch;
  const std::string script = scratch.write("a.onu", "send uni1 absent.pcap\nnonsense\necho two\n");
  const Finished finished = RunProgramHere({"--keep-going", "run", script});
  EXPECT_EQ(finished.status, 1);
  EXPECT_EQ(finished.out, "two\n");
  EXPECT_THAT(finished.errors, HasSubstr(script + ":1: send: "));
  EXPECT_THAT(finished.errors, HasSubstr(script + ":2: unknown command"));
}

TEST(Program, Script_MayHaveCommentsBlankLinesAndOtherLineEnds) {
  const Finished finished = RunProgramHere({"run", "-"}, "# a\r\n\r\n  echo one # b\r\necho two");
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.out, "one\ntwo\n");
}

TEST(Program, Script_MayBeEmpty) {
  const Scratch scratch;
  EXPECT_EQ(RunProgramHere({"run", scratch.write("a.onu", "")}).status, 0);
}

TEST(Program, Quit_EndsTheScript) {
  const Finished finished = RunProgramHere({"run", "-"}, "echo one\nquit\necho two\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.out, "one\n");
}

TEST(Program, WithoutArguments_ReadsStandardInput) {
  const Finished finished = RunProgramHere({}, "echo one\nnonsense\n");
  EXPECT_EQ(finished.status, 2);
  EXPECT_EQ(finished.out, "one\n");
  EXPECT_THAT(finished.errors, testing::StartsWith("stdin:2: unknown command \"nonsense\""));
}

TEST(Program, Config_IsSetBeforeTheStart) {
  const Finished finished = RunProgramHere({"--config", "eth=2", "--config", "feature=27,0",
                                            "--config", "board=A B", "-c", "show config"});
  EXPECT_EQ(finished.status, 0) << finished.errors;
  EXPECT_THAT(finished.out, HasSubstr("eth 2\n"));
  EXPECT_THAT(finished.out, HasSubstr("feature 27 0\n"));
  EXPECT_THAT(finished.out, HasSubstr("board \"A B\"\n"));
}

TEST(Program, Log_IsShownOnRequest) {
  EXPECT_EQ(RunProgramHere({"-c", "fault nth 1", "-c", "InitDrv"}).out,
            "BCM6838X_InitDrv() = 8 (refused)\n");
  EXPECT_THAT(RunProgramHere({"--log", "-c", "fault nth 1", "-c", "InitDrv"}).out,
              MatchesRegex("log level 1 [^\n]*\nBCM6838X_InitDrv\\(\\) = 8 \\(refused\\)\n"));
}

Finished RunWithOutput(Output output) {
  Surroundings surroundings;
  surroundings.directory = test::Sources();
  surroundings.output = output;
  return RunProgram({"-c", "echo x"}, surroundings);
}

TEST(Program, FullOutput_IsAFailure) {
  EXPECT_EQ(RunWithOutput(Output::kFull).status, 1);
}

TEST(Program, ClosedOutput_IsAFailure) {
  EXPECT_EQ(RunWithOutput(Output::kClosed).status, 1);
}

TEST(Program, ReadOutput_IsNone) {
  EXPECT_EQ(RunWithOutput(Output::kRead).status, 0);
}

TEST(Program, Run_LeavesNothingBehind) {
  const Scratch scratch;
  Surroundings surroundings;
  surroundings.directory = test::Sources();
  surroundings.temporary_directory = scratch.path().string();
  const Finished finished = RunProgram(
      {"-c", "config performance-marker on", "-c", "config eth 2", "-c", "Init"}, surroundings);
  EXPECT_EQ(finished.status, 0) << finished.errors;
  EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

}  // namespace
}  // namespace onu
