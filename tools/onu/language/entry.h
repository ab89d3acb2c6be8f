/// @file
/// What commands and operations have in common: all that parsing, help, completion and the
/// documentation need.
#pragma once

#include <string_view>
#include <vector>

#include "language/argument.h"

namespace onu {

struct Entry {
  std::string_view name;  ///< "show trace", "BCM6838X_Init"
  ArgumentRows arguments;
  std::string_view text;
  std::vector<std::string_view> examples;  ///< scripts; lines are separated by '\n'
  std::string_view prefix = {};            ///< may stand in front of the name, or be left out
};

/// The name without its prefix, as people call it.
inline std::string_view ShortName(const Entry& entry) {
  return entry.name.substr(entry.name.starts_with(entry.prefix) ? entry.prefix.size() : 0);
}

}  // namespace onu
