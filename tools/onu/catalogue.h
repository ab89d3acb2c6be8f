/// @file
/// Both tables together: finding the row that a line names.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "command_table.h"
#include "operation_table.h"
#include "words.h"

namespace onu {

/// A row, and how many words of the line its name took.
struct Found {
  const Command* command = nullptr;
  const Operation* operation = nullptr;
  std::size_t nameLength = 0;

  [[nodiscard]] const Entry& entry() const;
};

/// The row that the line's first words name: commands of one or two words; operations with or
/// without their prefix. Case does not matter.
std::optional<Found> Find(std::span<const std::string> words);

/// Find(), or a Failure that suggests the nearest name.
Found FindOrThrow(std::span<const std::string> words);

/// An operation's name without the prefix.
std::string_view ShortName(const Operation& operation);

/// The names of all commands, then the short names of all operations.
Words AllNames();

}  // namespace onu
