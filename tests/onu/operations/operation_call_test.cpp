/// @file
/// Tests of calls of operations: results, console, log, the values passed.
#include "operations/operation_call.h"

#include <gmock/gmock.h>
#include <sstream>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;

TEST(Operation, Status_IsShownWithItsName) {
  EXPECT_EQ(RunLines({"Init"}).out, "BCM6838X_Init() = 0 (ok)\n");
}

TEST(Operation, Number_IsShownAlone) {
  EXPECT_EQ(RunLines({"StreamPortIndexUniToRdpa 0x1FF"}).out,
            "BCM6838X_StreamPortIndexUniToRdpa(0x1FF) = 256\n");
}

TEST(Operation, Nothing_IsShownForAnOperationWithoutResult) {
  EXPECT_EQ(RunLines({"config fail-socket on", "kernelEvent"}).out,
            "Could not open netlink socket for kernel monitor\nBCM6838X_kernelEvent()\n");
  EXPECT_FALSE(
      RunLinesAsJson({"config fail-socket on", "kernelEvent"}).lastDocument().contains("result"));
}

TEST(Operation, KernelEvent_ThatWouldNeverEnd_IsNotCalled) {
  const Ran ran = RunLines({"kernelEvent"});
  EXPECT_EQ(ran.status, ExitStatus::WorkFailed);
  EXPECT_THAT(ran.errors,
              testing::HasSubstr("runs for ever; start it as a task: config run-tasks on, "
                                 "then Init"));
}

TEST(Operation, Arguments_ArePassedInOrder) {
  EXPECT_EQ(RunLines({"SetPortAdminState 0 1"}).out,
            "BCM6838X_SetPortAdminState(0, 1) = 1 (failed)\n");
  EXPECT_EQ(RunLines({"SetPortAdminState 1 0"}).out, "BCM6838X_SetPortAdminState(1, 0) = 0 (ok)\n");
}

TEST(Operation, FailedStatus_IsNoErrorOfTheProgram) {
  const Ran ran = RunLines({"SFInit", "echo on"});
  EXPECT_EQ(ran.status, ExitStatus::Done);
  EXPECT_EQ(ran.out, "BCM6838X_SFInit() = 10 (not_open)\non\n");
}

TEST(Operation, Console_StandsBeforeTheResultAsItIs) {
  const Ran ran = RunLines({"config fail-log on", "Init"});
  EXPECT_EQ(ran.out, "LOG_Create fail.\r\nBCM6838X_Init() = 1 (failed)\n");
}

TEST(Operation, Json_HoldsNameArgumentsResultConsoleLogAndCommands) {
  const Ran ran = RunLinesAsJson({"config fail-task on", "config fail-device on", "Init"});
  const Json document = ran.lastDocument();
  EXPECT_EQ(document["version"], 1);
  EXPECT_EQ(document["command"], "call");
  EXPECT_EQ(document["name"], "BCM6838X_Init");
  EXPECT_EQ(document["arguments"], Json::array());
  EXPECT_EQ(document["result"], 0);
  EXPECT_EQ(document["status"], "ok");
  EXPECT_EQ(document["console"], "\n Creat task kernelEvent Error!!! \r\n");
  ASSERT_EQ(document["log"].size(), 1U);
  EXPECT_EQ(document["log"][0]["level"], 1);
  EXPECT_EQ(document["log"][0]["file"], "hal/switch/bcm6838x/src/hal_bcm6838x_init.cpp");
  EXPECT_EQ(document["commands"], 0) << "the device is not open";
}

TEST(Operation, Json_CountsTheCommandsOfThisCallOnly) {
  const Json document = RunLinesAsJson({"Init", "SFInit"}).lastDocument();
  EXPECT_EQ(document["commands"], 1);
}

TEST(Operation, Json_IsOneDocumentALineWhateverIsPrinted) {
  const Ran ran = RunLinesAsJson({"config performance-marker on", "Init", "echo done"});
  std::istringstream lines(ran.out);
  int documents = 0;
  for (std::string line; std::getline(lines, line); ++documents) {
    const Json document = Json::parse(line).value_or(Json());
    EXPECT_TRUE(document.is_object() && document["version"] == 1) << line;
  }
  EXPECT_EQ(documents, 3);
}

TEST(Operation, Log_IsShownAsItComesWhenAskedFor) {
  EXPECT_EQ(RunLines({"fault nth 1", "Init"}).out, "BCM6838X_Init() = 0 (ok)\n");
}

TEST(Operation, LogOn_ShowsLinesBeforeTheResult) {
  const Ran ran = RunLines({"log on", "fault nth 1", "Init", "log off", "fault nth 1", "SFInit"});
  EXPECT_THAT(ran.out,
              testing::MatchesRegex("log level 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp:[0-9]+: "
                                    "BCM6838X_Ioctl :[0-9]+, cmd:0 err:4294967295\n"
                                    "BCM6838X_Init\\(\\) = 0 \\(ok\\)\n"
                                    "BCM6838X_SFInit\\(\\) = 8 \\(refused\\)\n"));
}

TEST(Operation, StatusName_KnowsEveryCode) {
  EXPECT_EQ(StatusName(0), "ok");
  EXPECT_EQ(StatusName(1), "failed");
  EXPECT_EQ(StatusName(2), "invalid");
  EXPECT_EQ(StatusName(3), "unsupported");
  EXPECT_EQ(StatusName(8), "refused");
  EXPECT_EQ(StatusName(10), "not_open");
  EXPECT_EQ(StatusName(12), "end");
  EXPECT_EQ(StatusName(4), "unknown");
}

}  // namespace
}  // namespace onu
