/// @file
/// Events and transmissions, as JSON and as text.
#include "report/packet_report.h"

#include "datapath/outcome.h"
#include "device/event_record.h"
#include "device/records.h"
#include "frame/summary.h"
#include "report/text_table.h"
#include "report/verdict_report.h"

namespace onu {

namespace {

std::string NameOf(virtual_onu::Outcome outcome) {
  return std::string(virtual_onu::Describe(outcome).name);
}

std::string CommandOf(const virtual_onu::Transmission& transmission) {
  constexpr std::string_view kPrefix = "BRMGR_CMD_";
  return virtual_onu::CommandName(transmission.command).substr(kPrefix.size());
}

}  // namespace

Json EventOfToJson(virtual_onu::PortId port, const virtual_onu::Verdict& verdict) {
  if (!verdict.eventType) {
    return nullptr;
  }
  return {{"type", *verdict.eventType},
          {"name", virtual_onu::EventName(*verdict.eventType)},
          {"port", port.uni},
          {"lost", verdict.eventLoss ? Json(NameOf(*verdict.eventLoss)) : Json(nullptr)}};
}

std::string EventOfToText(virtual_onu::PortId port, const virtual_onu::Verdict& verdict) {
  if (!verdict.eventType) {
    return "";
  }
  return "event " + virtual_onu::EventName(*verdict.eventType) + " of port " +
         std::to_string(port.uni) +
         (verdict.eventLoss ? ", lost: " + NameOf(*verdict.eventLoss) : "");
}

std::string PendingToText(std::size_t pending) {
  if (pending == 0) {
    return "";
  }
  return std::to_string(pending) + (pending == 1 ? " event waits" : " events wait") +
         " for the library\n";
}

Json TransmissionsToJson(const std::vector<virtual_onu::Transmission>& transmissions) {
  Json list = Json::array();
  for (const virtual_onu::Transmission& one : transmissions) {
    list.push_back({{"number", one.number},
                    {"command", virtual_onu::CommandName(one.command)},
                    {"port", one.port.name()},
                    {"outcome", NameOf(one.outcome)},
                    {"frame", FrameToJson(one.frame)}});
  }
  return list;
}

std::string TransmissionsToText(const std::vector<virtual_onu::Transmission>& transmissions,
                                const std::string& none) {
  TextTable table({"number", "command", "port", "outcome", "frame"});
  for (const virtual_onu::Transmission& one : transmissions) {
    table.add({std::to_string(one.number), CommandOf(one), one.port.name(), NameOf(one.outcome),
               virtual_onu::SummarizeFrame(one.frame)});
  }
  return table.text(none);
}

}  // namespace onu
