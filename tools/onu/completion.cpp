/// @file
/// Completion from the tables, the unit's ports, and the file system.
#include "completion.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <span>
#include <system_error>

#include "catalogue.h"
#include "device/records.h"
#include "port_argument.h"

namespace onu {

namespace {

/// The next words of the names that begin with the words before.
Words NameWords(const Words& before) {
  const std::string begin = before.empty() ? "" : Lower(Join(before, " ")) + " ";
  std::set<std::string> words;
  for (const std::string& name : AllNames()) {
    if (Lower(name).starts_with(begin)) {
      const std::string rest = name.substr(begin.size());
      words.insert(rest.substr(0, rest.find(' ')));
    }
  }
  return {words.begin(), words.end()};
}

/// Files and directories whose path begins with the word; captures only where frames are wanted.
Words FileWords(const std::string& word, ArgumentType type) {
  const std::size_t slash = word.rfind('/');
  const std::string directory = slash == std::string::npos ? "" : word.substr(0, slash + 1);
  Words words;
  std::error_code error;
  const std::filesystem::directory_iterator listing(directory.empty() ? "." : directory, error);
  if (error) {
    return words;
  }
  for (const std::filesystem::directory_entry& entry : listing) {
    const bool isDirectory = entry.is_directory(error);
    const bool fits = type == ArgumentType::File || isDirectory ||
                      (type == ArgumentType::Frame && entry.path().extension() == ".pcap");
    if (fits) {
      words.push_back(directory + entry.path().filename().string() + (isDirectory ? "/" : ""));
    }
  }
  return words;
}

/// The fields of the command's record, "outerVid=", but for those of lists, which need an index.
Words FieldWords(std::span<const std::string> given) {
  const virtual_onu::CommandInfo* command =
      given.empty() || !Accepts(ArgumentType::CommandCode, given.front())
          ? nullptr
          : virtual_onu::FindCommand(ParseCommandCode(given.front()));
  Words words;
  if (command != nullptr && command->record != nullptr) {
    for (std::string& name : virtual_onu::FieldNames(*command->record)) {
      if (name.find("..") == std::string::npos) {
        words.push_back(std::move(name) + "=");
      }
    }
  }
  return words;
}

/// "on" and "off" behind a key that takes them.
Words ValueWords(std::span<const std::string> given) {
  const ConfigKey* key = given.empty() ? nullptr : FindConfigKey(given.front());
  const bool isSwitch = key != nullptr && key->values == "on|off";
  return isSwitch ? ChoiceWords(ArgumentType::Switch) : Words();
}

Words WordsOf(Session& session, const Argument& row, std::span<const std::string> given,
              const std::string& word) {
  switch (row.type) {
    case ArgumentType::Port:
      return PortNames(session);
    case ArgumentType::UniPort:
      return UniPortNames(session);
    case ArgumentType::FieldWord:
      return FieldWords(given);
    case ArgumentType::ConfigValue:
      return ValueWords(given);
    case ArgumentType::EntryName:
      return NameWords({given.begin(), given.end()});
    case ArgumentType::File:
    case ArgumentType::Directory:
      return FileWords(word, row.type);
    default:
      break;
  }
  Words words = ChoiceWords(row.type);
  if (row.type == ArgumentType::Frame) {
    std::ranges::copy(FileWords(word, row.type), std::back_inserter(words));
  }
  return words;
}

/// Everything that may stand behind the words.
Words WordsBehind(Session& session, const Words& before, const std::string& word) {
  const std::optional<Found> found = before.empty() ? std::nullopt : Find(before);
  if (!found) {
    return NameWords(before);
  }
  const Entry& entry = found->entry();
  const auto given = std::span(before).subspan(found->nameLength);
  const Argument* next = NextArgument(entry.arguments, given);
  Words words = next == nullptr ? Words() : WordsOf(session, *next, given, word);
  const bool pending = next != nullptr && !next->keyword.empty();
  for (const Argument& row : entry.arguments) {
    if (!row.keyword.empty() && !pending && std::ranges::find(given, row.keyword) == given.end()) {
      words.emplace_back(row.keyword);
    }
  }
  return words;
}

}  // namespace

Completion Complete(Session& session, std::string_view line) {
  SplitLine split = Split(line);
  Completion completion;
  if (split.openWord) {
    completion.word = split.words.back();
    split.words.pop_back();
  }
  for (const std::string& word : WordsBehind(session, split.words, completion.word)) {
    if (Lower(word).starts_with(Lower(completion.word))) {
      completion.candidates.push_back(word);
    }
  }
  std::ranges::sort(completion.candidates);
  return completion;
}

}  // namespace onu
