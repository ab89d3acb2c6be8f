/// @file
/// Sends every row of docs/vlan-modes.md through the unit, set up as the document says.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/text.h"
#include "mode_tables.h"
#include "run_lines.h"
#include "tagged_frame.h"

namespace vlan_modes {
namespace {

using onu::Json;
using onu::Words;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::size_t kLeastRows = 5;

const std::vector<std::string> kModes = {"Transparent", "Tag",          "Translation",   "Trunk",
                                         "ZTE trunk",   "ZTE stacking", "BDCOM stacking"};

std::string Hex(const std::vector<std::uint8_t>& bytes) {
  return virtual_onu::ToHex(bytes);
}

/// What the last `send` says became of its frame at a port, in the notation of the tables.
std::string Became(const Json& frame, const std::string& port) {
  for (const Json& delivery : frame["deliveries"]) {
    if (delivery["port"] == port) {
      const auto hex = delivery["frame"]["bytes"].get<std::string>();
      return ReadTags(virtual_onu::ParseHex(hex).value_or(virtual_onu::Bytes{}));
    }
  }
  for (const Json& closed : frame["closed"]) {
    if (closed["port"] == port) {
      return closed["outcome"].get<std::string>();
    }
  }
  return frame["outcome"].get<std::string>();
}

/// The documents that the lines print, one a line.
std::vector<Json> Documents(const std::string& out) {
  std::vector<Json> documents;
  std::size_t start = 0;
  for (std::size_t end = out.find('\n'); end != std::string::npos; end = out.find('\n', start)) {
    documents.push_back(Json::parse(out.substr(start, end - start)).value());
    start = end + 1;
  }
  return documents;
}

Words LinesOf(const Mode& mode) {
  Words lines = {"Init"};
  lines.insert(lines.end(), mode.setUp.begin(), mode.setUp.end());
  lines.emplace_back("SetPortAdminState 1 1");
  for (const Row& row : mode.rows) {
    lines.push_back("send uni1 " + Hex(MakeFrame(row.frame)));
    lines.push_back("send wan " + Hex(MakeFrame(row.frame)));
  }
  lines.emplace_back("check");
  return lines;
}

std::vector<std::string> Written(const Row& row) {
  return {row.frame, row.upstream, row.downstream};
}

class VlanModesTest : public ::testing::TestWithParam<std::string> {};

TEST_P(VlanModesTest, EveryRow_HoldsOnTheUnit) {
  const std::vector<Mode> modes = ReadModes();
  const auto mode = std::ranges::find(modes, GetParam(), &Mode::name);
  ASSERT_NE(mode, modes.end());
  ASSERT_GE(mode->rows.size(), kLeastRows);

  const onu::test::Ran ran = onu::test::RunLinesAsJson(LinesOf(*mode));
  ASSERT_THAT(ran.errors, IsEmpty());
  const std::vector<Json> documents = Documents(ran.out);
  const std::size_t first = documents.size() - 2 * mode->rows.size() - 1;
  for (std::size_t i = 0; i < mode->rows.size(); ++i) {
    const Row& row = mode->rows[i];
    const Json& up = documents.at(first + 2 * i)["frames"].at(0);
    const Json& down = documents.at(first + 2 * i + 1)["frames"].at(0);
    const Row found = {row.frame, Became(up, "wan"), Became(down, "uni1")};
    EXPECT_THAT(Written(found), ElementsAreArray(Written(row)));
  }
  EXPECT_EQ(documents.back()["findings"], Json::array());
}

std::string TestName(const testing::TestParamInfo<std::string>& mode) {
  std::string name = mode.param;
  std::erase(name, ' ');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Modes, VlanModesTest, testing::ValuesIn(kModes), TestName);

TEST(VlanModesDocument, EverySection_IsAMode) {
  std::vector<std::string> titles;
  for (const Mode& mode : ReadModes()) {
    titles.push_back(mode.name);
  }
  EXPECT_THAT(titles, ElementsAreArray(kModes));
}

TEST(TaggedFrame, Notation_IsReadBackAsWritten) {
  for (const std::string tags : {"untagged", "0.5", "100.7", "4094.0+10.3", "1.1+2.2+3.3"}) {
    EXPECT_EQ(ReadTags(MakeFrame(tags)), tags);
  }
}

}  // namespace
}  // namespace vlan_modes
