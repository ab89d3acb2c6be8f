/// @file
/// Tests of what the sequence tests rest on: the reader of golden files, and the short lines, in
/// which nothing of an event may get lost.
#include "support/golden.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "support/brief.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

class GoldenLinesTest : public testing::Test {
 protected:
  void TearDown() override { std::filesystem::remove(file_); }

  std::vector<std::string> read(const std::string& text, const std::string& section,
                                const GoldenNumbers& numbers = {}) {
    std::ofstream(file_) << text;
    return GoldenLines(file_, section, numbers);
  }

  void expectError(const std::string& text, const std::string& message) {
    const std::function<void()> reading = [&] { read(text, "a"); };
    EXPECT_THAT(reading, ThrowsMessage<std::runtime_error>(HasSubstr(message)));
  }

 private:
  /// Of this process alone, because suites of several builds may run at the same time.
  std::filesystem::path file_ = std::filesystem::path(testing::TempDir()) /
                                ("library_test_" + std::to_string(getpid()) + ".golden");
};

TEST_F(GoldenLinesTest, Section_EndsWhereTheNextBegins) {
  const std::string text = "lost\n== a\n# not this\n\n  one \ntwo\n== a b\nthree\n";
  EXPECT_THAT(read(text, "a"), ElementsAre("one", "two"));
  EXPECT_THAT(read(text, "a b"), ElementsAre("three"));
}

TEST_F(GoldenLinesTest, Numbers_ArePutIn) {
  EXPECT_THAT(read("== a\n<n> <100+8*v-p> <7-p>,<line>\n", "a", {{"n", 5}, {"v", 2}, {"p", 3}}),
              ElementsAre("5 113 4,<line>"));
}

TEST_F(GoldenLinesTest, Loops_AreUnrolledInsideEachOther) {
  EXPECT_THAT(
      read("== a\nrepeat v 2\nv<v>\nrepeat p n+1\n<10*v+p>\nend\nend\nlast\n", "a", {{"n", 1}}),
      ElementsAre("v0", "0", "1", "v1", "10", "11", "last"));
  EXPECT_THAT(read("== a\nrepeat v 0\nnever\nend\n", "a"), IsEmpty());
}

TEST_F(GoldenLinesTest, Errors_NameTheirPlace) {
  expectError("== b\n", "no section \"a\"");
  expectError("== a\none\n<100+x>\n", ".golden:3: no sum of numbers and known names: <100+x>");
  expectError("== a\n<a b>\n", ":2: no sum");
  expectError("== a\nrepeat v\nend\n", ":2: no count");
  expectError("== a\nrepeat v 2\none\n", ":2: a loop without end");
}

TEST(GoldenLines, MissingFile_HasNoSection) {
  EXPECT_THROW(GoldenLines("/nowhere.golden", "a"), std::runtime_error);
}

std::string Brief(const virtual_onu::TraceDetail& detail) {
  return DescribeBriefly({1, 0, detail});
}

template <typename Record>
virtual_onu::CommandEvent Command(std::uint32_t code, std::uint32_t flag, const Record& record) {
  virtual_onu::CommandEvent event;
  event.code = code;
  event.length = sizeof(record);
  event.flag = flag;
  event.before.resize(sizeof(record));
  std::memcpy(event.before.data(), &record, sizeof(record));
  return event;
}

IngressFlowRule UsFlow() {
  IngressFlowRule flow = {};
  flow.outerVid = 100;
  flow.ingressPort = 3;
  flow.outerPbit = 4;
  flow.vlanNum = 1;
  flow.forward = 1;
  flow.result104 = 1;
  flow.queue = 4;
  flow.dir = 1;
  flow.icIndex = 3;
  flow.flowIndex = BRMGR_INDEX_NONE;
  flow.vlanActionIndex = BRMGR_INDEX_NONE;
  flow.policer = BRMGR_INDEX_NONE;
  return flow;
}

const std::string kUsFlow =
    "FLOW_ADD us outerVid=100 ingressPort=3 outerPbit=4 vlanNum=1 queue=4 icIndex=3";

