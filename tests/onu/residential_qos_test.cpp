/// @file
/// Runs the example of a residential service and holds every frame's outcome, queue and priority
/// against a table made by hand from its rules.
#include <cstddef>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.h"
#include "json_output.h"
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
    {"untagged voice media", "no_flow", {}, {}},
    {"voice media of another port", "no_flow", {}, {}},
    {"voice media, weighted", "flow_forward", 15, 7},
    {"video join, weighted", "flow_forward", 13, 5},
    {"captured ARP request, weighted", "flow_forward", 8, 0},
    {"captured ARP reply, weighted", "flow_forward", 8, 0},
    {"captured echo request, weighted", "flow_forward", 8, 0},
    {"captured echo reply, weighted", "flow_forward", 8, 0},
    {"mail, after the change", "flow_access_control", {}, {}},
};

/// The frames of all "send" lines, in order.
std::vector<Json> SentFrames(const std::string& documents) {
  std::vector<Json> frames;
  std::istringstream lines(documents);
  for (std::string line; std::getline(lines, line);) {
    const Json document = Json::parse(line);
    if (document.contains("counts")) {
      for (const Json& frame : document["frames"]) {
        frames.push_back(frame);
      }
    }
  }
  return frames;
}

/// The priority of a frame's outer tag.
int PriorityOf(const Json& frame) {
  constexpr std::size_t kTciAt = 14;
  constexpr unsigned kPcpShift = 5;
  const auto bytes = virtual_onu::ParseHex(frame["frame"]["bytes"].get<std::string>());
  return bytes && bytes->size() > kTciAt ? bytes->at(kTciAt) >> kPcpShift : -1;
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
    EXPECT_EQ(frames[i]["outcome"], expected.outcome) << expected.what;
    EXPECT_EQ(frames[i]["queue"], expected.queue ? Json(*expected.queue) : Json(nullptr))
        << expected.what;
    if (expected.pcp) {
      EXPECT_EQ(PriorityOf(frames[i]), *expected.pcp) << expected.what;
    }
  }
}

}  // namespace
}  // namespace onu
