/// @file
/// The command that does all of a journal again.
#include <algorithm>
#include <optional>
#include <string>

#include "commands/command_rows.h"
#include "language/failure.h"
#include "session/journal_file.h"
#include "session/session.h"

namespace onu {

namespace {

Words WordsOf(const Json& call) {
  return call["words"].get<Words>();
}

/// The place of the first difference and both values, in words; nothing when there is none.
std::optional<std::string> Difference(const Json& recorded, const Json& now,
                                      const std::string& place) {
  if (recorded == now) {
    return std::nullopt;
  }
  const std::string below = place + "/";
  if (recorded.is_object() && now.is_object()) {
    for (const auto& [member, value] : recorded.items()) {
      const Json other = now.contains(member) ? now[member] : Json(nullptr);
      if (auto difference = Difference(value, other, below + member)) {
        return difference;
      }
    }
  }
  if (recorded.is_array() && now.is_array()) {
    for (std::size_t i = 0; i < std::min(recorded.size(), now.size()); ++i) {
      if (auto difference = Difference(recorded[i], now[i], below + std::to_string(i + 1))) {
        return difference;
      }
    }
    if (recorded.size() != now.size()) {
      return place + ": recorded " + std::to_string(recorded.size()) + " of them, now " +
             std::to_string(now.size());
    }
  }
  return place + ": recorded " + recorded.dump() + ", now " + now.dump();
}

/// Does a call again; throws a Failure when it cannot or when something else comes of it.
void ReplayCall(Session& session, const Json& call) {
  const Words words = WordsOf(call);
  const NamedCommand found = session.commands().findOrThrow(words);
  if (!found.command->changes) {
    throw WorkFailed(Quote(found.command->name) + " is no command that a journal notes");
  }
  const std::size_t before = session.journal().entries.size();
  session.perform(found);
  if (session.journal().entries.size() != before + 1) {
    throw WorkFailed("expected one call, got " +
                     std::to_string(session.journal().entries.size() - before));
  }
  if (const auto difference = Difference(call, EntryToJson(session.journal().entries.back()), "")) {
    throw WorkFailed("differs at " + *difference);
  }
}

Result JournalReplay(Session& session, const Arguments& arguments) {
  if (!session.journal().entries.empty()) {
    throw WorkFailed("expected a fresh session, got one in which " +
                     Quote(JoinWords(session.journal().entries.front().words)) +
                     " was done; replay in a new run of the program, before anything else");
  }
  const SavedJournal saved = ReadJournal(arguments.word("FILE"));
  Settings settings;
  for (const Words& words : saved.configuration) {
    SetConfig(settings, words.front(), {words.begin() + 1, words.end()});
  }
  session.restart(settings);

  std::size_t commands = 0;
  for (std::size_t i = 0; i < saved.calls.size(); ++i) {
    const Json& call = saved.calls[i];
    try {
      ReplayCall(session, call);
    } catch (const Failure& failure) {
      throw WorkFailed("call " + std::to_string(i + 1) + " (" + JoinWords(WordsOf(call)) +
                       "): " + failure.what());
    }
    commands += CommandsOf(call);
  }
  return {{{"calls", saved.calls.size()}, {"commands", commands}, {"identical", true}},
          std::to_string(saved.calls.size()) + " calls, " + std::to_string(commands) +
              " records identical\n"};
}

}  // namespace

const Command kJournalReplay = {
    {"journal replay",
     {{"FILE", ArgumentType::File, "a saved journal"}},
     "does all of a journal again, in a fresh session, and compares what it causes",
     {"journal replay saved.json"}},
    JournalReplay};

}  // namespace onu
