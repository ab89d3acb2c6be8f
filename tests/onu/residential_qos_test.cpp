/// @file
/// Runs the example of a residential service and holds every frame's outcome, queue and priority
/// against a table made by hand from its rules.
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/text.h"
#include "language/capture_file.h"
#include "report/json.h"
#include "run_program.h"

namespace onu {
namespace {

using test::Finished;

struct ExpectedFrame {
  std::string what;
  std::string outcome;
  std::optional<int> queue;
  std::optional<int> pcp;  ///< of the frame as it leaves
};

const std::vector<ExpectedFrame> kFrames = {
    {"voice media", "flow_forward", 7, 7},
    {"voice signalling", "flow_forward", 6, 6},
    {"other voice traffic", "no_flow", {}, {}},
    {"video join", "flow_forward", 5, 5},
    {"video control", "flow_forward", 4, 4},
    {"preferred data", "flow_forward", 3, 3},
    {"mail", "flow_access_control", {}, {}},
    {"captured ARP request", "flow_forward", 0, 0},
    {"captured ARP reply", "flow_forward", 0, 0},
    {"captured echo request", "flow_forward", 0, 0},
    {"captured echo reply", "flow_forward", 0, 0},
    {"recorded voice media", "flow_forward", 7, 7},
    {"recorded voice signalling", "flow_forward", 6, 6},
    {"recorded name in the voice VLAN", "no_flow", {}, {}},
    {"recorded video control", "flow_forward", 4, 4},
    {"recorded preferred data", "flow_forward", 3, 3},
    {"recorded mail", "flow_access_control", {}, {}},
    {"recorded echo request", "flow_forward", 0, 0},
    {"recorded join", "flow_forward", 5, 5},
    {"recorded join, repeated", "flow_forward", 5, 5},
    {"recorded leave", "flow_forward", 5, 5},
    {"untagged voice media", "no_flow", {}, {}},
    {"voice media of another port", "no_flow", {}, {}},
    {"voice media, weighted", "flow_forward", 15, 7},
    {"video join, weighted", "flow_forward", 13, 5},
    {"captured ARP request, weighted", "flow_forward", 8, 0},
    {"captured ARP reply, weighted", "flow_forward", 8, 0},
    {"captured echo request, weighted", "flow_forward", 8, 0},
    {"captured echo reply, weighted", "flow_forward", 8, 0},
    {"mail, after the change", "flow_access_control", {}, {}},
    {"recorded voice media, weighted", "flow_forward", 15, 7},
    {"recorded voice signalling, weighted", "flow_forward", 14, 6},
    {"recorded name in the voice VLAN, weighted", "no_flow", {}, {}},
    {"recorded video control, weighted", "flow_forward", 12, 4},
    {"recorded preferred data, weighted", "flow_forward", 11, 3},
    {"recorded mail, weighted", "flow_access_control", {}, {}},
    {"recorded echo request, weighted", "flow_forward", 8, 0},
    {"recorded join, weighted", "flow_forward", 13, 5},
    {"recorded join, repeated, weighted", "flow_forward", 13, 5},
    {"recorded leave, weighted", "flow_forward", 13, 5},
};

/// The frames of all "send" lines, in order.
std::vector<Json> SentFrames(const std::string& documents) {
  std::vector<Json> frames;
  std::istringstream lines(documents);
  for (std::string line; std::getline(lines, line);) {
    const Json document = Json::parse(line).value();
    if (document.contains("counts")) {
      for (const Json& frame : document["frames"]) {
        frames.push_back(frame);
      }
    }
  }
  return frames;
}

constexpr std::size_t kTciAt = 14;
constexpr unsigned kPcpShift = 5;

/// The bytes that left; none for a frame that did not leave by the WAN side alone.
virtual_onu::Bytes BytesThatLeft(const Json& frame) {
  const Json& deliveries = frame["deliveries"];
  if (deliveries.size() != 1 || deliveries[0]["port"] != "wan") {
    return {};
  }
  const auto text = deliveries[0]["frame"]["bytes"].get<std::string>();
  return virtual_onu::ParseHex(text).value_or(virtual_onu::Bytes());
}

/// The frame of a capture that a "send" line took, "FILE#NUMBER"; none for a frame made of words.
std::optional<virtual_onu::Bytes> Recorded(const std::string& source) {
  const std::size_t hash = source.rfind('#');
  if (hash == std::string::npos) {
    return std::nullopt;
  }
  const std::size_t number = std::stoul(source.substr(hash + 1));
  return ReadCapture(test::Sources() / source.substr(0, hash)).at(number - 1).bytes;
}

/// What left is what came, but for the priority of its tag.
void ExpectPriority(const Json& frame, int pcp) {
  virtual_onu::Bytes out = BytesThatLeft(frame);
  ASSERT_GT(out.size(), kTciAt);
  EXPECT_EQ(out.at(kTciAt) >> kPcpShift, pcp);
  if (const auto in = Recorded(frame["source"].get<std::string>())) {
    constexpr unsigned kOtherBits = 0x1F;
    out[kTciAt] =
        static_cast<std::uint8_t>((in->at(kTciAt) & ~kOtherBits) | (out[kTciAt] & kOtherBits));
    EXPECT_EQ(out, *in);
  }
}

TEST(ResidentialQos, EveryFrame_HasItsOutcomeQueueAndPriority) {
  const Finished finished =
      test::RunProgramHere({"--json", "run", "tools/onu/examples/residential-qos.onu"});
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.errors, "");
  const std::vector<Json> frames = SentFrames(finished.out);
  ASSERT_EQ(frames.size(), kFrames.size());
  for (std::size_t i = 0; i < kFrames.size(); ++i) {
    const ExpectedFrame& expected = kFrames[i];
    SCOPED_TRACE(expected.what);
    EXPECT_EQ(frames[i]["outcome"], expected.outcome);
    EXPECT_EQ(frames[i]["queue"], expected.queue ? Json(*expected.queue) : Json(nullptr));
    if (expected.pcp) {
      ExpectPriority(frames[i], *expected.pcp);
    } else {
      EXPECT_EQ(frames[i]["deliveries"], Json::array());
    }
  }
}

}  // namespace
}  // namespace onu
