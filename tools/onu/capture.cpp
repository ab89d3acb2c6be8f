/// @file
/// The commands of the packet path: letting the library take the events that wait for it, and the
/// list of what it sent.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <hal_bcm6838x.h>

#include "clients/protocol_clients.h"
#include "commands.h"
#include "event_report.h"
#include "operation_call.h"
#include "packet_report.h"
#include "report_table.h"

namespace onu {

namespace {

using virtual_onu::TraceEvent;
using virtual_onu::Transmission;

constexpr std::string_view kNoTransmission = "nothing was transmitted";

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

}  // namespace

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
  const Result result =
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

Result ShowTransmitted(Session& session, const Arguments& arguments) {
  std::vector<Transmission> sent = session.unit().transmissions();
  const std::size_t newest = arguments.optionalNumber("N").value_or(sent.size());
  if (newest < sent.size()) {
    sent.erase(sent.begin(), sent.end() - static_cast<std::ptrdiff_t>(newest));
  }
  return Result().add("transmitted", TransmissionTable(sent), kNoTransmission);
}

Result SwitchClients(Session& session, const Arguments& arguments) {
  const bool on = arguments.word("STATE") == "on";
  session.unit().onClientCall(on ? virtual_onu::ClientTaker(virtual_onu::ServeClient)
                                 : virtual_onu::ClientTaker());
  session.noteChange({"clients", arguments.word("STATE")});
  return {{{"clients", on}}, std::string("protocol clients ") + (on ? "on" : "off") + "\n"};
}

}  // namespace onu
