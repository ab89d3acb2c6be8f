/// @file
/// Building of the kernel's messages.
#include "monitor/netlink_message.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <linux/netlink.h>

namespace virtual_onu {

namespace {

/// A word of a link message, which is in network order.
void AppendBigEndian(Bytes& bytes, std::uint32_t word) {
  for (const std::uint32_t shift : {24U, 16U, 8U, 0U}) {
    bytes.push_back(static_cast<std::uint8_t>(word >> shift));
  }
}

}  // namespace

Bytes NetlinkMessage(std::uint16_t type, ByteView payload, std::uint32_t senderPort) {
  nlmsghdr header = {};
  header.nlmsg_len = static_cast<std::uint32_t>(sizeof(header) + payload.size());
  header.nlmsg_type = type;
  header.nlmsg_pid = senderPort;
  Bytes message(NLMSG_ALIGN(header.nlmsg_len));
  std::memcpy(message.data(), &header, sizeof(header));
  std::ranges::copy(payload, message.begin() + sizeof(header));
  return message;
}

Bytes ButtonMessage(bool pressed) {
  const std::uint32_t word = pressed ? 1 : 0;
  std::array<std::uint8_t, sizeof(word)> payload = {};
  std::memcpy(payload.data(), &word, sizeof(word));
  return NetlinkMessage(kButtonMessage, payload);
}

Bytes LinkMessage(std::string_view interface, std::uint32_t speed, std::uint32_t duplex) {
  constexpr std::size_t kNameSize = 16;
  Bytes payload(interface.begin(), interface.end());
  payload.resize(kNameSize);
  AppendBigEndian(payload, speed);
  AppendBigEndian(payload, duplex);
  return NetlinkMessage(kLinkMessage, payload);
}

}  // namespace virtual_onu
