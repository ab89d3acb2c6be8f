/// @file
/// The command that explains what would become of a frame.
#include <string>

#include "commands/command_rows.h"
#include "datapath/outcome.h"
#include "device/records.h"
#include "frame/summary.h"
#include "language/frame_input.h"
#include "report/packet_report.h"
#include "report/qos_report.h"
#include "report/record_report.h"
#include "report/switching_report.h"
#include "report/verdict_report.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::ClassTrial;
using virtual_onu::Explanation;
using virtual_onu::FlowTrial;
using virtual_onu::KeyComparison;
using virtual_onu::Verdict;

/// The VLAN action that was applied, or null.
const VlanActionRule* ActionOf(Session& session, const Verdict& verdict) {
  const auto& actions = session.unit().device().tables().of(verdict.dir).actions;
  const auto found =
      verdict.vlanActionIndex ? actions.find(*verdict.vlanActionIndex) : actions.end();
  return found == actions.end() ? nullptr : &found->second;
}

virtual_onu::ByteView BytesOf(const VlanActionRule& action) {
  return {reinterpret_cast<const std::uint8_t*>(&action), sizeof(action)};
}

std::string MaskText(std::uint32_t fieldMask) {
  Words names;
  for (const virtual_onu::NamedValue& key : virtual_onu::KeyBits()) {
    if ((fieldMask & key.value) != 0) {
      names.emplace_back(key.name);
    }
  }
  return Join(names, "|");
}

Json FlowToJson(const FlowTrial& flow) {
  Json keys = Json::array();
  for (const KeyComparison& key : flow.keys) {
    keys.push_back({{"key", key.key},
                    {"flow", key.flowValue},
                    {"frame", key.frameValue},
                    {"equal", key.equal}});
  }
  return {{"flowIndex", flow.flowIndex}, {"matched", flow.matched}, {"keys", keys}};
}

Json ClassesToJson(const Explanation& explanation) {
  Json classes = Json::array();
  for (const ClassTrial& trial : explanation.classes) {
    Json flows = Json::array();
    for (const FlowTrial& flow : trial.flows) {
      flows.push_back(FlowToJson(flow));
    }
    classes.push_back({{"icIndex", trial.icIndex},
                       {"priority", trial.priority},
                       {"keys", MaskText(trial.fieldMask)},
                       {"flows", flows}});
  }
  return classes;
}

std::string FlowToText(const FlowTrial& flow) {
  std::string text = "  flow " + std::to_string(flow.flowIndex) +
                     (flow.matched ? ": matches\n" : ": does not match\n");
  for (const KeyComparison& key : flow.keys) {
    text += "    " + key.key + ": flow " + key.flowValue + ", frame " + key.frameValue +
            (key.equal ? ", equal\n" : ", different\n");
  }
  return text;
}

std::string ClassesToText(const Explanation& explanation) {
  std::string text;
  for (const ClassTrial& trial : explanation.classes) {
    text += "class " + std::to_string(trial.icIndex) + ", priority " +
            std::to_string(trial.priority) + ", compares " + MaskText(trial.fieldMask) + "\n";
    if (trial.flows.empty()) {
      text += "  no flows\n";
    }
    for (const FlowTrial& flow : trial.flows) {
      text += FlowToText(flow);
    }
  }
  return text;
}

std::string ActionToText(const Explanation& explanation, const VlanActionRule* action) {
  const Verdict& verdict = explanation.verdict;
  if (!verdict.vlanActionIndex) {
    return "VLAN action: none\n";
  }
  const std::string index = std::to_string(*verdict.vlanActionIndex);
  if (action == nullptr) {
    return "VLAN action " + index + ": the chip has none of this index\n";
  }
  std::string text = "VLAN action " + index + ": " +
                     RecordToText(*virtual_onu::FindRecord("VlanActionRule"), BytesOf(*action)) +
                     "\n";
  for (const std::string& step : explanation.actionSteps) {
    text += "  " + step + "\n";
  }
  return text;
}

std::string FrameToText(const char* when, const virtual_onu::Bytes& frame) {
  return std::string(when) + ": " + virtual_onu::SummarizeFrame(frame) + "\n  " +
         virtual_onu::ToHex(frame) + "\n";
}

