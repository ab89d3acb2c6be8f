/// @file
/// The command that lists the frames by port and outcome.
#include <string>

#include "commands/command_rows.h"
#include "datapath/outcome.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Describe;
using virtual_onu::OutcomeCount;

const Columns<OutcomeCount> kCounters = {
    {"port", "port", &OutcomeCount::port},
    {"outcome", "outcome", [](const auto& count) { return Describe(count.outcome).name; }},
    {"disposition", "disposition",
     [](const auto& count) { return Name(Describe(count.outcome).disposition); }},
    {"frames", "frames", &OutcomeCount::frames},
    {"octets", "octets", &OutcomeCount::octets},
};

Result ShowCounters(Session& session, const Arguments& /*arguments*/) {
  return Result().add("counters", Table(kCounters, session.unit().dataPath().counters().outcomes()),
                      "no frames");
}

}  // namespace

const Command kShowCounters = {
    {"show counters",
     {},
     "lists the frames by port and outcome",
     {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow counters"}},
    ShowCounters};

}  // namespace onu
