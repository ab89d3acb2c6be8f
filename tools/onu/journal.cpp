/// @file
/// Journal entries.
#include "journal.h"

#include <algorithm>

#include "event_report.h"

namespace onu {

bool Journal::configurationOnly() const {
  return std::ranges::all_of(
      entries, [](const JournalEntry& entry) { return entry.words.front() == "config"; });
}

Json EntryToJson(const JournalEntry& entry) {
  Json events = Json::array();
  for (const virtual_onu::TraceEvent& event : entry.events) {
    events.push_back(EventToJson(event));
  }
  const Json json = {{"words", entry.words}, {"result", entry.result}, {"events", events}};
  return Json::parse(Dump(json));
}

}  // namespace onu
