/// @file
/// Arguments of commands and operations: the rows that describe them, and the binding of words to
/// those rows. What the words of a type may be is in argument_type.h.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "language/argument_type.h"
#include "language/words.h"

namespace onu {

enum class Presence : std::uint8_t {
  Required,
  Optional,
  Rest,         ///< one word or more, up to the end
  OptionalRest  ///< any number of words, up to the end
};

/// One row of a table of arguments.
struct Argument {
  std::string_view name;
  std::reference_wrapper<const ArgumentType> type = ArgumentType::Word;
  std::string_view text;
  Presence presence = Presence::Required;
  std::string_view keyword = {};  ///< when set, the argument is given as KEYWORD VALUE, anywhere
};

using ArgumentRows = std::vector<Argument>;

/// The words of one call by the names of their arguments. Every word is one that its type takes.
class Arguments {
 public:
  void add(std::string_view name, const std::string& word) { words_[name].push_back(word); }

  [[nodiscard]] bool has(std::string_view name) const { return words_.contains(name); }

  /// The words of an argument; none when it was not given.
  [[nodiscard]] Words words(std::string_view name) const;

  /// The word of an argument that was given.
  [[nodiscard]] const std::string& word(std::string_view name) const;

  /// The number of an argument that was given.
  [[nodiscard]] std::uint32_t number(std::string_view name) const;

  [[nodiscard]] std::optional<std::uint32_t> optionalNumber(std::string_view name) const;

 private:
  std::map<std::string_view, Words> words_;
};

/// Binds words to the rows of a command; throws a Failure that names the argument.
Arguments BindArguments(std::string_view command, std::span<const Argument> rows,
                        std::span<const std::string> words);

/// The row that takes the next word behind `words`, or null when no row does.
const Argument* NextArgument(std::span<const Argument> rows, std::span<const std::string> words);

/// "COMMAND ARGUMENT [OPTIONAL] [keyword VALUE]".
std::string Usage(std::string_view command, std::span<const Argument> rows);

}  // namespace onu
