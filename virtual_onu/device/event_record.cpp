/// @file
/// The types of events, and their records.
#include "device/event_record.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace virtual_onu {
namespace {

struct EventType {
  std::uint32_t type;
  std::string_view name;
  std::size_t frameOffset;
};

constexpr std::array kEventTypes = {
    EventType{kHostEvent, "HOST", 0},       EventType{BRMGR_EVENT_MCAST_IN, "MCAST_IN", 0},
    EventType{BRMGR_EVENT_BPDU, "BPDU", 2}, EventType{BRMGR_EVENT_MCAST_OUT, "MCAST_OUT", 0},
    EventType{BRMGR_EVENT_DHCP, "DHCP", 2}, EventType{BRMGR_EVENT_PPPOE, "PPPOE", 2},
};

const EventType* Find(std::uint32_t type) {
  const auto* const found = std::ranges::find(kEventTypes, type, &EventType::type);
  return found == kEventTypes.end() ? nullptr : found;
}

}  // namespace

std::size_t EventFrameOffset(std::uint32_t type) {
  const EventType* const found = Find(type);
  return found == nullptr ? 0 : found->frameOffset;
}

std::size_t EventFrameCapacity(std::uint32_t type) {
  return sizeof(BrmgrEvent::data) - EventFrameOffset(type);
}

std::string EventName(std::uint32_t type) {
  const EventType* const found = Find(type);
  return found == nullptr ? "event " + std::to_string(type) : std::string(found->name);
}

BrmgrEvent MakeEvent(std::uint32_t type, std::uint32_t port, std::uint32_t flow, ByteView frame) {
  BrmgrEvent event = {};
  event.eventType = type;
  event.length = static_cast<std::uint32_t>(frame.size());
  event.port = port;
  event.gemFlowId = flow;
  const std::size_t size = std::min(frame.size(), EventFrameCapacity(type));
  std::copy_n(frame.begin(), size, &event.data[EventFrameOffset(type)]);
  return event;
}

}  // namespace virtual_onu
