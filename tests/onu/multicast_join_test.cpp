/// @file
/// Recorded joins and leaves of UNI port 2, and where the group's stream then goes, by each tag
/// treatment.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <tuple>
#include <variant>

#include "base/bytes.h"
#include "frame/words.h"
#include "run_lines.h"
#include "run_program.h"

namespace onu {
namespace {

using test::Last;
using test::With;

/// A recording: what its first frames say, and the group.
struct Recording {
  std::string name;
  std::string file;
  std::string group;
  std::string leave;  ///< number of the first frame that leaves
};

/// How the port gets the streams of VLAN 100.
struct Treatment {
  std::string name;
  Words lines;
  std::string tag;  ///< of the stream as it leaves the port, and its length, in words
};

void PrintTo(const Recording& recording, std::ostream* out) {
  *out << recording.name;
}

void PrintTo(const Treatment& treatment, std::ostream* out) {
  *out << treatment.name;
}

class RecordedJoin : public testing::TestWithParam<std::tuple<Recording, Treatment>> {
 protected:
  static const Recording& recording() { return std::get<Recording>(GetParam()); }
  static const Treatment& treatment() { return std::get<Treatment>(GetParam()); }

  /// All ports are open, and untagged frames of port 2 belong to VLAN 100.
  static Words started() {
    Words lines = {"Init", "clients on"};
    for (const char* const port : {"1", "2", "3", "4"}) {
      lines.push_back("SetPortAdminState " + std::string(port) + " 1");
    }
    return With(With(lines, {"SetPortPvid 2 100", "SetVlanTag 2"}), treatment().lines);
  }

  static Words said(const std::string& frame) {
    const std::string file = (test::Sources() / "tests/data" / recording().file).string();
    return {"send uni2 " + file + "#" + frame, "capture"};
  }

  static std::string stream(const std::string& tag) {
    return "udp dip " + recording().group + tag + " dport 5000";
  }

  /// What becomes of the stream behind the lines.
  static Json streamAfter(const Words& lines) {
    return Last(With(lines, {"send wan " + stream(" vlan 100 length 104")}))["frames"].at(0);
  }
};

std::string BytesOf(const std::string& words) {
  const virtual_onu::FrameOrError frame = virtual_onu::BuildFrame(SplitWords(words));
  EXPECT_TRUE(std::holds_alternative<virtual_onu::Bytes>(frame)) << words;
  return virtual_onu::ToHex(std::get<virtual_onu::Bytes>(frame));
}

TEST_P(RecordedJoin, BeforeIt_TheStreamReachesNobody) {
  EXPECT_EQ(streamAfter(started())["outcome"], "no_group_member");
}

TEST_P(RecordedJoin, Stream_ReachesThatPortAloneInItsTreatment) {
  const Json sent = streamAfter(With(started(), said("1")));
  EXPECT_EQ(sent["outcome"], "group_forward");
  EXPECT_EQ(sent["egress"], Json::array({"uni2"}));
  ASSERT_EQ(sent["deliveries"].size(), 1U);
  EXPECT_EQ(sent["deliveries"][0]["frame"]["bytes"], BytesOf(stream(treatment().tag)));
}

TEST_P(RecordedJoin, Repeated_MakesNoSecondCopy) {
  const Json sent = streamAfter(With(With(started(), said("1")), said("2")));
  EXPECT_EQ(sent["egress"], Json::array({"uni2"}));
}

TEST_P(RecordedJoin, Leave_StopsTheStream) {
  const Json sent = streamAfter(With(With(started(), said("1")), said(recording().leave)));
  EXPECT_EQ(sent["outcome"], "no_group_member");
  EXPECT_EQ(sent["egress"], Json::array());
}

INSTANTIATE_TEST_SUITE_P(
    Captures, RecordedJoin,
    testing::Combine(
        testing::Values(Recording{"Igmpv2", "igmp-join.pcap", "233.252.0.1", "3"},
                        Recording{"Igmpv3", "igmpv3-join.pcap", "233.252.0.1", "3"},
                        Recording{"Mldv2", "mld-report.pcap", "ff0e::db8:0:1", "3"}),
        testing::Values(Treatment{"Strip", {"SetMulticastVlanMode 2 0"}, " length 100"},
                        Treatment{"Keep",
                                  {"SetMulticastVlanMode 2 1", "AddIgmpVlan 2 100"},
                                  " vlan 100 length 104"},
                        Treatment{"Translate",
                                  {"SetMulticastVlanMode 2 2", "AddMulticastVlanTrans 2 100 300"},
                                  " vlan 300 length 104"})),
    [](const auto& test) { return std::get<0>(test.param).name + std::get<1>(test.param).name; });

}  // namespace
}  // namespace onu
