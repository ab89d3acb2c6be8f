/// @file
/// Tests of the clear of the counters of UNI ports.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Documents;
using test::Ran;
using test::RunLines;
using test::With;
using testing::HasSubstr;

/// UNI port 1 forwards untagged frames and gets those of VLAN 100.
const Words kForwarding = {"Init", "SetPortAdminState 1 1", "AddUsTag 1 100 0"};

TEST(ClearStats, Port1_CountsFromThereOn) {
  const auto documents =
      Documents(With(kForwarding, {"send uni1 udp", "clear stats 1", "show stats 1",
                                   "send uni1 udp length 124", "show stats 1"}));
  const Json& cleared = documents.at(documents.size() - 3)["stats"][0];
  EXPECT_EQ(cleared["rxOctets"], 0);
  EXPECT_EQ(cleared["rx64"], 0);
  EXPECT_EQ(documents.at(documents.size() - 4)["baselineOf"], "uni1");
  EXPECT_EQ(documents.back()["stats"][0]["rxOctets"], 128);
}

TEST(ClearStats, OtherPort_TellsWhoseCountersTheBaselineIs) {
  const Ran ran = RunLines(With(kForwarding, {"send uni1 udp", "clear stats 2", "show stats 2"}));
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, HasSubstr("the library asked for port 0, which the driver takes for uni1: "
                                 "uni2 counts from the counters of that port\n"));
  // 0 - 64, in 64 bits and in 32.
  EXPECT_THAT(ran.out, HasSubstr("\nreceived octets           18446744073709551552\n"));
  EXPECT_THAT(ran.out, HasSubstr("\nreceived of 64            4294967295\n"));
  EXPECT_EQ(RunLines({"clear stats 0"}).status, ExitStatus::WrongUse);
}

}  // namespace
}  // namespace onu
