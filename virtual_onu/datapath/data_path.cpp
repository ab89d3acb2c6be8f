/// @file
/// From the classification to the ports that a frame is to leave by.
#include "datapath/data_path.h"

#include <utility>

#include "datapath/flow_search.h"
#include "datapath/traps.h"
#include "datapath/vlan_action.h"
#include "frame/frame.h"

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
  const Bytes before = verdict.frame;
  ApplyVlanAction(action->second, verdict.frame, steps);
  verdict.remark = RemarkOf(action->second, before, verdict.frame);
  return Outcome::FlowForward;
}

/// Leaves a frame as it came, without a queue, as if its flow had only let it pass.
void TakeBackEdit(ByteView frame, Verdict& verdict, Explanation* explanation) {
  verdict.frame.assign(frame.begin(), frame.end());
  verdict.vlanActionIndex.reset();
  verdict.queue.reset();
  verdict.remark.reset();
  if (explanation != nullptr) {
    explanation->actionSteps.clear();
  }
}

}  // namespace

DataPath::DataPath(const ChipTables& tables, Ports ports, std::optional<Limits> limits,
                   std::optional<MacBridge> bridge, const McastGroups* groups)
    : tables_(tables),
      ports_(std::move(ports)),
      limits_(std::move(limits)),
      bridge_(bridge),
      groups_(groups) {}

Verdict DataPath::offer(PortId port, ByteView frame) {
  Verdict verdict = decide(port, frame, nullptr);
  const bool forwarded =
      Describe(verdict.outcome).disposition == Disposition::Forward && verdict.addresses;
  if (forwarded) {
    bridge_->learn(port, verdict.addresses->source);
  }
  chargeLimits(port, frame.size(), verdict);
  counters_.countOffered(port, frame, !ports_.entryBlock(port), verdict);
  return verdict;
}

void DataPath::chargeLimits(PortId port, std::size_t octets, const Verdict& verdict) {
  if (!limits_) {
    return;
  }
  if (verdict.policer && verdict.outcome != Outcome::Policed) {
    limits_->countPoliced(*verdict.policer, octets);
  }
  for (const Delivery& delivery : verdict.deliveries) {
    if (port.isWan()) {
      limits_->countLimited(delivery.port.uni, delivery.frame.size());
    }
  }
}

Transmittal DataPath::transmit(PortId port, ByteView frame) {
  Transmittal transmittal;
  if (port.uni > uniPorts()) {
    transmittal.outcome = Outcome::UnknownPort;
  } else if (frame.size() < kEthernetHeaderSize) {
    transmittal.outcome = Outcome::RuntFrame;
  } else {
    transmittal.outcome = ports_.exitBlock(PortId::Wan(), port).value_or(Outcome::Transmitted);
  }
  if (transmittal.outcome == Outcome::Transmitted) {
    egress().mirror(port, false, frame, transmittal.copies);
  }
  counters_.countTransmitted(port, frame, transmittal);
  return transmittal;
}

Explanation DataPath::explain(PortId port, ByteView frame) const {
  Explanation explanation;
  explanation.verdict = decide(port, frame, &explanation);
  return explanation;
}

/// @param[out] explanation  its trials and steps are filled; null when nobody reads them
Verdict DataPath::decide(PortId port, ByteView frame, Explanation* explanation) const {
  Verdict verdict;
  verdict.dir = DirectionOf(port);
  verdict.frame.assign(frame.begin(), frame.end());
  if (const std::optional<Outcome> block = ports_.entryBlock(port)) {
    verdict.outcome = *block;
    return verdict;
  }
  ReceivedFrame received;
  received.ingressPort = IngressPortOf(port);
  const FrameFault fault = ParseFrame(frame, received.headers);
  if (fault != FrameFault::None) {
    verdict.outcome = OutcomeOf(fault);
    return verdict;
  }
  egress().mirror(port, true, frame, verdict.copies);
  if (IsTrapped(ports_.traps(), port, frame, received.headers)) {
    verdict.outcome = Outcome::ProtocolTrap;
    verdict.eventType = EventTypeOf(port, frame, received.headers, false);
    return verdict;
  }
  const IngressFlowRule* const flow = classify(received, verdict, explanation);
  if (const std::optional<GroupId> group = steeredGroup(port, received.headers, verdict)) {
    forwardGroup(port, frame, *group, verdict);
  } else if (flow != nullptr && verdict.outcome == Outcome::FlowForward) {
    forward(port, frame, *flow, verdict, explanation);
  } else if (verdict.outcome == Outcome::FlowTrap) {
    verdict.eventType = EventTypeOf(port, frame, received.headers, true);
  }
  return verdict;
}

const IngressFlowRule* DataPath::classify(const ReceivedFrame& received, Verdict& verdict,
                                          Explanation* explanation) const {
  const DirectionTables& tables = tables_.of(verdict.dir);
  const Classification found =
      Classify(tables, received, explanation ? &explanation->classes : nullptr);
  if (found.flow == nullptr) {
    verdict.outcome = tables.classes.empty() ? Outcome::NoClass : Outcome::NoFlow;
    return nullptr;
  }
  verdict.icIndex = found.icIndex;
  verdict.flowIndex = found.flowIndex;
  verdict.outcome = OutcomeOfDecision(found.flow->forward);
  return found.flow;
}

