/// @file
/// The commands that a session understands, and the look-up of the one that a line names.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "language/words.h"
#include "session/command.h"

namespace onu {

/// Commands that belong together, in the order of their explanation.
struct CommandGroup {
  std::string_view title;
  std::vector<Command> commands;
};

/// The command that a line names, and the line's words behind the name.
struct NamedCommand {
  const Command* command = nullptr;
  std::span<const std::string> words;
};

class CommandSet {
 public:
  /// @param[in] commands    the program's own
  /// @param[in] operations  those of the library
  CommandSet(std::vector<CommandGroup> commands, std::vector<CommandGroup> operations)
      : commands_(std::move(commands)), operations_(std::move(operations)) {}

  [[nodiscard]] const std::vector<CommandGroup>& commands() const { return commands_; }
  [[nodiscard]] const std::vector<CommandGroup>& operations() const { return operations_; }

  /// All of them: the program's own, then those of the library.
  [[nodiscard]] std::vector<const Command*> all() const;

  /// The command that the line's first words name, of one word or of two, with or without its
  /// prefix. Case does not matter. The words have to stay as long as what is found.
  [[nodiscard]] std::optional<NamedCommand> find(std::span<const std::string> words) const;

  /// find(), or a Failure that suggests the nearest name.
  [[nodiscard]] NamedCommand findOrThrow(std::span<const std::string> words) const;

  /// The names of all commands without their prefixes.
  [[nodiscard]] Words names() const;

 private:
  [[nodiscard]] Words groupMembers(const std::string& group) const;
  [[nodiscard]] std::string withoutPrefix(const std::string& word) const;
  [[nodiscard]] std::string suggestName(std::span<const std::string> words) const;

  std::vector<CommandGroup> commands_;
  std::vector<CommandGroup> operations_;
};

}  // namespace onu
