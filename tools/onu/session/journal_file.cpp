/// @file
/// Writing and reading of journals.
#include "session/journal_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>
#include <sstream>

#include "language/failure.h"

namespace onu {

namespace {

/// Tells whether a call has the members that a replay uses.
bool IsCall(const Json& call) {
  return call.is_object() && call.contains("words") && call["words"].is_array() &&
         !call["words"].empty() && call.contains("result") && call.contains("events") &&
         call["events"].is_array() &&
         std::ranges::all_of(call["words"], [](const Json& word) { return word.is_string(); });
}

/// Tells whether it is a list of lists of words.
bool IsConfiguration(const Json& lines) {
  return lines.is_array() && std::ranges::all_of(lines, [](const Json& words) {
           return words.is_array() && words.size() > 1 &&
                  std::ranges::all_of(words, [](const Json& word) { return word.is_string(); });
         });
}

bool IsJournal(const Json& json) {
  return json.is_object() && json.contains("configuration") &&
         IsConfiguration(json["configuration"]) && json.contains("calls") &&
         json["calls"].is_array() && std::ranges::all_of(json["calls"], IsCall);
}

}  // namespace

void WriteJournal(const Journal& journal, const std::string& path) {
  Json calls = Json::array();
  for (const JournalEntry& entry : journal.entries) {
    calls.push_back(EntryToJson(entry));
  }
  const Json json = {
      {"version", kJsonVersion}, {"configuration", journal.configuration}, {"calls", calls}};
  std::ofstream file(path);
  file << json.dumpIndented() << "\n";
  file.close();
  if (!file) {
    throw WorkFailed("cannot write " + path + ": " + std::strerror(errno));
  }
}

SavedJournal ReadJournal(const std::string& path) {
  std::ifstream file(path);
  if (!file) {
    throw WorkFailed("cannot read " + path + ": " + std::strerror(errno));
  }
  std::ostringstream text;
  text << file.rdbuf();
  const std::optional<Json> parsed = Json::parse(text.view());
  if (!parsed || !parsed->contains("version")) {
    throw WorkFailed(path + ": expected a journal in JSON, got something else");
  }
  const Json& json = *parsed;
  if (json["version"] != kJsonVersion) {
    throw WorkFailed(path + ": expected a journal of version " + std::to_string(kJsonVersion) +
                     ", got version " + json["version"].dump());
  }
  if (!IsJournal(json)) {
    throw WorkFailed(path + ": expected a journal with configuration and calls, got other members");
  }
  return {json["configuration"].get<std::vector<Words>>(), json["calls"].get<Json::Array>()};
}

std::size_t CommandsOf(const Json& call) {
  return static_cast<std::size_t>(std::ranges::count_if(call["events"], [](const Json& event) {
    return event.is_object() && event.contains("kind") && event["kind"] == "command";
  }));
}

}  // namespace onu
