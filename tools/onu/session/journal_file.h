/// @file
/// Journals as files.
#pragma once

#include <string>

#include "report/json.h"
#include "session/journal.h"

namespace onu {

/// A journal that was read: each call as EntryToJson() made it.
struct SavedJournal {
  std::vector<Words> configuration;
  std::vector<Json> calls;
};

/// Writes the journal; throws a Failure when it cannot.
void WriteJournal(const Journal& journal, const std::string& path);

/// Reads a journal; throws a Failure when there is none of a known version in the file.
SavedJournal ReadJournal(const std::string& path);

/// Number of the device's commands among the events of a call.
std::size_t CommandsOf(const Json& call);

}  // namespace onu
