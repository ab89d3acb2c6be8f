/// @file
/// Events and transmissions, as JSON and as text.
#include "report/packet_report.h"

#include "datapath/outcome.h"
#include "device/event_record.h"
#include "device/records.h"
#include "frame/summary.h"
#include "report/verdict_report.h"

namespace onu {

namespace {

using virtual_onu::Transmission;

std::string NameOf(virtual_onu::Outcome outcome) {
  return std::string(virtual_onu::Describe(outcome).name);
}

Cell CommandOf(const Transmission& transmission) {
  constexpr std::string_view kPrefix = "BRMGR_CMD_";
  const std::string name = virtual_onu::CommandName(transmission.command);
  return {name, name.substr(kPrefix.size())};
}

Cell FrameOf(const Transmission& transmission) {
  return {FrameToJson(transmission.frame), virtual_onu::SummarizeFrame(transmission.frame)};
}

const Columns<Transmission> kTransmissions = {
    {"number", "number", &Transmission::number},
    {"command", "command", CommandOf},
    {"port", "port", &Transmission::port},
    {"outcome", "outcome", [](const auto& one) { return NameOf(one.outcome); }},
    {"frame", "frame", FrameOf},
};

}  // namespace

Cell EventOf(virtual_onu::PortId port, const virtual_onu::Verdict& verdict) {
  if (!verdict.eventType) {
    return {{}, ""};
  }
  const std::string name = virtual_onu::EventName(*verdict.eventType);
  const auto& lost = verdict.eventLoss;
  return {{{"type", *verdict.eventType},
           {"name", name},
           {"port", port.uni},
           {"lost", lost ? Json(NameOf(*lost)) : Json()}},
          "event " + name + " of port " + std::to_string(port.uni) +
              (lost ? ", lost: " + NameOf(*lost) : "")};
}

std::string PendingToText(std::size_t pending) {
  if (pending == 0) {
    return "";
  }
  return std::to_string(pending) + (pending == 1 ? " event waits" : " events wait") +
         " for the library\n";
}

Table TransmissionTable(const std::vector<Transmission>& transmissions) {
  return {kTransmissions, transmissions};
}

}  // namespace onu
