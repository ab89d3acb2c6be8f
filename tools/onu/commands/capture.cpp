/// @file
/// The command that lets the library take the events that wait for it.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <hal_bcm6838x.h>

#include "commands/command_rows.h"
#include "operations/operation_call.h"
#include "report/event_report.h"
#include "report/packet_report.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::TraceEvent;
using virtual_onu::Transmission;

/// The number that the next transmission gets.
std::uint64_t NextTransmission(const virtual_onu::Unit& unit) {
  const std::vector<Transmission> sent = unit.transmissions();
  return sent.empty() ? 1 : sent.back().number + 1;
}

/// Lets the library take one event, and reports what left it.
Result TakeOne(Session& session, std::vector<TraceEvent>& all) {
  std::uint32_t value = 0;
  Observation seen = session.observe([&value] { value = BCM6838X_CapturePacket(); });
  const std::string status(StatusName(value));
  const Result left = Listed(seen.events, ReportEvent);
  std::ranges::move(seen.events, std::back_inserter(all));
  return {{{"result", value}, {"status", status}, {"left", left.json}},
          "CapturePacket() = " + std::to_string(value) + " (" + status + ")\n" + left.text};
}

Result CapturePackets(Session& session, const Arguments& arguments) {
  virtual_onu::Unit& unit = session.unit();
  const std::size_t waiting = unit.device().pendingEvents();
  const std::size_t wanted = arguments.optionalNumber("N").value_or(waiting);
  const std::uint64_t first = NextTransmission(unit);
  std::vector<TraceEvent> all;
  Result taken = {.json = Json::array()};
  while (taken.json.size() < std::min(waiting, wanted)) {
    const Result one = TakeOne(session, all);
    taken.json.push_back(one.json);
    taken.text += one.text;
  }
  const std::size_t pending = unit.device().pendingEvents();
  Result result =
      Result()
          .add("events", taken.json, taken.json.empty() ? "no event was taken\n" : taken.text)
          .add("transmitted", TransmissionTable(unit.transmissions(first)), kNoTransmission)
          .add("pending", pending, PendingToText(pending));
  Words words = {"capture"};
  if (arguments.has("N")) {
    words.push_back(arguments.word("N"));
  }
  session.journal().add(words, result.json, all);
  return result;
}

}  // namespace

const Command kCapture = {
    {"capture",
     {{"N", ArgumentType::Number, "at most N events", Presence::Optional}},
     "lets the library take the events of trapped frames that wait for it, and tells what left it: "
     "frames for the protocol clients, messages, frames sent",
     {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\ncapture",
      "Init\nSetPortAdminState 1 1\nSetDhcpTrapEnable 1\nsend uni1 dhcp\ncapture 1"}},
    CapturePackets,
    true};

}  // namespace onu
