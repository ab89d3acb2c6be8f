/// @file
/// What commands and operations have in common: all that parsing, help, completion and the
/// documentation need.
#pragma once

#include <string_view>
#include <vector>

#include "argument.h"

namespace onu {

struct Entry {
  std::string_view name;  ///< "show trace", "BCM6838X_Init"
  ArgumentRows arguments;
  std::string_view text;
  std::vector<std::string_view> examples;  ///< scripts; lines are separated by '\n'
};

}  // namespace onu
