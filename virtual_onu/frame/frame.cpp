/// @file
/// Ethernet headers and VLAN tags: parsing and editing.
#include "frame/frame.h"

#include <algorithm>

#include "frame/ip_headers.h"

namespace virtual_onu {
namespace {

constexpr std::size_t kTypeOffset = 2 * kMacSize;
constexpr std::size_t kTypeSize = 2;

constexpr unsigned kPcpMask = 0x7;
constexpr unsigned kPcpShift = 13;
constexpr unsigned kDeiBit = 0x1000;
constexpr unsigned kVidMask = 0xFFF;

std::uint16_t ReadU16(ByteView frame, std::size_t offset) {
  return static_cast<std::uint16_t>(ReadBigEndian(frame.subspan(offset, 2)));
}

void WriteU16(Bytes& frame, std::size_t offset, unsigned value) {
  frame.at(offset) = static_cast<std::uint8_t>(value >> 8U);
  frame.at(offset + 1) = static_cast<std::uint8_t>(value);
}

VlanTag ToTag(std::uint16_t tpid, unsigned tci) {
  return {tpid, static_cast<std::uint8_t>(tci >> kPcpShift), (tci & kDeiBit) != 0,
          static_cast<std::uint16_t>(tci & kVidMask)};
}

unsigned ToTci(const VlanTag& tag) {
  return ((tag.pcp & kPcpMask) << kPcpShift) | (tag.dei ? kDeiBit : 0U) | (tag.vid & kVidMask);
}

bool HasTag(ByteView frame) {
  return frame.size() >= kEthernetHeaderSize + kTagSize && IsTagTpid(ReadU16(frame, kTypeOffset));
}

/// Replaces the bits of the outer tag's control information that `mask` names.
bool EditTci(Bytes& frame, unsigned mask, unsigned value) {
  if (!HasTag(frame)) {
    return false;
  }
  constexpr std::size_t kTciOffset = kTypeOffset + kTypeSize;
  WriteU16(frame, kTciOffset, (ReadU16(frame, kTciOffset) & ~mask) | (value & mask));
  return true;
}

/// Reads the tags from `offset` on, and the EtherType behind them.
FrameFault ParseTags(ByteView frame, std::size_t offset, FrameHeaders& headers) {
  std::uint16_t type = ReadU16(frame, offset);
  for (; IsTagTpid(type); offset += kTagSize, type = ReadU16(frame, offset)) {
    if (frame.size() - offset < kTagSize + kTypeSize) {
      return FrameFault::TruncatedTag;
    }
    headers.tags.push_back(ToTag(type, ReadU16(frame, offset + kTypeSize)));
  }
  headers.etherType = type;
  headers.payloadOffset = offset + kTypeSize;
  return FrameFault::None;
}

}  // namespace

FrameFault ParseFrame(ByteView frame, FrameHeaders& headers) {
  headers = {};
  if (frame.size() < kEthernetHeaderSize) {
    return FrameFault::Runt;
  }
  std::copy_n(frame.begin(), kMacSize, headers.dstMac.begin());
  std::copy_n(frame.begin() + kMacSize, kMacSize, headers.srcMac.begin());
  const FrameFault fault = ParseTags(frame, kTypeOffset, headers);
  if (fault == FrameFault::None) {
    ParseIpHeaders(frame, headers);
  }
  return fault;
}

void PushTag(Bytes& frame, const VlanTag& tag) {
  if (frame.size() < kTypeOffset) {
    return;
  }
  frame.insert(frame.begin() + kTypeOffset, kTagSize, 0);
  WriteU16(frame, kTypeOffset, tag.tpid);
  WriteU16(frame, kTypeOffset + kTypeSize, ToTci(tag));
}

bool PopTag(Bytes& frame) {
  if (!HasTag(frame)) {
    return false;
  }
  frame.erase(frame.begin() + kTypeOffset, frame.begin() + kTypeOffset + kTagSize);
  return true;
}

bool SetOuterVid(Bytes& frame, std::uint16_t vid) {
  return EditTci(frame, kVidMask, vid);
}

bool SetOuterPcp(Bytes& frame, std::uint8_t pcp) {
  return EditTci(frame, kPcpMask << kPcpShift, static_cast<unsigned>(pcp) << kPcpShift);
}

}  // namespace virtual_onu
