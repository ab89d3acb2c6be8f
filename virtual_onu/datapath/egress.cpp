/// @file
/// From the ports that a frame is to leave by to those that it leaves by.
#include "datapath/egress.h"

#include <string>
#include <utility>

#include "datapath/port_vlan_rule.h"
#include "datapath/vlan_action.h"
#include "frame/frame.h"

namespace virtual_onu {

void Egress::leave(PortId from, const std::vector<PortId>& destinations, const FlowId& flow,
                   Verdict& verdict) const {
  for (const PortId to : destinations) {
    if (close(from, to, verdict)) {
      continue;
    }
    if (std::optional<Delivery> delivery = treat(to, verdict.frame, flow)) {
      deliver(from, std::move(*delivery), verdict);
    } else {
      verdict.closed.push_back({to, Outcome::EgressVlanFilter});
    }
  }
  if (verdict.deliveries.empty()) {
    verdict.outcome = Outcome::NoEgress;
  }
}

void Egress::leaveToGroup(PortId from, ByteView frame, const GroupId& group,
                          const std::vector<GroupMember>& members, Verdict& verdict) const {
  for (const GroupMember& member : members) {
    if (!close(from, member.port, verdict)) {
      deliver(from, treatGroup(member, group, frame), verdict);
    }
  }
  verdict.outcome = verdict.deliveries.empty() ? Outcome::NoEgress : Outcome::GroupForward;
}

bool Egress::close(PortId from, PortId to, Verdict& verdict) const {
  std::optional<Outcome> block = ports_.exitBlock(from, to);
  if (!block && verdict.addresses && bridge_->isBlocked(to, verdict.addresses->destination)) {
    block = Outcome::EgressMacFiltered;
  }
  if (block) {
    verdict.closed.push_back({to, *block});
  }
  return block.has_value();
}

void Egress::deliver(PortId from, Delivery delivery, Verdict& verdict) const {
  if (!isWithinLimit(from, delivery)) {
    verdict.closed.push_back({delivery.port, Outcome::EgressRateLimited});
    return;
  }
  mirror(delivery.port, false, delivery.frame, verdict.copies);
  verdict.deliveries.push_back(std::move(delivery));
}

std::optional<Delivery> Egress::treat(PortId to, ByteView frame, const FlowId& flow) const {
  Delivery delivery = {to, {}, {}, {}, {frame.begin(), frame.end()}};
  if (to.isWan() || !ports_.hasVlans()) {
    return delivery;
  }
  FrameHeaders headers;
  ParseFrame(frame, headers);
  const PortVlanRule rule = FindPortVlanRule(ports_.vlanOf(to.uni), to.uni, headers);
  if (!rule.admits) {
    return std::nullopt;
  }
  delivery.rule = rule.reason;
  const IngressClass& ingressClass = downstream_.classes.at(flow.icIndex);
  const auto own = ingressClass.portActions.find({flow.flowIndex, to.uni});
  const auto action = own == ingressClass.portActions.end() ? downstream_.actions.end()
                                                            : downstream_.actions.find(own->second);
  if (action != downstream_.actions.end()) {
    delivery.vlanActionIndex = action->first;
    ApplyVlanAction(action->second, delivery.frame, &delivery.steps);
  } else if (rule.edit != nullptr) {
    rule.edit(delivery.frame);
    delivery.steps.emplace_back("pop the outer tag");
  }
  return delivery;
}

Delivery Egress::treatGroup(const GroupMember& member, const GroupId& group, ByteView frame) const {
  Delivery delivery = {
      member.port,
      "joined " + group.text() + " by group entry " + std::to_string(member.channelIndex),
      {},
      {},
      {frame.begin(), frame.end()}};
  const auto action = downstream_.actions.find(member.vlanActionIndex);
  if (action != downstream_.actions.end()) {
    delivery.vlanActionIndex = action->first;
    ApplyVlanAction(action->second, delivery.frame, &delivery.steps);
  }
  return delivery;
}

bool Egress::isWithinLimit(PortId from, const Delivery& delivery) const {
  return limits_ == nullptr || !from.isWan() ||
         limits_->limitAdmits(delivery.port.uni, delivery.frame.size());
}

void Egress::mirror(PortId port, bool received, ByteView frame,
                    std::vector<MirrorCopy>& copies) const {
  if (const std::optional<PortId> to = ports_.mirrorOf(port, received)) {
    copies.push_back({*to,
                      port,
                      received,
                      ports_.exitBlock(PortId::Wan(), *to).value_or(Outcome::Mirrored),
                      {frame.begin(), frame.end()}});
  }
}

}  // namespace virtual_onu
