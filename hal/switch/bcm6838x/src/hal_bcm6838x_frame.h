/// @file
/// Ethernet headers: where their fields lie and how the driver core reads them without reading
/// beyond the end of the frame.
#ifndef HAL_BCM6838X_FRAME_H
#define HAL_BCM6838X_FRAME_H

#include <cstddef>
#include <cstdint>

#include <brmgr_record.h>

namespace hal {

constexpr uint32_t kTypeOffset = 12;  ///< the type field of an untagged frame, or the outer tag
constexpr uint32_t kTypeSize = 2;
constexpr uint32_t kTagSize = 4;

/// A frame of the longest kind that the device passes; see RdpaPkt and BrmgrEvent.
constexpr uint32_t kFrameCapacity = sizeof(RdpaPkt::data);
static_assert(kFrameCapacity == sizeof(BrmgrEvent::data));

/// Bytes of a BPDU that are passed on.
constexpr uint32_t kBpduSize = 100;

enum EtherType : uint32_t {
  kTypeIpv4 = 0x0800,
  kTypeCustomerTag = 0x8100,
  kTypeIpv6 = 0x86DD,
  kTypePppoeDiscovery = 0x8863,
  kTypePppoeSession = 0x8864,
  kTypeChipTag = 0x8874,
  kTypeServiceTag = 0x88A8,
};

/// A big-endian number of two bytes.
constexpr uint32_t LoadU16(const uint8_t* bytes) {
  return (static_cast<uint32_t>(bytes[0]) << 8U) | bytes[1];
}

/// The bytes of a frame. What lies behind its end reads as zero, which is no type, tag or protocol
/// that anybody looks for.
struct FrameView {
  const uint8_t* data;
  uint32_t size;

  constexpr uint32_t u8(uint32_t offset) const { return offset < size ? data[offset] : 0; }
  constexpr uint32_t u16(uint32_t offset) const {
    return offset + 1 < size ? LoadU16(data + offset) : 0;
  }
};

/// The frame of an event other than those of multicast, of which `length` bytes are readable.
constexpr const uint8_t* FrameOf(const BrmgrEvent& event) {
  // Required: event-frame-at-22
  constexpr uint32_t kSkipped = 2;
  return event.data + kSkipped;
}

/// Fields of a tag control word.
constexpr uint32_t TagVid(uint32_t tci) {
  return tci & 0x0FFF;
}
constexpr uint32_t TagPriority(uint32_t tci) {
  return tci >> 13U;
}

/// The tags at the beginning of a frame.
struct TagRead {
  uint32_t count;  ///< 0, 1 or 2; a single tag of type 0x88A8 counts as none
  uint32_t vid;    ///< of the outer tag, 0 when there is none
  uint32_t priority;
};

inline TagRead ReadTag(FrameView frame) {
  const uint32_t type = frame.u16(kTypeOffset);
  const uint32_t tci = frame.u16(kTypeOffset + kTypeSize);
  const uint32_t next = frame.u16(kTypeOffset + kTagSize);
  if ((type == kTypeServiceTag || type == kTypeCustomerTag) && next == kTypeCustomerTag) {
    return {2, TagVid(tci), TagPriority(tci)};
  }
  // Required: single-88a8-is-untagged
  if (type == kTypeCustomerTag && frame.size >= kTypeOffset + kTagSize) {
    return {1, TagVid(tci), TagPriority(tci)};
  }
  return {0, 0, 0};
}

/// Whether the frame may gain a tag: it has both addresses, and the tag finds room in the data
/// field of a descriptor.
constexpr bool HasRoomForTag(uint32_t size) {
  return size >= kTypeOffset && size <= kFrameCapacity - kTagSize;
}

/// Applies a port's VLAN rule to a frame; see BCM6838X_AccordVlan, which this is for a frame whose
/// length lies in any record. The frame's record needs room for one tag behind `size` bytes, or
/// kFrameCapacity bytes.
///
/// @return 0 forward, 1 drop
uint32_t AccordFrame(uint8_t* frame, uint32_t* size, uint32_t srcPort, uint32_t desPort);

/// The protocol predicates of a frame whose length is known.
bool IsDhcpFrame(FrameView frame);
bool IsPppoeFrame(FrameView frame);

}  // namespace hal

#endif