TEST(DescribeBriefly, Flow_ShowsItsKey) {
  EXPECT_EQ(Brief(Command(BRMGR_CMD_FLOW_ADD, 1, UsFlow())), kUsFlow);
}

TEST(DescribeBriefly, Flow_EveryChangedByteShows) {
  const virtual_onu::CommandEvent usual = Command(BRMGR_CMD_FLOW_ADD, 1, UsFlow());
  std::size_t bytes = 0;
  for (; bytes < sizeof(IngressFlowRule); ++bytes) {
    virtual_onu::CommandEvent changed = usual;
    changed.before[bytes] ^= 2U;
    EXPECT_NE(Brief(changed), kUsFlow) << "byte " << bytes;
  }
  EXPECT_EQ(bytes, 164U);
}

TEST(DescribeBriefly, Action_EveryChangedByteShows) {
  const VlanActionRule action = {0x101, {{10, 3, 0, 0x8100}, {}}, 1, BRMGR_INDEX_NONE};
  const virtual_onu::CommandEvent usual = Command(BRMGR_CMD_VLAN_ACTION_ADD, 1, action);
  const std::string line =
      "VLAN_ACTION_ADD us cmd=push|replace_priority tag[0].vid=10 tag[0].pbit=3";
  EXPECT_EQ(Brief(usual), line);
  std::size_t bytes = 0;
  for (; bytes < sizeof(action); ++bytes) {
    virtual_onu::CommandEvent changed = usual;
    changed.before[bytes] ^= 2U;
    EXPECT_NE(Brief(changed), line) << "byte " << bytes;
  }
  EXPECT_EQ(bytes, 24U);
}

TEST(DescribeBriefly, Delete_ShowsAllFields) {
  const IngressFlowDel record = {0, 1, 7};
  EXPECT_EQ(Brief(Command(BRMGR_CMD_FLOW_DEL, 0, record)), "FLOW_DEL dir=ds icIndex=1 flowIndex=7");
}

TEST(DescribeBriefly, OtherFlagOrLength_ShowsTheWholeEvent) {
  EXPECT_THAT(Brief(Command(BRMGR_CMD_FLOW_ADD, 0, UsFlow())),
              HasSubstr("command BRMGR_CMD_FLOW_ADD len 164 flag 0 "));
  virtual_onu::CommandEvent longer = Command(BRMGR_CMD_FLOW_ADD, 1, UsFlow());
  longer.length += 4;
  EXPECT_THAT(Brief(longer), HasSubstr("command BRMGR_CMD_FLOW_ADD len 168 flag 1 "));
}

TEST(DescribeBriefly, LogLine_OfTheLibraryIsItsText) {
  const std::string file = "hal/switch/bcm6838x/src/bcm6838x_vlan_us.cpp";
  EXPECT_EQ(Brief(virtual_onu::LogEvent{0, 1, file, 12, "++++++Add,12\r\n"}),
            "log ++++++Add,<line>");
}

TEST(DescribeBriefly, LogLine_OfAnotherKindIsShownWhole) {
  const std::string file = "hal/switch/bcm6838x/src/bcm6838x_vlan_us.cpp";
  EXPECT_EQ(Brief(virtual_onu::LogEvent{0, 4, file, 12, "Add\r\n"}), "log 4 " + file + " Add\r\n");
  EXPECT_EQ(Brief(virtual_onu::LogEvent{0, 1, "elsewhere.cpp", 12, "Add\r\n"}),
            "log 1 elsewhere.cpp Add\r\n");
  EXPECT_EQ(Brief(virtual_onu::LogEvent{0, 1, file, 12, "Add\n"}), "log 1 " + file + " Add\n");
}

TEST(DescribeBriefly, ShellLine_IsShown) {
  EXPECT_EQ(Brief(virtual_onu::ShellEvent{"bs /b/n x", 0, ""}), "shell bs /b/n x");
}

}  // namespace
}  // namespace hal_test
