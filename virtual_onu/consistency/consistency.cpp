/// @file
/// The comparisons, one function a kind of object.
#include "consistency/consistency.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "consistency/vlan_flows.h"

namespace virtual_onu {
namespace {

using Findings = std::vector<std::string>;
using FlowName = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;  // dir, class, flow
using ActionName = std::pair<std::uint32_t, std::uint32_t>;                // dir, index
using LanName = std::pair<std::uint32_t, std::uint32_t>;                   // UNI port, VID

std::uint32_t DirectionOf(std::uint32_t dir) {
  return dir == BRMGR_DIR_DOWNSTREAM ? BRMGR_DIR_DOWNSTREAM : BRMGR_DIR_UPSTREAM;
}

std::string Side(std::uint32_t dir) {
  return dir == BRMGR_DIR_DOWNSTREAM ? "downstream" : "upstream";
}

std::string Text(const FlowName& name) {
  const auto& [dir, icIndex, flowIndex] = name;
  return Side(dir) + " flow " + std::to_string(flowIndex) + " of class " + std::to_string(icIndex);
}

std::string Text(const ActionName& name) {
  return Side(name.first) + " VLAN action " + std::to_string(name.second);
}

std::string Text(const SharedFlowKey& key) {
  return "downstream flow of " + VidText(key.vid) + " with " + std::to_string(key.tags) + " tags";
}

/// Reports what stands in one set only.
template <typename Name, typename Describe>
void Compare(const std::set<Name>& library, const std::set<Name>& board, Describe describe,
             Findings& findings) {
  for (const Name& name : board) {
    if (!library.contains(name)) {
      findings.push_back(describe(name) + " exists, but the library does not know it");
    }
  }
  for (const Name& name : library) {
    if (!board.contains(name)) {
      findings.push_back(describe(name) + " is in the library's tables, but does not exist");
    }
  }
}

/// Reports an object whose references differ from the users counted.
void CompareReferences(const std::string& what, std::uint32_t references, std::uint32_t users,
                       Findings& findings) {
  if (references != users) {
    findings.push_back(what + " has " + std::to_string(references) + " references, but " +
                       std::to_string(users) + " users");
  }
}

FlowName NameOf(const IngressFlowRule& flow) {
  return {DirectionOf(flow.dir), flow.icIndex, flow.flowIndex};
}

/// Hands over each flow of the chip, with its name.
template <typename Action>
void ForEachFlow(const ChipTables& chip, Action action) {
  for (const DirectionTables* direction : {&chip.downstream, &chip.upstream}) {
    for (const auto& [icIndex, ingressClass] : direction->classes) {
      for (const auto& [flowIndex, flow] : ingressClass.flows) {
        action(FlowName(DirectionOf(flow.dir), icIndex, flowIndex), flow);
      }
    }
  }
}

void CheckFlows(const LibraryTables& library, const ChipTables& chip, Findings& findings) {
  std::set<FlowName> known;
  for (const IngressFlowRule& flow : library.downstreamFlows) {
    known.insert(NameOf(flow));
  }
  for (const UpstreamFlow& recorded : library.upstreamFlows) {
    known.insert(NameOf(recorded.flow));
  }
  std::set<FlowName> existing;
  ForEachFlow(chip, [&existing](const FlowName& name, const IngressFlowRule& flow) {
    if (IsVlanFlow(flow)) {
      existing.insert(name);
    }
  });
  Compare(
      known, existing, [](const FlowName& name) { return Text(name); }, findings);
}

/// Actions that only flows outside the VLAN modes name.
std::set<ActionName> ForeignActions(const ChipTables& chip) {
  std::set<ActionName> foreign;
  ForEachFlow(chip, [&foreign](const FlowName& name, const IngressFlowRule& flow) {
    if (!IsVlanFlow(flow) && flow.vlanActionIndex != BRMGR_INDEX_NONE) {
      foreign.insert({std::get<0>(name), flow.vlanActionIndex});
    }
  });
  return foreign;
}

void CheckActions(const LibraryTables& library, const ChipTables& chip, Findings& findings) {
  std::set<ActionName> known;
  for (const PooledAction& action : library.actions) {
    known.insert({DirectionOf(action.rule.dir), action.rule.vlanActionIndex});
  }
  for (const std::uint32_t index : library.directActions) {
    known.insert({BRMGR_DIR_DOWNSTREAM, index});
  }
  const std::set<ActionName> foreign = ForeignActions(chip);
  std::set<ActionName> existing;
  for (const std::uint32_t dir : {BRMGR_DIR_DOWNSTREAM, BRMGR_DIR_UPSTREAM}) {
    for (const auto& [index, rule] : chip.of(dir).actions) {
      if (!foreign.contains({dir, index})) {
        existing.insert({dir, index});
      }
    }
  }
  Compare(
      known, existing, [](const ActionName& name) { return Text(name); }, findings);
}

/// The pooled action that an upstream flow names, or null.
const VlanActionRule* ActionOf(const LibraryTables& library, const IngressFlowRule& flow) {
  const auto found = std::ranges::find_if(library.actions, [&](const PooledAction& action) {
    return DirectionOf(action.rule.dir) == BRMGR_DIR_UPSTREAM &&
           action.rule.vlanActionIndex == flow.vlanActionIndex;
  });
  return found == library.actions.end() ? nullptr : &found->rule;
}

void CheckSharedFlowReferences(const LibraryTables& library, Findings& findings) {
  std::map<SharedFlowKey, std::uint32_t> users;
  for (const UpstreamFlow& recorded : library.upstreamFlows) {
    ++users[SharedFlowOf(library, recorded.flow)];
  }
  for (const IngressFlowRule& flow : library.downstreamFlows) {
    const SharedFlowKey key = {flow.outerVid, flow.vlanNum};
    CompareReferences(Text(key), flow.refCount, users[key], findings);
    users.erase(key);
  }
  for (const auto& [key, count] : users) {
    CompareReferences(Text(key), 0, count, findings);
  }
}

/// An upstream action has a reference from each flow that names it; the downstream actions of a VID
/// together have one from each flow that translates into that VID.
void CheckActionReferences(const LibraryTables& library, Findings& findings) {
  constexpr std::uint32_t kTranslate = BRMGR_TAG_REPLACE_VID | BRMGR_TAG_REPLACE_PRIORITY;
  std::map<std::uint32_t, std::uint32_t> users;
  std::map<std::uint32_t, std::uint32_t> translating;
  for (const UpstreamFlow& recorded : library.upstreamFlows) {
    const VlanActionRule* action = ActionOf(library, recorded.flow);
    if (action != nullptr) {
      ++users[action->vlanActionIndex];
      translating[action->tag[0].vid] += action->cmd == kTranslate ? 1 : 0;
    }
  }
  std::map<std::uint32_t, std::uint32_t> downstream;
  for (const PooledAction& action : library.actions) {
    if (DirectionOf(action.rule.dir) == BRMGR_DIR_UPSTREAM) {
      const ActionName name = {BRMGR_DIR_UPSTREAM, action.rule.vlanActionIndex};
      CompareReferences(Text(name), action.references, users[name.second], findings);
    } else {
      downstream[action.rule.tag[0].vid] += action.references;
    }
  }
  for (const auto& [vid, references] : downstream) {
    CompareReferences("the pool of downstream VLAN actions of VID " + std::to_string(vid),
                      references, translating[vid], findings);
  }
}

/// Port actions may outlive the flow of their port, not the action that they name.
void CheckPortActions(const ChipTables& chip, Findings& findings) {
  for (const auto& [icIndex, ingressClass] : chip.downstream.classes) {
    for (const auto& [key, action] : ingressClass.portActions) {
      if (!chip.downstream.actions.contains(action)) {
        findings.push_back("the port action of UNI port " + std::to_string(key.uni) + " on " +
                           Text(FlowName{BRMGR_DIR_DOWNSTREAM, icIndex, key.flowIndex}) +
                           " names VLAN action " + std::to_string(action) +
                           ", which does not exist");
      }
    }
  }
}

void CheckVlanObjects(const LibraryTables& library, const PathObjects& objects,
                      Findings& findings) {
  std::set<LanName> known;  // the WAN side is port 0
  for (const std::uint16_t vid : library.wanVids) {
    known.insert({0, vid});
  }
  for (const LanVlan& lan : library.lanVlans) {
    known.insert({lan.uni, lan.vid});
  }
  std::set<LanName> enabled;
  for (const auto& [name, vlan] : objects.vlans) {
    if (vlan.vids.empty()) {
      findings.push_back("VLAN object " + name + " enables no VID");
    }
    for (const std::uint16_t vid : vlan.vids) {
      enabled.insert({vlan.uni, vid});
    }
  }
  const auto describe = [](const LanName& name) {
    return "the VLAN object of VID " + std::to_string(name.second) + " on " +
           (name.first == 0 ? std::string("the WAN side")
                            : "UNI port " + std::to_string(name.first));
  };
  Compare(known, enabled, describe, findings);
}

/// A LAN VLAN object has a reference from each flow of its port that names its VID, and from each
/// multicast VLAN that the port keeps.
void CheckLanReferences(const LibraryTables& library, Findings& findings) {
  std::map<LanName, std::uint32_t> users;
  for (const UpstreamFlow& recorded : library.upstreamFlows) {
    if (recorded.flow.outerVid != 0) {
      ++users[{recorded.uni, recorded.flow.outerVid}];
    }
  }
  for (const MulticastVlan& vlan : library.multicastVlans) {
    ++users[{vlan.uni, vlan.vid}];
  }
  for (const LanVlan& lan : library.lanVlans) {
    CompareReferences("the VLAN object of VID " + std::to_string(lan.vid) + " on UNI port " +
                          std::to_string(lan.uni),
                      lan.references, users[{lan.uni, lan.vid}], findings);
  }
}

}  // namespace

std::vector<std::string> CheckConsistency(const LibraryTables& library, const BoardTables& board) {
  Findings findings;
  CheckFlows(library, board.chip, findings);
  CheckActions(library, board.chip, findings);
  CheckSharedFlowReferences(library, findings);
  CheckActionReferences(library, findings);
  CheckPortActions(board.chip, findings);
  CheckVlanObjects(library, board.objects, findings);
  CheckLanReferences(library, findings);
  return findings;
}

SharedFlowKey SharedFlowOf(const LibraryTables& library, const IngressFlowRule& flow) {
  if (const VlanActionRule* action = ActionOf(library, flow)) {
    const std::uint32_t pushed = (action->cmd & BRMGR_TAG_PUSH) != 0 ? 1 : 0;
    return {action->tag[0].vid, flow.vlanNum + pushed};
  }
  return {flow.outerVid != 0 ? flow.outerVid : kAnyVid, flow.vlanNum};
}

}  // namespace virtual_onu
