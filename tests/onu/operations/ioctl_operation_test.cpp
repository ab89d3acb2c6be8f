/// @file
/// Tests of the Ioctl operation's words: codes, fields, raw records, length and flag.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

/// What the command that the line sends looks like to the device.
Json LastCommand(const std::string& line) {
  return RunLinesAsJson({"InitDrv", line, "show trace 1"}).lastDocument()["events"].at(0);
}

std::string ErrorOf(const std::string& line) {
  const Ran ran = RunLines({line});
  EXPECT_EQ(ran.status, ExitStatus::WrongUse);
  return ran.errors;
}

TEST(IoctlOperation, Defaults_AreTheCommandsLengthAndFlagWithIndexesNone) {
  const Json command = LastCommand("Ioctl VLAN_ACTION_ADD cmd=0x4 dir=ds");
  EXPECT_EQ(command["code"], 102);
  EXPECT_EQ(command["length"], 24);
  EXPECT_EQ(command["flag"], 1);
  EXPECT_EQ(command["before"], "0000000400000000000000000000000000000000ffffffff");
  EXPECT_EQ(command["after"], "000000040000000000000000000000000000000000000000");
}

TEST(IoctlOperation, Code_IsTakenByNameOrNumber) {
  for (const char* name : {"FEATURE", "feature", "BRMGR_CMD_FEATURE", "127", "0x7F"}) {
    EXPECT_EQ(LastCommand(std::string("Ioctl ") + name + " value=5")["before"], "00000005") << name;
  }
}

TEST(IoctlOperation, Raw_IsTheRecordAsItStandsOnTheTarget) {
  const Json command = LastCommand("Ioctl FEATURE raw 00000102");
  EXPECT_EQ(command["before"], "00000102");
  EXPECT_EQ(command["sent"]["value"], 0x102);
}

TEST(IoctlOperation, Raw_OfACommandThatIsNotDescribedGoesAsItIs) {
  const Json command = LastCommand("Ioctl 182 raw 0a0b0c");
  EXPECT_EQ(command["before"], "0a0b0c");
  EXPECT_EQ(command["length"], 3);
}

TEST(IoctlOperation, Record_OfACommandThatIsNotDescribedIsZero) {
  const Json command = LastCommand("Ioctl MAC_LEARN");
  EXPECT_EQ(command["before"], "00000000");
  EXPECT_EQ(LastCommand("Ioctl 182")["length"], 0);
}

TEST(IoctlOperation, LengthAndFlag_MayBeGiven) {
  const Json command = LastCommand("Ioctl FEATURE value=1 len 8 flag 1");
  EXPECT_EQ(command["length"], 8);
  EXPECT_EQ(command["flag"], 1);
  const Json refused =
      RunLinesAsJson({"InitDrv", "Ioctl FLOW_ADD len 3", "show trace 2"}).lastDocument();
  EXPECT_EQ(refused["events"].at(0)["length"], 3) << "its log line follows";
}

TEST(IoctlOperation, ReadBack_ShowsTheRecordAfterTheCall) {
  const Ran ran = RunLines({"Init", "Ioctl VLAN_ACTION_ADD cmd=0x4 dir=ds"});
  EXPECT_THAT(ran.out, HasSubstr("BCM6838X_Ioctl(VLAN_ACTION_ADD, cmd=0x4, dir=ds) = 0 (ok)\n"
                                 "  VlanActionRule "));
  EXPECT_THAT(ran.out, HasSubstr("vlanActionIndex=1"));
}

TEST(IoctlOperation, ReadBack_IsInTheDocument) {
  const Json document =
      RunLinesAsJson({"Init", "Ioctl IC_CREATE type=2 fieldMask=outerVid dir=us priority=9"})
          .lastDocument();
  EXPECT_EQ(document["record"], "IngressClassCfg");
  EXPECT_EQ(document["fields"]["fieldMask"], "outerVid");
  EXPECT_EQ(document["fields"]["icIndex"], 5) << "the next free one behind those of the start";
  EXPECT_EQ(document["raw"].get<std::string>().size(), 64U);
}

TEST(IoctlOperation, InputOnly_ShowsNoRecord) {
  const Ran ran = RunLines({"Init", "Ioctl FEATURE value=1"});
  EXPECT_THAT(ran.out, testing::EndsWith("BCM6838X_Ioctl(FEATURE, value=1) = 0 (ok)\n"));
}

TEST(IoctlOperation, CodeOutOfRange_IsTheLibrarysMatter) {
  EXPECT_THAT(RunLines({"InitDrv", "Ioctl 183"}).out,
              testing::EndsWith("BCM6838X_Ioctl(183) = 2 (invalid)\n"));
}

TEST(IoctlOperation, WrongWords_AreRefusedBeforeAnythingIsSent) {
  EXPECT_THAT(ErrorOf("Ioctl FLOW_ADD outerVit=1"),
              HasSubstr("IngressFlowRule has no field \"outerVit\"; did you mean \"outerVid\"?"));
  EXPECT_THAT(ErrorOf("Ioctl FLOW_ADD outerVid=65536"), HasSubstr("outerVid"));
  EXPECT_THAT(ErrorOf("Ioctl FLOW_ADD outerVid=1 raw 00"),
              HasSubstr("expected fields or raw, got both"));
  EXPECT_THAT(ErrorOf("Ioctl LASER_ON port=1"), HasSubstr("is not described"));
  EXPECT_THAT(ErrorOf("Ioctl FLOWADD"), HasSubstr("got \"FLOWADD\"; did you mean \"FLOW_ADD\"?"));
  EXPECT_THAT(ErrorOf("Ioctl FEATURE len 1048577"),
              HasSubstr("len: expected a number from 0 to 1048576, got 1048577"));
}

}  // namespace
}  // namespace onu
