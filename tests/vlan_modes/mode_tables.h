/// @file
/// Reads docs/vlan-modes.md: the set-up and the table of each mode.
#pragma once

#include <string>
#include <vector>

namespace vlan_modes {

/// A line of a table. What does not pass is the name of the outcome.
struct Row {
  std::string frame;
  std::string upstream;
  std::string downstream;
};

struct Mode {
  std::string name;                ///< the section's title
  std::vector<std::string> setUp;  ///< lines for onu
  std::vector<Row> rows;
};

/// All sections, in their order.
std::vector<Mode> ReadModes();

}  // namespace vlan_modes
