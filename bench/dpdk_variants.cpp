/// @file
/// Recognition by packet type, and tagging in a packet buffer's headroom.
#include "dpdk_variants.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <rte_ether.h>
#include <rte_mbuf.h>
#include <rte_net.h>

#include "recognisers.h"

namespace {

constexpr std::uint16_t kHeadroom = 128;

/// Describes bytes that belong to no pool.
void Describe(rte_mbuf& buffer, std::uint8_t* bytes, std::uint16_t size, std::uint16_t room,
              std::uint16_t headroom) {
  buffer.buf_addr = bytes;
  buffer.buf_len = room;
  buffer.data_off = headroom;
  buffer.data_len = size;
  buffer.pkt_len = size;
  buffer.nb_segs = 1;
  rte_mbuf_refcnt_set(&buffer, 1);
}

bool IsMldType(std::uint8_t type) {
  return (type >= 130 && type <= 132) || type == 143;
}

}  // namespace

DpdkFrame::DpdkFrame(virtual_onu::ByteView frame) : buffer_(std::make_unique<rte_mbuf>()) {
  std::ranges::copy(frame, bytes_.begin() + kHeadroom);
  Describe(*buffer_, bytes_.data(), static_cast<std::uint16_t>(frame.size()),
           static_cast<std::uint16_t>(bytes_.size()), kHeadroom);
}

DpdkFrame::~DpdkFrame() = default;

bool DpdkFrame::tagInAndOut() {
  rte_mbuf* buffer = buffer_.get();
  buffer->vlan_tci = 100;
  return rte_vlan_insert(&buffer) == 0 && rte_vlan_strip(buffer) == 0;
}

Client RecogniseByDpdk(virtual_onu::ByteView frame) {
  constexpr std::uint8_t kIcmpv6 = 58;
  rte_mbuf buffer = {};
  const auto size = static_cast<std::uint16_t>(frame.size());
  Describe(buffer, const_cast<std::uint8_t*>(frame.data()), size, size, 0);
  rte_net_hdr_lens lengths = {};
  const std::uint32_t type = rte_net_get_ptype(&buffer, &lengths, RTE_PTYPE_ALL_MASK);
  const std::uint32_t transport = lengths.l2_len + lengths.l3_len;
  if ((type & RTE_PTYPE_L4_MASK) == RTE_PTYPE_L4_UDP && transport + 4 <= size) {
    const auto port = static_cast<std::uint32_t>(frame[transport + 2] << 8U) | frame[transport + 3];
    return port == 67 || port == 547 ? Client::Dhcp : Client::None;
  }
  if ((type & RTE_PTYPE_L2_MASK) == RTE_PTYPE_L2_ETHER_PPPOE) {
    return Client::Pppoe;
  }
  // It tells no ICMPv6: of the last extension header, the type is behind the headers that it found.
  if ((type & RTE_PTYPE_L3_MASK) == RTE_PTYPE_L3_IPV6_EXT && lengths.l3_len > 40 &&
      transport < size && frame[lengths.l2_len + 40U] == kIcmpv6 && IsMldType(frame[transport])) {
    return Client::Mld;
  }
  return Client::None;
}
