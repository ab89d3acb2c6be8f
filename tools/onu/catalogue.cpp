/// @file
/// Look-up of names in the tables.
#include "catalogue.h"

#include <algorithm>

#include "failure.h"

namespace onu {

namespace {

/// Number of words in a command's name.
std::size_t LengthOf(std::string_view name) {
  return name.find(' ') == std::string_view::npos ? 1 : 2;
}

std::string FirstWords(std::span<const std::string> words, std::size_t count) {
  const auto first = words.first(std::min(count, words.size()));
  return Lower(Join({first.begin(), first.end()}, " "));
}

std::string WithoutPrefix(const std::string& name) {
  const std::string prefix = Lower(kOperationPrefix);
  return Lower(name).starts_with(prefix) ? name.substr(prefix.size()) : name;
}

/// The second words of the commands that begin with the word.
Words GroupMembers(const std::string& group) {
  Words members;
  for (const Command& command : CommandTable()) {
    if (command.name.starts_with(group + " ")) {
      members.emplace_back(command.name.substr(group.size() + 1));
    }
  }
  return members;
}

/// The nearest name of one word or of two.
std::string SuggestName(std::span<const std::string> words) {
  Words shortNames;
  Words longNames;
  for (const std::string& name : AllNames()) {
    (LengthOf(name) == 1 ? shortNames : longNames).push_back(name);
  }
  const std::string asTwo =
      words.size() > 1 ? Suggestion(FirstWords(words, 2), longNames) : std::string();
  return asTwo.empty() ? Suggestion(WithoutPrefix(words.front()), shortNames) : asTwo;
}

}  // namespace

const Entry& Found::entry() const {
  return operation != nullptr ? static_cast<const Entry&>(*operation) : *command;
}

std::optional<Found> Find(std::span<const std::string> words) {
  for (const Command& command : CommandTable()) {
    const std::size_t length = LengthOf(command.name);
    if (words.size() >= length && FirstWords(words, length) == command.name) {
      return Found{&command, nullptr, length};
    }
  }
  const std::string wanted = words.empty() ? "" : Lower(WithoutPrefix(words.front()));
  for (const Operation& operation : OperationTable()) {
    if (Lower(ShortName(operation)) == wanted) {
      return Found{nullptr, &operation, 1};
    }
  }
  return std::nullopt;
}

Found FindOrThrow(std::span<const std::string> words) {
  if (const std::optional<Found> found = Find(words)) {
    return *found;
  }
  const Words members = GroupMembers(FirstWords(words, 1));
  if (!members.empty()) {
    const std::string given = words.size() > 1 ? words[1] : std::string();
    throw WrongUse(words.front() + ": expected " + Join(members, ", ") + ", got " +
                   (given.empty() ? "nothing" : Quote(given) + Suggestion(given, members)));
  }
  throw WrongUse("unknown command " + Quote(words.front()) + SuggestName(words) +
                 " (help lists the commands)");
}

std::string_view ShortName(const Operation& operation) {
  return operation.name.substr(
      operation.name.starts_with(kOperationPrefix) ? kOperationPrefix.size() : 0);
}

Words AllNames() {
  Words names;
  for (const Command& command : CommandTable()) {
    names.emplace_back(command.name);
  }
  for (const Operation& operation : OperationTable()) {
    names.emplace_back(ShortName(operation));
  }
  return names;
}

}  // namespace onu
