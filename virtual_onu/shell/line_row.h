/// @file
/// A row of the tables of lines that the shell understands: the pattern of a line, and what it does.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "shell/board.h"
#include "shell/path_objects.h"
#include "shell/pattern.h"

namespace virtual_onu {

/// What a line works on.
struct Workplace {
  PathObjects& objects;
  const ShellBoard& board;
};

struct LineRow {
  std::string_view pattern;
  /// Returns why the line was refused; empty when it was done.
  std::string (*run)(const Workplace& place, std::span<const Argument> arguments);
};

/// The reason for a number outside its bounds.
inline std::string OutOfRange(const std::string& what, std::uint32_t first, std::uint32_t last) {
  return what + " is out of range, expected " + std::to_string(first) + " to " +
         std::to_string(last);
}

}  // namespace virtual_onu
