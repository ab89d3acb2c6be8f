/// @file
/// Frames and event records of the packet path's tests, written down byte by byte, and memory whose
/// end is guarded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "base/bytes.h"

namespace hal_test {

using virtual_onu::Bytes;
using virtual_onu::ByteView;

/// One VLAN tag: type field and control word.
struct TagBytes {
  std::uint16_t type;
  std::uint16_t control;
};

/// A customer tag with a priority of 0.
constexpr TagBytes CustomerTag(std::uint16_t control) {
  return {0x8100, control};
}

/// A frame from 02:11:22:33:44:55 to `destination` (6 bytes): tags, type, payload, then counting
/// bytes up to `size`.
struct FrameDraft {
  Bytes destination = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  std::vector<TagBytes> tags = {};
  std::uint16_t type = 0x0800;
  Bytes payload = {};
  std::size_t size = 64;

  [[nodiscard]] Bytes bytes() const;
};

/// The first bytes of an IPv4 packet of a protocol to a port: a header of 20 bytes, source port and
/// destination port.
Bytes Ipv4Payload(std::uint8_t protocol, std::uint16_t destinationPort = 0);

/// The same of an IPv6 packet, behind a header of 40 bytes.
Bytes Ipv6Payload(std::uint8_t nextHeader, std::uint16_t destinationPort = 0);

/// An IPv6 packet with one hop-by-hop header of 8 bytes and an ICMPv6 message of 24 bytes.
Bytes MldPayload(std::uint8_t icmpType);

/// A frame of an MLD message, 86 bytes.
Bytes MldFrame(std::uint8_t icmpType = 131);

/// A frame to 01:00:5E:01:02:03 of an IGMP message.
FrameDraft IgmpFrame();

/// A DHCP frame towards a server over IPv4.
FrameDraft DhcpFrame();

/// A PPPoE discovery frame.
FrameDraft PppoeFrame();

/// An event record as the driver writes it, in the processor's byte order; `length` 0xFFFFFFFF
/// stands for the frame's.
struct EventDraft {
  std::uint32_t type = 1;
  std::uint32_t port = 1;
  std::uint32_t gemFlowId = 0;
  Bytes frame = {};
  std::size_t frameOffset = 20;  ///< in the record
  std::uint32_t length = 0xFFFFFFFF;

  [[nodiscard]] Bytes bytes() const;
};

/// A word in the processor's byte order.
Bytes NativeWord(std::uint32_t word);
Bytes NativeHalf(std::uint16_t half);

/// The parts one behind the other.
Bytes Joined(std::initializer_list<Bytes> parts);

/// A copy of bytes, writable, that ends where an unreadable page begins: whoever looks behind the
/// last byte ends the process.
class GuardedBytes {
 public:
  explicit GuardedBytes(ByteView bytes);
  ~GuardedBytes();
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;

  [[nodiscard]] std::uint8_t* data() const { return data_; }

 private:
  std::uint8_t* pages_;
  std::size_t pagesSize_;
  std::uint8_t* data_;
};

}  // namespace hal_test
