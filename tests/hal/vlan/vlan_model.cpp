/// @file
/// Behaviour of the model.
#include "hal/vlan/vlan_model.h"

#include <algorithm>
#include <numeric>

namespace hal_test {

namespace {

constexpr std::int64_t kNone = -1;
constexpr std::uint32_t kAnyVid = 4096;

std::string Text(std::uint32_t number) {
  return std::to_string(number);
}

/// The device gives out its lowest free index.
template <typename Content>
std::uint32_t LowestFree(const std::map<std::uint32_t, Content>& table) {
  std::uint32_t index = 0;
  while (table.contains(index)) {
    ++index;
  }
  return index;
}

std::string Create(const std::string& object, const std::string& port) {
  return "bs /b/n vlan/name=" + object + " port/index=" + port;
}

std::string Enable(const std::string& object, std::uint32_t vid, const std::string& value) {
  return "bs /b/c vlan/name=" + object + " vid_enable[" + Text(vid) + "]=" + value;
}

std::string Destroy(const std::string& object) {
  return "bs /b/d vlan/name=" + object;
}

std::string WanName(std::uint32_t vid) {
  return "wan0_" + Text(vid);
}

std::string LanPort(std::uint32_t port) {
  return "lan" + Text(port - 1);
}

std::string LanName(std::uint32_t port, std::uint32_t vid) {
  return LanPort(port) + "_" + Text(vid);
}

std::uint32_t ClassOf(std::uint32_t vid) {
  return vid == kAnyVid ? 0 : 1;
}

}  // namespace

std::string ToText(const VlanStep& step) {
  static const std::map<VlanOperation, std::string> kNames = {
      {VlanOperation::kAddAction, "AddVlanAction(content "},
      {VlanOperation::kDelAction, "DelVlanAction(dir "},
      {VlanOperation::kAddFlow, "AddDsIngressClass(vid "},
      {VlanOperation::kDelFlow, "DelDsIngressClass(vid "},
      {VlanOperation::kAddWan, "AddWanVlan(port "},
      {VlanOperation::kDelWan, "DelWanVlan(port "},
      {VlanOperation::kAddLan, "AddLanVlan(port "},
      {VlanOperation::kDelLan, "DelLanVlan(port "},
      {VlanOperation::kRefuseNext, "refuse the next command("},
  };
  const auto& [first, second, third] = step.arguments;
  return kNames.at(step.operation) + Text(first) + ", " + Text(second) + ", " + Text(third) + ")";
}

std::string ToText(const VlanOutcome& outcome) {
  const std::string count = outcome.count ? std::to_string(*outcome.count) : "none";
  return std::accumulate(
      outcome.shell.begin(), outcome.shell.end(),
      "result " + std::to_string(outcome.result) + ", logged count " + count,
      [](const std::string& text, const std::string& line) { return text + ", \"" + line + "\""; });
}

std::uint32_t ContentVid(std::uint32_t content) {
  return 1 + content / 2;
}

std::uint32_t ContentDir(std::uint32_t content) {
  return content % 2;
}

VlanOutcome VlanModel::apply(const VlanStep& step) {
  const auto& [first, second, third] = step.arguments;
  switch (step.operation) {
    case VlanOperation::kAddAction:
      return addAction(first, second);
    case VlanOperation::kDelAction:
      return delAction(first, second);
    case VlanOperation::kAddFlow:
      return addFlow({first, second}, third);
    case VlanOperation::kDelFlow:
      return delFlow({first, second});
    case VlanOperation::kAddWan:
      return addWan(first, second, third);
    case VlanOperation::kDelWan:
      return delWan(first, second, third);
    case VlanOperation::kAddLan:
      return addLan(first, second);
    case VlanOperation::kDelLan:
      return delLan(first, second);
    case VlanOperation::kRefuseNext:
      refusesNext_ = true;
      break;
  }
  return {};
}

DeviceContent VlanModel::device() const {
  DeviceContent content;
  for (std::uint32_t dir = 0; dir < deviceActions_.size(); ++dir) {
    for (const auto& [index, vid] : deviceActions_.at(dir)) {
      content.push_back({false, dir, index, vid, 0});
    }
  }
  for (std::uint32_t icIndex = 0; icIndex < deviceFlows_.size(); ++icIndex) {
    for (const auto& [index, key] : deviceFlows_.at(icIndex)) {
      content.push_back({true, icIndex, index, key.first == kAnyVid ? 0 : key.first, key.second});
    }
  }
  return content;
}

bool VlanModel::driverTakes() {
  return !std::exchange(refusesNext_, false);
}

VlanOutcome VlanModel::addAction(std::uint32_t content, std::uint32_t count) {
  auto* slot = std::ranges::find_if(
      pool_, [&](const ActionSlot& each) { return each.used && each.content == content; });
  if (slot != pool_.end()) {
    slot->count += count;
    return {slot->index, static_cast<std::int32_t>(slot->count)};
  }
  slot = std::ranges::find(pool_, false, &ActionSlot::used);
  if (slot == pool_.end() || !driverTakes()) {
    return {kNone};
  }
  auto& actions = deviceActions_.at(ContentDir(content));
  const std::uint32_t index = LowestFree(actions);
  actions[index] = ContentVid(content);
  *slot = {true, content, index, count};
  return {index};
}

bool VlanModel::isMet(const ActionSlot& slot, std::uint32_t dir, std::uint32_t index) const {
  return slot.used ? ContentDir(slot.content) == dir && slot.index == index
                   : knowsFreeSlots_ && dir == 0 && index == 0;
}

VlanOutcome VlanModel::delAction(std::uint32_t dir, std::uint32_t index) {
  auto* const slot =
      std::ranges::find_if(pool_, [&](const ActionSlot& each) { return isMet(each, dir, index); });
  if (slot == pool_.end()) {
    return {};
  }
  --slot->count;
  VlanOutcome outcome = {0, static_cast<std::int32_t>(slot->count)};
  if (slot->used && slot->count == 0 && driverTakes()) {
    deviceActions_.at(dir).erase(index);
    *slot = {};
  }
  return outcome;
}

VlanOutcome VlanModel::addFlow(const FlowKey& key, std::uint32_t count) {
  if (const auto found = flows_.find(key); found != flows_.end()) {
    found->second.count += count;
    return {found->second.index, static_cast<std::int32_t>(found->second.count)};
  }
  if (!driverTakes()) {
    return {kNone};
  }
  auto& inClass = deviceFlows_.at(ClassOf(key.first));
  const std::uint32_t index = LowestFree(inClass);
  inClass[index] = key;
  if (flows_.size() == kCapacity) {
    return {kNone};
  }
  flows_[key] = {index, count};
  return {index};
}

VlanOutcome VlanModel::delFlow(const FlowKey& key) {
  const auto found = flows_.find(key);
  if (found == flows_.end()) {
    return {};
  }
  const std::uint32_t count = --found->second.count;
  if (count == 0) {
    if (driverTakes()) {
      deviceFlows_.at(ClassOf(key.first)).erase(found->second.index);
    }
    flows_.erase(found);
  }
  return {0, static_cast<std::int32_t>(count)};
}

VlanOutcome VlanModel::addWan(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid) {
  const std::string name = WanName(wanVid);
  const auto found = wan_.find(wanVid);
  if (found == wan_.end()) {
    if (wan_.size() == kCapacity) {
      return {};
    }
    wan_[wanVid][port] = {lanVid};
    return {0, {}, {Create(name, "wan0"), Enable(name, wanVid, "yes")}};
  }
  std::set<std::uint32_t>& lanVids = found->second[port];
  if (lanVids.contains(lanVid)) {
    return {};
  }
  if (lanVids.size() < kLanVidsPerPort) {
    lanVids.insert(lanVid);
  }
  return {0, {}, {Enable(name, wanVid, "no"), Enable(name, wanVid, "yes")}};
}

VlanOutcome VlanModel::delWan(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid) {
  const std::string name = WanName(wanVid);
  const auto found = wan_.find(wanVid);
  if (found == wan_.end()) {
    return {};
  }
  found->second[port].erase(lanVid);
  if (std::ranges::any_of(found->second, [](const auto& list) { return !list.second.empty(); })) {
    return {};
  }
  wan_.erase(found);
  return {0, {}, {Enable(name, wanVid, "no"), Destroy(name)}};
}

VlanOutcome VlanModel::addLan(std::uint32_t port, std::uint32_t vid) {
  const std::string name = LanName(port, vid);
  const auto found = lan_.find({port, vid});
  if (found != lan_.end()) {
    ++found->second;
    return {0, {}, {Enable(name, vid, "no"), Enable(name, vid, "yes")}};
  }
  if (lan_.size() == kCapacity) {
    return {};
  }
  lan_[{port, vid}] = 1;
  return {0, {}, {Create(name, LanPort(port)), Enable(name, vid, "yes")}};
}

VlanOutcome VlanModel::delLan(std::uint32_t port, std::uint32_t vid) {
  const std::string name = LanName(port, vid);
  const auto found = lan_.find({port, vid});
  if (found == lan_.end() || --found->second != 0) {
    return {};
  }
  lan_.erase(found);
  return {0, {}, {Enable(name, vid, "no"), Destroy(name)}};
}

}  // namespace hal_test
