/// @file
/// Refusing, locating and learning.
#include "datapath/mac_bridge.h"

#include <algorithm>
#include <array>

#include "frame/headers.h"

namespace virtual_onu {
namespace {

constexpr std::uint8_t kGroupBit = 0x01;
constexpr std::size_t kTpidAt = 2 * kMacSize;
constexpr std::uint16_t kVidMask = 0xFFF;

constexpr std::array<std::string_view, 5> kRules = {"dynamic", "static", "filter", "bind", "limit"};

bool IsGroup(const MacKey& key) {
  return (key.mac.front() & kGroupBit) != 0;
}

std::uint16_t WordAt(ByteView frame, std::size_t offset) {
  constexpr unsigned kByteBits = 8;
  return static_cast<std::uint16_t>(frame[offset] << kByteBits | frame[offset + 1]);
}

}  // namespace

FrameAddresses AddressesOf(ByteView frame, std::uint16_t vid) {
  FrameAddresses addresses;
  std::ranges::copy(frame.first(kMacSize), addresses.destination.mac.begin());
  std::ranges::copy(frame.subspan(kMacSize, kMacSize), addresses.source.mac.begin());
  addresses.destination.vid = vid;
  addresses.source.vid = vid;
  return addresses;
}

std::uint16_t OuterVidOf(ByteView frame) {
  const bool tagged = frame.size() >= kTpidAt + kTagSize && IsTagTpid(WordAt(frame, kTpidAt));
  return tagged ? static_cast<std::uint16_t>(WordAt(frame, kTpidAt + 2) & kVidMask) : 0;
}

std::string_view Name(MacRule rule) {
  return kRules.at(static_cast<std::size_t>(rule));
}

std::optional<MacRefusal> MacBridge::refusal(PortId from, const MacKey& source) const {
  if (isBlocked(from, source)) {
    return MacRefusal{Outcome::MacFiltered, {MacRule::Filter, source, from}};
  }
  const auto bound = tables_->binds.find(source);
  if (bound != tables_->binds.end() && bound->second != from.uni) {
    return MacRefusal{Outcome::MacBoundElsewhere,
                      {MacRule::Bind, source, PortId::Uni(bound->second)}};
  }
  if (isFull(from) && isNew(from, source)) {
    return MacRefusal{Outcome::MacLimitReached, {MacRule::Limit, source, from}};
  }
  return std::nullopt;
}

std::optional<MacDecision> MacBridge::locate(PortId from, const MacKey& destination) const {
  const MacEntry* const entry = IsGroup(destination) ? nullptr : tables_->find(destination, now());
  if (entry == nullptr || entry->uni == from.uni) {
    return std::nullopt;
  }
  const MacRule rule = entry->type == kMacEntryDynamic ? MacRule::Dynamic : MacRule::Static;
  return MacDecision{rule, destination, {entry->uni}};
}

bool MacBridge::isBlocked(PortId port, const MacKey& address) const {
  const auto found = tables_->filters.find(address);
  return !port.isWan() && found != tables_->filters.end() && found->second == port.uni;
}

void MacBridge::learn(PortId from, const MacKey& source) {
  if (!learns() || IsGroup(source)) {
    return;
  }
  auto& entries = tables_->entries;
  if (!entries.contains(source) && entries.size() >= capacity_) {
    tables_->removeAged(now());
    if (entries.size() >= capacity_) {
      return;
    }
  }
  MacEntry& entry = entries[source];
  if (entry.type == kMacEntryDynamic) {
    entry = {from.uni, kMacEntryDynamic, now()};
  }
}

bool MacBridge::isNew(PortId from, const MacKey& source) const {
  if (IsGroup(source)) {
    return false;
  }
  const MacEntry* const entry = tables_->find(source, now());
  return entry == nullptr || (entry->type == kMacEntryDynamic && entry->uni != from.uni);
}

bool MacBridge::isFull(PortId from) const {
  const std::uint16_t limit = ports_->macLimit.value_or(0);
  return limit != 0 && learns() && !from.isWan() && tables_->learnedAt(from.uni, now()) >= limit;
}

}  // namespace virtual_onu
