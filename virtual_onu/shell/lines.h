/// @file
/// The lines that the shell understands, a table for each program: patterns, and what each does.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "shell/pattern.h"
#include "shell/shell.h"

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

std::span<const LineRow> BsLines();
std::span<const LineRow> EthctlLines();

/// The reason for a number outside its bounds.
inline std::string OutOfRange(const std::string& what, std::uint32_t first, std::uint32_t last) {
  return what + " is out of range, expected " + std::to_string(first) + " to " +
         std::to_string(last);
}

}  // namespace virtual_onu
