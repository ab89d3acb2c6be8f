/// @file
/// Recognition by the library's predicates, by a packet library, and by capture filters.
#include "recognisers.h"

#include <array>
#include <cstdint>
#include <pcap/pcap.h>
#include <stdexcept>
#include <tins/tins.h>

#include <hal_bcm6838x.h>

namespace {

/// A compiled filter and the client whose frames it finds.
struct Filter {
  Client client;
  bpf_program program;
};

Filter Compile(Client client, const char* expression) {
  pcap_t* const handle = pcap_open_dead(DLT_EN10MB, 2048);
  Filter filter = {client, {}};
  if (pcap_compile(handle, &filter.program, expression, 1, PCAP_NETMASK_UNKNOWN) != 0) {
    throw std::runtime_error(pcap_geterr(handle));
  }
  pcap_close(handle);
  return filter;
}

// "vlan" moves the offsets of what stands behind it, so each alternative stands once for each tag.
constexpr const char* kDhcpFilter =
    "udp dst port 67 or udp dst port 547 or (vlan and (udp dst port 67 or udp dst port 547 or "
    "(vlan and (udp dst port 67 or udp dst port 547))))";
constexpr const char* kPppoeFilter =
    "ether proto 0x8863 or ether proto 0x8864 or (vlan and (ether proto 0x8863 "
    "or ether proto 0x8864 or (vlan and (ether proto 0x8863 or ether proto 0x8864))))";
// Hop-by-hop options of eight bytes, then ICMPv6 types 130 to 132 and 143.
constexpr const char* kMldFilter =
    "(ip6[6] = 0 and ip6[40] = 58 and ((ip6[48] >= 130 and ip6[48] <= 132) or ip6[48] = 143)) or "
    "(vlan and ((ip6[6] = 0 and ip6[40] = 58 and "
    "((ip6[48] >= 130 and ip6[48] <= 132) or ip6[48] = 143)) or (vlan and "
    "(ip6[6] = 0 and ip6[40] = 58 and ((ip6[48] >= 130 and ip6[48] <= 132) or ip6[48] = 143)))))";

bool IsMldType(Tins::ICMPv6::Types type) {
  return (type >= Tins::ICMPv6::MGM_QUERY && type <= Tins::ICMPv6::MGM_REDUCTION) ||
         type == Tins::ICMPv6::MLD2_REPORT;
}

}  // namespace

Client RecogniseByLibrary(virtual_onu::ByteView frame) {
  if (BCM6838X_IsDHCPProtocol(frame.data()) == 1) {
    return Client::Dhcp;
  }
  if (BCM6838X_IsPPPoEProtocol(frame.data()) == 1) {
    return Client::Pppoe;
  }
  const auto length = static_cast<std::uint32_t>(frame.size());
  return BCM6838X_IsMldPacket(frame.data(), length) == 1 ? Client::Mld : Client::None;
}

Client RecogniseByTins(virtual_onu::ByteView frame) {
  constexpr std::uint16_t kServerPort = 67;
  constexpr std::uint16_t kServerPortV6 = 547;
  const Tins::EthernetII pdu(frame.data(), static_cast<std::uint32_t>(frame.size()));
  const auto* const udp = pdu.find_pdu<Tins::UDP>();
  if (udp != nullptr && (udp->dport() == kServerPort || udp->dport() == kServerPortV6)) {
    return Client::Dhcp;
  }
  if (pdu.find_pdu<Tins::PPPoE>() != nullptr) {
    return Client::Pppoe;
  }
  const auto* const icmp = pdu.find_pdu<Tins::ICMPv6>();
  return icmp != nullptr && IsMldType(icmp->type()) ? Client::Mld : Client::None;
}

Client RecogniseByFilter(virtual_onu::ByteView frame) {
  static const std::array<Filter, 3> filters = {Compile(Client::Dhcp, kDhcpFilter),
                                                Compile(Client::Pppoe, kPppoeFilter),
                                                Compile(Client::Mld, kMldFilter)};
  pcap_pkthdr header = {};
  header.caplen = static_cast<std::uint32_t>(frame.size());
  header.len = header.caplen;
  for (const Filter& filter : filters) {
    if (pcap_offline_filter(&filter.program, &header, frame.data()) != 0) {
      return filter.client;
    }
  }
  return Client::None;
}
