/// @file
/// From the classification to the verdict, and the counters.
#include "datapath/data_path.h"

#include "datapath/classify.h"
#include "datapath/vlan_action.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kWanIngressPort = 0;

std::uint32_t DirectionOf(PortId port) {
  return port.isWan() ? BRMGR_DIR_DOWNSTREAM : BRMGR_DIR_UPSTREAM;
}

/// The data path numbers its ports from the WAN side, and leaves one number out before UNI 1.
std::uint32_t IngressPortOf(PortId port) {
  return port.isWan() ? kWanIngressPort : port.uni + 1;
}

Outcome OutcomeOf(FrameFault fault) {
  return fault == FrameFault::Runt ? Outcome::RuntFrame : Outcome::TruncatedTag;
}

Outcome OutcomeOfDecision(std::uint32_t forward) {
  switch (forward) {
    case BRMGR_FORWARD_PASS:
      return Outcome::FlowForward;
    case BRMGR_FORWARD_TRAP:
      return Outcome::FlowTrap;
    case BRMGR_FORWARD_ACL:
      return Outcome::FlowAccessControl;
    default:
      return Outcome::UnknownDecision;
  }
}

/// Applies the VLAN action that a forwarding flow names, if any.
Outcome Edit(const DirectionTables& tables, std::uint32_t actionIndex, Verdict& verdict,
             std::vector<std::string>* steps) {
  if (actionIndex == BRMGR_INDEX_NONE) {
    return Outcome::FlowForward;
  }
  verdict.vlanActionIndex = actionIndex;
  const auto action = tables.actions.find(actionIndex);
  if (action == tables.actions.end()) {
    return Outcome::UnknownVlanAction;
  }
  ApplyVlanAction(action->second, verdict.frame, steps);
  return Outcome::FlowForward;
}

}  // namespace

DataPath::DataPath(const ChipTables& tables, std::uint32_t uniPorts)
    : tables_(tables), uniPorts_(uniPorts) {}

Verdict DataPath::offer(PortId port, ByteView frame) {
  Verdict verdict = decide(port, frame, nullptr);
  OutcomeCount& count = counters_[{port, verdict.outcome}];
  count.port = port;
  count.outcome = verdict.outcome;
  ++count.frames;
  count.octets += frame.size();
  return verdict;
}

Explanation DataPath::explain(PortId port, ByteView frame) const {
  Explanation explanation;
  explanation.verdict = decide(port, frame, &explanation);
  return explanation;
}

std::vector<OutcomeCount> DataPath::counters() const {
  std::vector<OutcomeCount> counts;
  counts.reserve(counters_.size());
  for (const auto& [key, count] : counters_) {
    counts.push_back(count);
  }
  return counts;
}

void DataPath::clearCounters() {
  counters_.clear();
}

/// @param[out] explanation  its trials and steps are filled; null when nobody reads them
Verdict DataPath::decide(PortId port, ByteView frame, Explanation* explanation) const {
  Verdict verdict;
  verdict.dir = DirectionOf(port);
  verdict.frame.assign(frame.begin(), frame.end());
  if (port.uni > uniPorts_) {
    verdict.outcome = Outcome::UnknownPort;
    return verdict;
  }
  ReceivedFrame received;
  received.ingressPort = IngressPortOf(port);
  const FrameFault fault = ParseFrame(frame, received.headers);
  if (fault != FrameFault::None) {
    verdict.outcome = OutcomeOf(fault);
    return verdict;
  }
  classify(received, verdict, explanation);
  return verdict;
}

/// Finds the deciding flow and carries its decision out.
void DataPath::classify(const ReceivedFrame& received, Verdict& verdict,
                        Explanation* explanation) const {
  const DirectionTables& tables = tables_.of(verdict.dir);
  const Classification found =
      Classify(tables, received, explanation ? &explanation->classes : nullptr);
  if (!found.flow) {
    verdict.outcome = tables.classes.empty() ? Outcome::NoClass : Outcome::NoFlow;
    return;
  }
  verdict.icIndex = found.icIndex;
  verdict.flowIndex = found.flowIndex;
  verdict.outcome = OutcomeOfDecision(found.flow->forward);
  if (verdict.outcome == Outcome::FlowForward) {
    forward(tables, *found.flow, verdict, explanation);
  }
}

void DataPath::forward(const DirectionTables& tables, const IngressFlowRule& flow, Verdict& verdict,
                       Explanation* explanation) const {
  verdict.outcome = Edit(tables, flow.vlanActionIndex, verdict,
                         explanation ? &explanation->actionSteps : nullptr);
  if (verdict.outcome == Outcome::FlowForward) {
    verdict.queue = flow.queue;
    verdict.egress = egressOf(verdict.dir);
  }
}

std::vector<PortId> DataPath::egressOf(std::uint32_t dir) const {
  if (dir == BRMGR_DIR_UPSTREAM) {
    return {PortId::Wan()};
  }
  std::vector<PortId> ports;
  ports.reserve(uniPorts_);
  for (std::uint32_t number = 1; number <= uniPorts_; ++number) {
    ports.push_back(PortId::Uni(number));
  }
  return ports;
}

}  // namespace virtual_onu
