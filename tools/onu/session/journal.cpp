/// @file
/// Journal entries.
#include "session/journal.h"

#include <algorithm>
#include <utility>

#include "report/event_report.h"

namespace onu {

void Journal::add(Words words, Json result, const std::vector<virtual_onu::TraceEvent>& events) {
  entries.push_back({std::move(words), std::move(result), {events.begin(), events.end()}});
}

bool Journal::configurationOnly() const {
  return std::ranges::all_of(
      entries, [](const JournalEntry& entry) { return entry.words.front() == "config"; });
}

Json EntryToJson(const JournalEntry& entry) {
  Json events = Json::array();
  for (const virtual_onu::PackedEvent& event : entry.events) {
    events.push_back(EventToJson(event.unpack()));
  }
  const Json json = {{"words", entry.words}, {"result", entry.result}, {"events", events}};
  return Json::parse(json.dump()).value();
}

}  // namespace onu
