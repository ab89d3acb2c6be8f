/// @file
/// Look-up of names.
#include "session/command_set.h"

#include <algorithm>

#include "language/failure.h"

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

bool IsCalled(const Command& command, std::span<const std::string> words) {
  const std::size_t length = LengthOf(command.name);
  const std::string given = FirstWords(words, length);
  const std::string name = Lower(ShortName(command));
  return words.size() >= length && (given == name || given == Lower(command.prefix) + name);
}

}  // namespace

std::vector<const Command*> CommandSet::all() const {
  std::vector<const Command*> commands;
  for (const std::vector<CommandGroup>* groups : {&commands_, &operations_}) {
    for (const CommandGroup& group : *groups) {
      for (const Command& command : group.commands) {
        commands.push_back(&command);
      }
    }
  }
  return commands;
}

/// The second words of the commands that begin with the word.
Words CommandSet::groupMembers(const std::string& group) const {
  Words members;
  for (const Command* command : all()) {
    if (command->name.starts_with(group + " ")) {
      members.emplace_back(command->name.substr(group.size() + 1));
    }
  }
  return members;
}

/// The word without what a command's name may begin with.
std::string CommandSet::withoutPrefix(const std::string& word) const {
  for (const Command* command : all()) {
    if (!command->prefix.empty() && Lower(word).starts_with(Lower(command->prefix))) {
      return word.substr(command->prefix.size());
    }
  }
  return word;
}

/// The nearest name of one word or of two.
std::string CommandSet::suggestName(std::span<const std::string> words) const {
  Words shortNames;
  Words longNames;
  for (const std::string& name : names()) {
    (LengthOf(name) == 1 ? shortNames : longNames).push_back(name);
  }
  const std::string asTwo =
      words.size() > 1 ? Suggestion(FirstWords(words, 2), longNames) : std::string();
  return asTwo.empty() ? Suggestion(withoutPrefix(words.front()), shortNames) : asTwo;
}

std::optional<NamedCommand> CommandSet::find(std::span<const std::string> words) const {
  for (const Command* command : all()) {
    if (IsCalled(*command, words)) {
      return NamedCommand{command, words.subspan(LengthOf(command->name))};
    }
  }
  return std::nullopt;
}

NamedCommand CommandSet::findOrThrow(std::span<const std::string> words) const {
  if (const std::optional<NamedCommand> named = find(words)) {
    return *named;
  }
  const Words members = groupMembers(FirstWords(words, 1));
  if (!members.empty()) {
    const std::string given = words.size() > 1 ? words[1] : std::string();
    throw WrongUse(words.front() + ": expected " + Join(members, ", ") + ", got " +
                   (given.empty() ? "nothing" : Quote(given) + Suggestion(given, members)));
  }
  throw WrongUse("unknown command " + Quote(words.front()) + suggestName(words) +
                 " (help lists the commands)");
}

Words CommandSet::names() const {
  Words names;
  for (const Command* command : all()) {
    names.emplace_back(ShortName(*command));
  }
  return names;
}

}  // namespace onu
