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

/// The fields of the action; null without one.
Json FieldsOf(const VlanActionRule* action) {
  return action == nullptr
             ? Json()
             : FieldsToJson(*virtual_onu::FindRecord("VlanActionRule"), BytesOf(*action));
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

Result ReportKey(const KeyComparison& key) {
  return {
      {{"key", key.key}, {"flow", key.flowValue}, {"frame", key.frameValue}, {"equal", key.equal}},
      "    " + key.key + ": flow " + key.flowValue + ", frame " + key.frameValue +
          (key.equal ? ", equal\n" : ", different\n")};
}

Result ReportFlow(const FlowTrial& flow) {
  const Result keys = Listed(flow.keys, ReportKey);
  return {{{"flowIndex", flow.flowIndex}, {"matched", flow.matched}, {"keys", keys.json}},
          "  flow " + std::to_string(flow.flowIndex) +
              (flow.matched ? ": matches\n" : ": does not match\n") + keys.text};
}

Result ReportClass(const ClassTrial& trial) {
  const Result flows = Listed(trial.flows, ReportFlow);
  const std::string keys = MaskText(trial.fieldMask);
  return {{{"icIndex", trial.icIndex},
           {"priority", trial.priority},
           {"keys", keys},
           {"flows", flows.json}},
          "class " + std::to_string(trial.icIndex) + ", priority " +
              std::to_string(trial.priority) + ", compares " + keys + "\n" +
              (trial.flows.empty() ? "  no flows\n" : flows.text)};
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
  return "VLAN action " + index + ": " +
         RecordToText(*virtual_onu::FindRecord("VlanActionRule"), BytesOf(*action)) + "\n";
}

Result ReportFrame(const std::string& when, const virtual_onu::Bytes& frame) {
  const Json json = FrameToJson(frame);
  return {json, when + ": " + json["summary"].get<std::string>() + "\n  " +
                    json["bytes"].get<std::string>() + "\n"};
}

Result ExplainFrame(Session& session, const Arguments& arguments) {
  const virtual_onu::PortId port = PortArgument(session, arguments);
  const InputFrame input = ReadFrame(arguments.words("FRAME"));
  const virtual_onu::Bytes& before = input.frame.bytes;
  const Explanation explanation = session.unit().dataPath().explain(port, before);
  const Verdict& verdict = explanation.verdict;
  const VlanActionRule* action = ActionOf(session, verdict);

  const Result told = ReportVerdict(verdict);
  const Cell event = EventOf(port, verdict);
  const std::size_t pending = session.unit().device().pendingEvents();
  const std::string queue = verdict.queue ? std::to_string(*verdict.queue) : "none";
  Result result;
  result
      .add("port", port.name(),
           "offered at " + port.name() + ", " + (verdict.dir == 0 ? "downstream" : "upstream") +
               "\n")
      .add("source", input.source)
      .add("classes", Listed(explanation.classes, ReportClass))
      .add("verdict", told.json)
      .addText(ReportPolicer(verdict).text)
      .add("action", FieldsOf(action), ActionToText(explanation, action))
      .add("steps", ListedLines(explanation.actionSteps, "  "))
      .add("event", event.json)
      .add("pending", pending)
      .addText(ReportRemark(verdict).text + "queue: " + queue + "\n")
      .add("before", ReportFrame("before", before))
      .add("after", ReportFrame("after", verdict.frame))
      .addText(told.text);
  if (verdict.eventType) {
    result.addText("it would become " + event.text + "\n" + PendingToText(pending));
  }
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
