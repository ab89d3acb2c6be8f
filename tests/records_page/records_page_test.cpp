/// @file
/// Tests of the reference page of commands and records, and that the committed one is current.
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "device/records.h"
#include "records_page/page.h"
#include "records_page/program.h"

namespace records_page {
namespace {

struct Result {
  int status = 0;
  std::string out;
  std::string err;
};

Result RunWith(const std::vector<const char*>& arguments) {
  std::ostringstream out;
  std::ostringstream err;
  const int status = Run(arguments, out, err);
  return {status, out.str(), err.str()};
}

TEST(RecordsPage, TheCommittedPageIsCurrent) {
  const Result result = RunWith({"--check", RECORDS_PAGE});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
}

TEST(RecordsPage, WithoutArguments_WritesThePage) {
  const Result result = RunWith({});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, Page());
  EXPECT_EQ(result.err, "");
}

TEST(RecordsPage, Check_OfAnotherFile_SaysWhereAndHowToMendIt) {
  const Result result = RunWith({"--check", OTHER_PAGE});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "records_page: " OTHER_PAGE
                        " differs from the field tables in line 1; to make it again: "
                        "build/host/tools/records_page/records_page > docs/records.md\n");
}

TEST(RecordsPage, Check_OfAMissingFile_SaysWhich) {
  const Result result = RunWith({"--check", "no/such/file.md"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "records_page: cannot read no/such/file.md: No such file or directory\n");
}

TEST(RecordsPage, OtherArguments_AreWrongUse) {
  const std::vector<std::vector<const char*>> wrong = {
      {"--check"}, {"--check", "a", "b"}, {"--help", RECORDS_PAGE}, {""}};
  for (const std::vector<const char*>& arguments : wrong) {
    const Result result = RunWith(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "records_page: expected no argument or --check FILE, got \"" +
                              std::string(arguments.front()) +
                              "\"; usage: records_page [--check FILE]\n");
  }
}

TEST(RecordsPage, HoldsACommand) {
  EXPECT_NE(
      Page().find("\n| 100 | `BRMGR_CMD_FLOW_ADD` | 164 | read-back | "
                  "[`IngressFlowRule`](#ingressflowrule) | adds a flow to an ingress class |\n"),
      std::string::npos);
  EXPECT_NE(
      Page().find("\n| 33 | `BRMGR_CMD_SEND_BPDU` | varies | input | [`RelayPkt`](#relaypkt) | "),
      std::string::npos);
  EXPECT_NE(Page().find("\n| 119 | `BRMGR_CMD_LASER_ON` | 0 | read-back |  | "), std::string::npos);
}

TEST(RecordsPage, HoldsFields) {
  EXPECT_NE(Page().find("\n| 8 | u16 | `tag[0].tpid` | hexadecimal | caller | "),
            std::string::npos);
  EXPECT_NE(Page().find("\n| 12 | u8[20] | `reserved12` | reserved | nobody | zero |\n"),
            std::string::npos);
  EXPECT_NE(Page().find("\n| 148 | u32 | `flowIndex` | index | driver | "), std::string::npos);
  EXPECT_NE(Page().find("\n| 28 | u32 | `icIndex` | index | both | "), std::string::npos);
  EXPECT_NE(Page().find("164 bytes, sent with `BRMGR_CMD_FLOW_ADD` "
                        "and `BRMGR_CMD_QUEUE_SCHEDULE`.\n"),
            std::string::npos);
}

TEST(RecordsPage, HoldsNamedValues) {
  EXPECT_NE(Page().find("\n| 0x40000 | `vlanNum` | `BRMGR_KEY_VLAN_NUM` |\n"), std::string::npos);
  EXPECT_NE(Page().find("\n| 0x100 | `replace_priority` | `BRMGR_TAG_REPLACE_PRIORITY` |\n"),
            std::string::npos);
  EXPECT_NE(Page().find("\n| 0x2 | `trap` | `BRMGR_FORWARD_TRAP` |\n"), std::string::npos);
}

TEST(RecordsPage, ARowForEveryCommandAndField) {
  std::size_t rows = 0;
  for (std::size_t at = Page().find("\n| "); at != std::string::npos;
       at = Page().find("\n| ", at + 1)) {
    ++rows;
  }
  const std::size_t formats = 12;
  std::size_t expected = virtual_onu::AllCommands().size() + formats +
                         virtual_onu::KeyBits().size() + virtual_onu::TagOperations().size() +
                         virtual_onu::ForwardDecisions().size();
  std::size_t tables = 5;
  for (const virtual_onu::RecordInfo& record : virtual_onu::AllRecords()) {
    expected += record.fields.size();
    ++tables;
  }
  EXPECT_EQ(rows, expected + 2 * tables);
}

}  // namespace
}  // namespace records_page
