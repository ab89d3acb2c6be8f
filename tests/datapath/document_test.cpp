/// @file
/// The tables of docs/virtual-onu.md are those of the code.
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "datapath/outcome.h"
#include "frame/words.h"

namespace virtual_onu {
namespace {

/// The rows of the table under a heading, without the two lines of its head.
std::vector<std::string> TableUnder(const std::string& heading) {
  std::ifstream document(VIRTUAL_ONU_DOCUMENT);
  EXPECT_TRUE(document.is_open()) << VIRTUAL_ONU_DOCUMENT;
  std::vector<std::string> rows;
  bool inside = false;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("## ")) {
      inside = line == "## " + heading;
    } else if (inside && line.starts_with("| `")) {
      rows.push_back(line);
    }
  }
  return rows;
}

TEST(Document, Outcomes_AreThoseOfTheTable) {
  std::vector<std::string> rows;
  for (const OutcomeInfo& info : AllOutcomes()) {
    rows.push_back("| `" + std::string(info.name) + "` | " + std::string(Name(info.disposition)) +
                   " | " + std::string(info.text) + " |");
  }
  EXPECT_EQ(TableUnder("Outcomes"), rows);
}

TEST(Document, Words_AreThoseOfTheTable) {
  std::vector<std::string> rows;
  for (const FrameWord& word : FrameWords()) {
    const std::string argument = word.argument.empty() ? "" : std::string(word.argument) + " ";
    rows.push_back("| `" + std::string(word.word) + "` | " + argument + "| " +
                   std::string(word.text) + " |");
  }
  EXPECT_EQ(TableUnder("Frames in words"), rows);
}

}  // namespace
}  // namespace virtual_onu
