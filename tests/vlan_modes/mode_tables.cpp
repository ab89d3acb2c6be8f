/// @file
/// The document is read by what its lines begin with: a title, a fence, a table's bar.
#include "mode_tables.h"

#include <fstream>
#include <sstream>

namespace vlan_modes {
namespace {

/// A cell without blanks and backquotes around it.
std::string Trimmed(const std::string& cell) {
  const char* const around = " `";
  const std::size_t first = cell.find_first_not_of(around);
  return first == std::string::npos ? std::string()
                                    : cell.substr(first, cell.find_last_not_of(around) - first + 1);
}

Row ReadRow(const std::string& line) {
  std::istringstream cells(line.substr(1));
  Row row;
  for (std::string* cell : {&row.frame, &row.upstream, &row.downstream}) {
    std::getline(cells, *cell, '|');
    *cell = Trimmed(*cell);
  }
  return row;
}

/// A table's line that is neither its head nor the rule below that.
bool IsRow(const std::string& line) {
  return line.starts_with("|") && !line.starts_with("| Frame") && !line.starts_with("|-");
}

}  // namespace

std::vector<Mode> ReadModes() {
  const std::string title = "## ";
  std::ifstream document(MODE_TABLES);
  std::vector<Mode> modes;
  bool inFence = false;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with(title)) {
      modes.push_back({line.substr(title.size()), {}, {}});
    } else if (line.starts_with("```")) {
      inFence = !inFence;
    } else if (inFence) {
      modes.back().setUp.push_back(line);
    } else if (IsRow(line)) {
      modes.back().rows.push_back(ReadRow(line));
    }
  }
  return modes;
}

}  // namespace vlan_modes
