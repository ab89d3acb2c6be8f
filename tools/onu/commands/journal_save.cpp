/// @file
/// The command that saves the journal of the session.
#include <string>

#include "commands/command_rows.h"
#include "session/journal_file.h"
#include "session/session.h"

namespace onu {

namespace {

Result JournalSave(Session& session, const Arguments& arguments) {
  const std::string& path = arguments.word("FILE");
  WriteJournal(session.journal(), path);
  const std::size_t calls = session.journal().entries.size();
  return {{{"file", path}, {"calls", calls}},
          path + ": " + std::to_string(calls) + " calls saved\n"};
}

}  // namespace

const Command kJournalSave = {
    {"journal save",
     {{"FILE", ArgumentType::File, "where to write it"}},
     "saves all that changed something in this session, with the records that it caused",
     {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap#1\njournal save session.json"}},
    JournalSave};

}  // namespace onu
