/// @file
/// Reading of membership messages.
#include "clients/membership.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "frame/frame.h"
#include "frame/ip_headers.h"

namespace virtual_onu {
namespace {

enum class Meaning : std::uint8_t { Join, Leave, Records };

struct Message {
  std::uint32_t ipVersion;
  std::uint8_t type;
  Meaning meaning;
};

constexpr std::array kMessages = {
    Message{4, 0x12, Meaning::Join},   Message{4, 0x16, Meaning::Join},
    Message{4, 0x17, Meaning::Leave},  Message{4, 0x22, Meaning::Records},
    Message{6, 131, Meaning::Join},    Message{6, 132, Meaning::Leave},
    Message{6, 143, Meaning::Records},
};

std::size_t AddressSize(std::uint32_t ipVersion) {
  return ipVersion == 6 ? 16 : 4;
}

std::size_t ReadU16(ByteView bytes, std::size_t offset) {
  return ReadBigEndian(bytes.subspan(offset, 2));
}

Bytes Copy(ByteView bytes) {
  return {bytes.begin(), bytes.end()};
}

/// A group record that asks for some source joins, one that asks for none leaves; a record that
/// blocks sources changes nothing.
void AddRecord(std::uint8_t type, std::size_t sources, ByteView group,
               std::vector<MembershipChange>& changes) {
  constexpr std::uint8_t kIsExclude = 2;
  constexpr std::uint8_t kToExclude = 4;
  constexpr std::uint8_t kAllow = 5;
  constexpr std::uint8_t kBlock = 6;
  const bool excludes = type == kIsExclude || type == kToExclude;
  if (type == 0 || type >= kBlock || (type == kAllow && sources == 0)) {
    return;
  }
  changes.push_back({Copy(group), excludes || sources > 0});
}

std::vector<MembershipChange> ReadRecords(ByteView message, std::size_t addressSize) {
  constexpr std::size_t kMessageHeader = 8;
  constexpr std::size_t kRecordHeader = 4;
  constexpr std::size_t kAuxiliaryUnit = 4;
  std::vector<MembershipChange> changes;
  if (message.size() < kMessageHeader) {
    return changes;
  }
  const std::size_t count = ReadU16(message, 6);
  ByteView rest = message.subspan(kMessageHeader);
  for (std::size_t i = 0; i < count && rest.size() >= kRecordHeader + addressSize; ++i) {
    const std::size_t sources = ReadU16(rest, 2);
    const std::size_t size =
        kRecordHeader + addressSize + sources * addressSize + rest[1] * kAuxiliaryUnit;
    if (size > rest.size()) {
      break;
    }
    AddRecord(rest[0], sources, rest.subspan(kRecordHeader, addressSize), changes);
    rest = rest.subspan(size);
  }
  return changes;
}

/// The group of a message that names one.
std::vector<MembershipChange> ReadSingle(ByteView message, std::size_t addressSize, bool joins) {
  const std::size_t offset = addressSize == 16 ? 8 : 4;
  if (message.size() < offset + addressSize) {
    return {};
  }
  return {{Copy(message.subspan(offset, addressSize)), joins}};
}

}  // namespace

std::vector<MembershipChange> MembershipChanges(ByteView frame) {
  FrameHeaders headers;
  if (ParseFrame(frame, headers) != FrameFault::None || !headers.ipVersion ||
      headers.l4Length == 0) {
    return {};
  }
  const std::uint32_t version = *headers.ipVersion;
  if (headers.ipProtocol != (version == 6 ? kProtocolIcmpv6 : kProtocolIgmp)) {
    return {};
  }
  const ByteView message = frame.subspan(headers.l4Offset, headers.l4Length);
  const auto* const found = std::ranges::find_if(kMessages, [&](const Message& one) {
    return one.ipVersion == version && one.type == message[0];
  });
  if (found == kMessages.end()) {
    return {};
  }
  return found->meaning == Meaning::Records
             ? ReadRecords(message, AddressSize(version))
             : ReadSingle(message, AddressSize(version), found->meaning == Meaning::Join);
}

Bytes GroupMac(ByteView group) {
  constexpr std::uint8_t kLow23Mask = 0x7F;
  if (group.size() == 4) {
    return {0x01, 0x00, 0x5E, static_cast<std::uint8_t>(group[1] & kLow23Mask), group[2], group[3]};
  }
  return {0x33, 0x33, group[12], group[13], group[14], group[15]};
}

}  // namespace virtual_onu