/// How the frame leaves by a port whose VLAN configuration was asked.
std::string DeliveryToText(const virtual_onu::Delivery& delivery) {
  if (delivery.rule.empty()) {
    return "";
  }
  std::string text = "to " + delivery.port.name() + ": " + delivery.rule;
  if (delivery.vlanActionIndex) {
    text += ", VLAN action " + std::to_string(*delivery.vlanActionIndex) + " of the port";
  }
  text += "\n";
  for (const std::string& step : delivery.steps) {
    text += "  " + step + "\n";
  }
  return text + "  " + virtual_onu::SummarizeFrame(delivery.frame) + "\n";
}

/// A line for each port that the frame did not leave by, and for each copy.
std::string CopiesToText(const Verdict& verdict) {
  std::string text;
  for (const virtual_onu::Delivery& delivery : verdict.deliveries) {
    text += DeliveryToText(delivery);
  }
  for (const virtual_onu::ClosedPort& closed : verdict.closed) {
    text += "not to " + closed.port.name() + ": " +
            std::string(virtual_onu::Describe(closed.outcome).name) + "\n";
  }
  for (const virtual_onu::MirrorCopy& copy : verdict.copies) {
    text += std::string("copy of the frame ") + (copy.received ? "received" : "transmitted") +
            " at " + copy.of.name() + ", to " + copy.port.name() + ": " +
            std::string(virtual_onu::Describe(copy.outcome).name) + "\n";
  }
  return text;
}

std::string OutcomeToText(const Verdict& verdict) {
  const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(verdict.outcome);
  std::string text = "outcome: " + std::string(outcome.name) + ", " +
                     std::string(DispositionDone(outcome.disposition));
  if (!verdict.egress().empty()) {
    text += " to " + DestinationOf(verdict);
  }
  text += " (" + std::string(outcome.text) + ")\n" + MacDecisionToText(verdict) +
          GroupDecisionToText(verdict);
  if (verdict.neighbour) {
    text += "switched locally: the destination was seen at " + verdict.neighbour->name() + "\n";
  }
  return text + CopiesToText(verdict);
}

/// The event that a trapped frame would become, and how many wait already.
std::string EventToText(virtual_onu::PortId port, const Verdict& verdict, std::size_t pending) {
  return verdict.eventType
             ? "it would become " + EventOfToText(port, verdict) + "\n" + PendingToText(pending)
             : "";
}

Result ExplainFrame(Session& session, const Arguments& arguments) {
  const virtual_onu::PortId port = PortArgument(session, arguments);
  const InputFrame input = ReadFrame(arguments.words("FRAME"));
  const virtual_onu::Bytes& before = input.frame.bytes;
  const Explanation explanation = session.unit().dataPath().explain(port, before);
  const Verdict& verdict = explanation.verdict;
  const VlanActionRule* action = ActionOf(session, verdict);

  Result result;
  result.json = {{"port", port.name()}, {"source", input.source}};
  result.json["classes"] = ClassesToJson(explanation);
  result.json["verdict"] = VerdictToJson(verdict);
  result.json["action"] =
      action == nullptr
          ? Json(nullptr)
          : FieldsToJson(*virtual_onu::FindRecord("VlanActionRule"), BytesOf(*action));
  result.json["steps"] = explanation.actionSteps;
  const std::size_t pending = session.unit().device().pendingEvents();
  result.json["event"] = EventOfToJson(port, verdict);
  result.json["pending"] = pending;
  result.json["before"] = FrameToJson(before);
  result.json["after"] = FrameToJson(verdict.frame);
  result.text = "offered at " + port.name() + ", " +
                (verdict.dir == 0 ? "downstream" : "upstream") + "\n" + ClassesToText(explanation) +
                PolicerToText(verdict) + ActionToText(explanation, action) + QueueToText(verdict) +
                FrameToText("before", before) + FrameToText("after", verdict.frame) +
                OutcomeToText(verdict) + EventToText(port, verdict, pending);
  return result;
}

}  // namespace

const Command kExplain = {
    {"explain",
     {kPort, kFrame},
     "tells, and changes nothing, what would become of a frame and why: each class tried, "
     "each key compared",
     {"Init\nSetPortAdminState 1 1\nexplain uni1 tests/data/stp.pcap#1",
      "Init\nSetPortAdminState 2 1\nexplain uni2 udp vlan 100 dport 67"}},
    ExplainFrame};

}  // namespace onu
