/// @file
/// Completion from the session's commands, the unit's ports, and the file system.
#include "prompt/completion.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <span>
#include <system_error>

#include "device/records.h"
#include "session/port_argument.h"

namespace onu {

namespace {

/// Where a word is to be completed.
struct Place {
  Session& session;
  const ArgumentType& type;            ///< of the argument that the word belongs to
  std::span<const std::string> given;  ///< the words of the other arguments
  const std::string& word;             ///< as far as it is typed
};

/// The next words of the names that begin with the words before.
Words NameWords(const CommandSet& commands, std::span<const std::string> before) {
  const std::string begin =
      before.empty() ? "" : Lower(Join({before.begin(), before.end()}, " ")) + " ";
  std::set<std::string> words;
  for (const std::string& name : commands.names()) {
    if (Lower(name).starts_with(begin)) {
      const std::string rest = name.substr(begin.size());
      words.insert(rest.substr(0, rest.find(' ')));
    }
  }
  return {words.begin(), words.end()};
}

/// Files and directories whose path begins with the word; captures only where frames are wanted.
Words FileWords(const Place& place) {
  const std::string& word = place.word;
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
    const bool fits = place.type == ArgumentType::File || isDirectory ||
                      (place.type == ArgumentType::Frame && entry.path().extension() == ".pcap");
    if (fits) {
      words.push_back(directory + entry.path().filename().string() + (isDirectory ? "/" : ""));
    }
  }
  return words;
}

/// The fields of the command's record, "outerVid=", but for those of lists, which need an index.
Words FieldWords(const Place& place) {
  const std::span<const std::string> given = place.given;
  const virtual_onu::CommandInfo* command =
      given.empty() || !ArgumentType::CommandCode.accepts(given.front())
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
Words ValueWords(const Place& place) {
  const ConfigKey* key = place.given.empty() ? nullptr : FindConfigKey(place.given.front());
  const bool isSwitch = key != nullptr && key->values == "on|off";
  return isSwitch ? ChoiceWords(ArgumentType::Switch) : Words();
}

/// Words and captures.
Words FrameWords(const Place& place) {
  Words words = ChoiceWords(ArgumentType::Frame);
  std::ranges::copy(FileWords(place), std::back_inserter(words));
  return words;
}

/// The types whose words are not those of ChoiceWords() alone.
struct Source {
  const ArgumentType& type;
  Words (*words)(const Place& place);
};

const Source kSources[] = {
    {ArgumentType::Port, [](const Place& place) { return PortNames(place.session); }},
    {ArgumentType::UniPort, [](const Place& place) { return UniPortNames(place.session); }},
    {ArgumentType::FieldWord, FieldWords},
    {kConfigValueType, ValueWords},
    {ArgumentType::EntryName,
     [](const Place& place) { return NameWords(place.session.commands(), place.given); }},
    {ArgumentType::File, FileWords},
    {ArgumentType::Directory, FileWords},
    {ArgumentType::Frame, FrameWords},
};

Words WordsOf(const Place& place) {
  for (const Source& source : kSources) {
    if (source.type == place.type) {
      return source.words(place);
    }
  }
  return ChoiceWords(place.type);
}

/// Everything that may stand behind the words.
Words WordsBehind(Session& session, const Words& before, const std::string& word) {
  const std::optional<NamedCommand> named =
      before.empty() ? std::nullopt : session.commands().find(before);
  if (!named) {
    return NameWords(session.commands(), before);
  }
  const Argument* next = NextArgument(named->command->arguments, named->words);
  Words words = next == nullptr ? Words() : WordsOf({session, next->type, named->words, word});
  const bool pending = next != nullptr && !next->keyword.empty();
  for (const Argument& row : named->command->arguments) {
    if (!row.keyword.empty() && !pending &&
        std::ranges::find(named->words, row.keyword) == named->words.end()) {
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
