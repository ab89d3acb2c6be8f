/// @file
/// Rendering of verdicts.
#include "report/verdict_report.h"

#include <map>
#include <set>

#include "datapath/outcome.h"
#include "frame/summary.h"
#include "language/words.h"
#include "report/qos_report.h"
#include "report/switching_report.h"

namespace onu {

namespace {

using virtual_onu::Disposition;
using virtual_onu::Verdict;

std::string NameOf(virtual_onu::Outcome outcome) {
  return std::string(virtual_onu::Describe(outcome).name);
}

Json DeliveriesToJson(const Verdict& verdict) {
  Json deliveries = Json::array();
  for (const virtual_onu::Delivery& delivery : verdict.deliveries) {
    deliveries.push_back({{"port", delivery.port.name()},
                          {"rule", delivery.rule.empty() ? Json(nullptr) : Json(delivery.rule)},
                          {"vlanActionIndex", OrNull(delivery.vlanActionIndex)},
                          {"steps", delivery.steps},
                          {"frame", FrameToJson(delivery.frame)}});
  }
  return deliveries;
}

Json ClosedToJson(const Verdict& verdict) {
  Json closed = Json::array();
  for (const virtual_onu::ClosedPort& port : verdict.closed) {
    closed.push_back({{"port", port.port.name()}, {"outcome", NameOf(port.outcome)}});
  }
  return closed;
}

Json CopiesToJson(const Verdict& verdict) {
  Json copies = Json::array();
  for (const virtual_onu::MirrorCopy& copy : verdict.copies) {
    copies.push_back({{"port", copy.port.name()},
                      {"of", copy.of.name()},
                      {"when", copy.received ? "received" : "transmitted"},
                      {"outcome", NameOf(copy.outcome)},
                      {"frame", FrameToJson(copy.frame)}});
  }
  return copies;
}

}  // namespace

Json VerdictToJson(const Verdict& verdict) {
  const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(verdict.outcome);
  Json egress = Json::array();
  for (const virtual_onu::PortId port : verdict.egress()) {
    egress.push_back(port.name());
  }
  return {{"dir", verdict.dir == 0 ? "ds" : "us"},
          {"disposition", std::string(virtual_onu::Name(outcome.disposition))},
          {"outcome", NameOf(verdict.outcome)},
          {"icIndex", OrNull(verdict.icIndex)},
          {"flowIndex", OrNull(verdict.flowIndex)},
          {"vlanActionIndex", OrNull(verdict.vlanActionIndex)},
          {"policer", PolicerToJson(verdict)},
          {"remark", RemarkToJson(verdict)},
          {"queue", OrNull(verdict.queue)},
          {"mac", MacDecisionToJson(verdict)},
          {"group", GroupDecisionToJson(verdict)},
          {"egress", egress},
          {"deliveries", DeliveriesToJson(verdict)},
          {"closed", ClosedToJson(verdict)},
          {"copies", CopiesToJson(verdict)}};
}

Json FrameToJson(const virtual_onu::Bytes& frame) {
  return {{"length", frame.size()},
          {"summary", virtual_onu::SummarizeFrame(frame)},
          {"bytes", virtual_onu::ToHex(frame)}};
}

std::string DestinationOf(const Verdict& verdict) {
  switch (virtual_onu::Describe(verdict.outcome).disposition) {
    case Disposition::Trap:
      return "unit";
    case Disposition::Drop:
      return "-";
    case Disposition::Forward:
      break;
  }
  Words ports;
  for (const virtual_onu::PortId port : verdict.egress()) {
    ports.push_back(port.name());
  }
  return Join(ports, ",");
}

std::string CopiesOf(const Verdict& verdict) {
  std::map<virtual_onu::Outcome, std::set<virtual_onu::PortId>> ports;
  for (const virtual_onu::ClosedPort& closed : verdict.closed) {
    ports[closed.outcome].insert(closed.port);
  }
  for (const virtual_onu::MirrorCopy& copy : verdict.copies) {
    ports[copy.outcome].insert(copy.port);
  }
  Words groups;
  for (const auto& [outcome, group] : ports) {
    Words names;
    for (const virtual_onu::PortId port : group) {
      names.push_back(port.name());
    }
    groups.push_back(NameOf(outcome) + ": " + Join(names, ","));
  }
  return groups.empty() ? "" : " (" + Join(groups, "; ") + ")";
}

std::string_view DispositionDone(Disposition disposition) {
  switch (disposition) {
    case Disposition::Forward:
      return "forwarded";
    case Disposition::Trap:
      return "trapped";
    case Disposition::Drop:
      break;
  }
  return "dropped";
}

}  // namespace onu
