/// @file
/// Rendering of verdicts.
#include "report/verdict_report.h"

#include <map>
#include <set>
#include <string>
#include <vector>

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

template <typename Ports>
Words NamesOf(const Ports& ports) {
  Words names;
  for (const virtual_onu::PortId port : ports) {
    names.push_back(port.name());
  }
  return names;
}

/// How the frame leaves by a port; people read it where the port's VLAN configuration was asked.
Result ReportDelivery(const virtual_onu::Delivery& delivery) {
  const bool asked = !delivery.rule.empty();
  const auto& action = delivery.vlanActionIndex;
  const Json frame = FrameToJson(delivery.frame);
  const Json json = {{"port", delivery.port.name()},
                     {"rule", asked ? Json(delivery.rule) : Json()},
                     {"vlanActionIndex", OrNull(action)},
                     {"steps", delivery.steps},
                     {"frame", frame}};
  if (!asked) {
    return {json};
  }
  return {json, "to " + delivery.port.name() + ": " + delivery.rule +
                    (action ? ", VLAN action " + std::to_string(*action) + " of the port" : "") +
                    "\n" + ListedLines(delivery.steps, "  ").text + "  " +
                    frame["summary"].get<std::string>() + "\n"};
}

Result ReportClosed(const virtual_onu::ClosedPort& closed) {
  return {{{"port", closed.port.name()}, {"outcome", NameOf(closed.outcome)}},
          "not to " + closed.port.name() + ": " + NameOf(closed.outcome) + "\n"};
}

Result ReportCopy(const virtual_onu::MirrorCopy& copy) {
  const std::string when = copy.received ? "received" : "transmitted";
  return {{{"port", copy.port.name()},
           {"of", copy.of.name()},
           {"when", when},
           {"outcome", NameOf(copy.outcome)},
           {"frame", FrameToJson(copy.frame)}},
          "copy of the frame " + when + " at " + copy.of.name() + ", to " + copy.port.name() +
              ": " + NameOf(copy.outcome) + "\n"};
}

std::string OutcomeToText(const Verdict& verdict) {
  const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(verdict.outcome);
  const std::string to = verdict.egress().empty() ? "" : " to " + DestinationOf(verdict);
  return "outcome: " + std::string(outcome.name) + ", " +
         std::string(DispositionDone(outcome.disposition)) + to + " (" + std::string(outcome.text) +
         ")\n";
}

std::string NeighbourToText(const Verdict& verdict) {
  return verdict.neighbour
             ? "switched locally: the destination was seen at " + verdict.neighbour->name() + "\n"
             : "";
}

}  // namespace

Result ReportVerdict(const Verdict& verdict) {
  const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(verdict.outcome);
  return Result()
      .add("dir", verdict.dir == 0 ? "ds" : "us")
      .add("disposition", virtual_onu::Name(outcome.disposition))
      .add("outcome", outcome.name, OutcomeToText(verdict))
      .add("icIndex", OrNull(verdict.icIndex))
      .add("flowIndex", OrNull(verdict.flowIndex))
      .add("vlanActionIndex", OrNull(verdict.vlanActionIndex))
      .add("policer", ReportPolicer(verdict).json)
      .add("remark", ReportRemark(verdict).json)
      .add("queue", OrNull(verdict.queue))
      .add("mac", ReportMacDecision(verdict))
      .add("group", ReportGroupDecision(verdict))
      .add("egress", NamesOf(verdict.egress()), NeighbourToText(verdict))
      .add("deliveries", Listed(verdict.deliveries, ReportDelivery))
      .add("closed", Listed(verdict.closed, ReportClosed))
      .add("copies", Listed(verdict.copies, ReportCopy));
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
  return Join(NamesOf(verdict.egress()), ",");
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
    groups.push_back(NameOf(outcome) + ": " + Join(NamesOf(group), ","));
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
