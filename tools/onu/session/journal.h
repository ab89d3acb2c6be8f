/// @file
/// The journal: everything that was done to the unit and the library in a session, in order, each
/// with what came of it. Files are journal_file.h's.
#pragma once

#include <vector>

#include "base/trace.h"
#include "language/words.h"
#include "report/json.h"

namespace onu {

/// One command or call.
struct JournalEntry {
  Words words;  ///< does the same again; files are replaced by what was read from them
  Json result = Json::object();
  std::vector<virtual_onu::PackedEvent> events;
};

struct Journal {
  std::vector<Words> configuration;  ///< words of the `config` commands that make the start
  std::vector<JournalEntry> entries;

  /// Adds an entry with what left the library.
  void add(Words words, Json result, const std::vector<virtual_onu::TraceEvent>& events);

  /// Tells whether nothing but the configuration was changed so far.
  [[nodiscard]] bool configurationOnly() const;
};

/// An entry as it stands in a file. Text that is not UTF-8 is replaced as in the file.
Json EntryToJson(const JournalEntry& entry);

}  // namespace onu
