/// @file
/// The command that lists the frames by port and outcome.
#include <string>

#include "commands/command_rows.h"
#include "datapath/outcome.h"
#include "report/text_table.h"
#include "session/session.h"

namespace onu {

namespace {

Result ShowCounters(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["counters"] = Json::array();
  TextTable table({"port", "outcome", "disposition", "frames", "octets"});
  for (const virtual_onu::OutcomeCount& count : session.unit().dataPath().counters().outcomes()) {
    const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(count.outcome);
    const std::string disposition(virtual_onu::Name(outcome.disposition));
    list.push_back({{"port", count.port.name()},
                    {"outcome", std::string(outcome.name)},
                    {"disposition", disposition},
                    {"frames", count.frames},
                    {"octets", count.octets}});
    table.add({count.port.name(), std::string(outcome.name), disposition,
               std::to_string(count.frames), std::to_string(count.octets)});
  }
  result.text = table.text("no frames");
  return result;
}

}  // namespace

const Command kShowCounters = {
    {"show counters",
     {},
     "lists the frames by port and outcome",
     {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow counters"}},
    ShowCounters};

}  // namespace onu