void DataPath::forward(PortId port, ByteView frame, const IngressFlowRule& flow, Verdict& verdict,
                       Explanation* explanation) const {
  if (!police(flow, verdict)) {
    verdict.outcome = Outcome::Policed;
    return;
  }
  verdict.outcome = Edit(tables_.of(verdict.dir), flow.vlanActionIndex, verdict,
                         explanation ? &explanation->actionSteps : nullptr);
  if (verdict.outcome != Outcome::FlowForward) {
    return;
  }
  verdict.queue = flow.queue;
  if (admit(port, frame, verdict)) {
    route(port, frame, verdict, explanation);
  }
}

bool DataPath::admit(PortId port, ByteView frame, Verdict& verdict) const {
  if (!bridge_) {
    return true;
  }
  const std::uint16_t vid = OuterVidOf(port.isWan() ? frame : ByteView(verdict.frame));
  verdict.addresses = AddressesOf(frame, vid);
  if (const auto refusal = bridge_->refusal(port, verdict.addresses->source)) {
    verdict.outcome = refusal->outcome;
    verdict.macDecision = refusal->decision;
    verdict.queue.reset();
    return false;
  }
  return true;
}

void DataPath::route(PortId port, ByteView frame, Verdict& verdict,
                     Explanation* explanation) const {
  const FlowId decided = {*verdict.icIndex, *verdict.flowIndex};
  verdict.macDecision =
      bridge_ ? bridge_->locate(port, verdict.addresses->destination) : std::nullopt;
  if (!verdict.macDecision) {
    egress().leave(port, destinationsOf(verdict.dir), decided, verdict);
    return;
  }
  const PortId to = verdict.macDecision->port;
  if (port.isWan() || to.isWan()) {
    egress().leave(port, {to}, decided, verdict);
  } else if (!ports_.hasVlans()) {
    TakeBackEdit(frame, verdict, explanation);
    switchLocally(port, to, decided, verdict);
  } else if (const std::optional<FlowId> back = wayBack(to, verdict.frame)) {
    switchLocally(port, to, *back, verdict);
  } else {
    verdict.macDecision.reset();
    egress().leave(port, {PortId::Wan()}, decided, verdict);
  }
}

void DataPath::switchLocally(PortId port, PortId to, const FlowId& flow, Verdict& verdict) const {
  verdict.neighbour = to;
  egress().leave(port, {to}, flow, verdict);
}

std::optional<FlowId> DataPath::wayBack(PortId to, ByteView frame) const {
  ReceivedFrame back;
  back.ingressPort = kWanIngressPort;
  if (ParseFrame(frame, back.headers) != FrameFault::None) {
    return std::nullopt;
  }
  const Classification found = Classify(tables_.downstream, back, nullptr);
  if (found.flow == nullptr || found.flow->forward != BRMGR_FORWARD_PASS) {
    return std::nullopt;
  }
  const FlowId flow = {found.icIndex, found.flowIndex};
  return egress().treat(to, frame, flow) ? std::optional(flow) : std::nullopt;
}

std::vector<PortId> DataPath::destinationsOf(std::uint32_t dir) const {
  if (dir == BRMGR_DIR_UPSTREAM) {
    return {PortId::Wan()};
  }
  std::vector<PortId> ports;
  ports.reserve(uniPorts());
  for (std::uint32_t number = 1; number <= uniPorts(); ++number) {
    ports.push_back(PortId::Uni(number));
  }
  return ports;
}

std::optional<GroupId> DataPath::steeredGroup(PortId port, const FrameHeaders& headers,
                                              const Verdict& verdict) const {
  const bool ended =
      verdict.outcome == Outcome::FlowTrap || verdict.outcome == Outcome::FlowAccessControl;
  return groups_ != nullptr && port.isWan() && !ended ? GroupOf(headers) : std::nullopt;
}

void DataPath::forwardGroup(PortId port, ByteView frame, const GroupId& group,
                            Verdict& verdict) const {
  verdict.icIndex.reset();
  verdict.flowIndex.reset();
  if (!admit(port, frame, verdict)) {
    return;
  }
  verdict.groupDecision = GroupDecision{group, {}};
  const std::vector<GroupMember> members = MembersOf(*groups_, group);
  if (members.empty()) {
    verdict.outcome = Outcome::NoGroupMember;
    return;
  }
  for (const GroupMember& member : members) {
    verdict.groupDecision->entries.push_back(member.channelIndex);
  }
  egress().leaveToGroup(port, frame, group, members, verdict);
}

bool DataPath::police(const IngressFlowRule& flow, Verdict& verdict) const {
  if (!limits_ || flow.policer == BRMGR_INDEX_NONE) {
    return true;
  }
  verdict.policer = flow.policer;
  verdict.policerTokens = limits_->policerTokens(flow.policer);
  const bool admitted = limits_->policerAdmits(flow.policer, verdict.frame.size());
  if (admitted && verdict.policerTokens) {
    *verdict.policerTokens -= verdict.frame.size();
  }
  return admitted;
}

Egress DataPath::egress() const {
  return {tables_.downstream, ports_, limits_ ? &*limits_ : nullptr, bridge_ ? &*bridge_ : nullptr};
}

}  // namespace virtual_onu
