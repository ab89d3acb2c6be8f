/// @file
/// The names of protocols and messages, and the line made of them.
#include "frame/summary.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "base/text.h"
#include "frame/frame.h"
#include "frame/ip_headers.h"

namespace virtual_onu {
namespace {

struct TypeName {
  std::uint8_t type;
  std::string_view name;  ///< protocol and kind of message
};

constexpr std::array kIcmpTypes = {
    TypeName{0, "icmp echo-reply"},
    TypeName{3, "icmp unreachable"},
    TypeName{8, "icmp echo-request"},
    TypeName{11, "icmp time-exceeded"},
};

constexpr std::array kIgmpTypes = {
    TypeName{0x11, "igmp query"}, TypeName{0x12, "igmp v1-report"}, TypeName{0x16, "igmp report"},
    TypeName{0x17, "igmp leave"}, TypeName{0x22, "igmp v3-report"},
};

constexpr std::array kIcmpv6Types = {
    TypeName{1, "icmpv6 unreachable"},
    TypeName{128, "icmpv6 echo-request"},
    TypeName{129, "icmpv6 echo-reply"},
    TypeName{130, "mld query"},
    TypeName{131, "mld report"},
    TypeName{132, "mld done"},
    TypeName{133, "icmpv6 router-solicitation"},
    TypeName{134, "icmpv6 router-advertisement"},
    TypeName{135, "icmpv6 neighbour-solicitation"},
    TypeName{136, "icmpv6 neighbour-advertisement"},
    TypeName{143, "mld v2-report"},
};

constexpr std::array kPppoeCodes = {
    TypeName{0x07, "pppoe pado"}, TypeName{0x09, "pppoe padi"}, TypeName{0x19, "pppoe padr"},
    TypeName{0x65, "pppoe pads"}, TypeName{0xA7, "pppoe padt"},
};

constexpr std::array kBpduTypes = {
    TypeName{0x00, "stp config"},
    TypeName{0x02, "stp rst"},
    TypeName{0x80, "stp tcn"},
};

constexpr std::array kArpOperations = {
    TypeName{1, "arp request"},
    TypeName{2, "arp reply"},
};

/// The name of the type found at an offset, or the protocol's own name.
std::string NameByType(std::string_view protocol, std::span<const TypeName> types, ByteView message,
                       std::size_t offset = 0) {
  if (message.size() <= offset) {
    return std::string(protocol);
  }
  const std::uint8_t type = message[offset];
  const auto known = std::find_if(types.begin(), types.end(),
                                  [type](const TypeName& entry) { return entry.type == type; });
  return known != types.end() ? std::string(known->name)
                              : std::string(protocol) + " type " + std::to_string(type);
}

struct IpProtocolName {
  std::uint8_t number;
  std::string_view name;
  std::span<const TypeName> types;  ///< of the message's first byte
};

constexpr std::array kIpProtocols = {
    IpProtocolName{kProtocolIcmp, "icmp", kIcmpTypes},
    IpProtocolName{kProtocolIgmp, "igmp", kIgmpTypes},
    IpProtocolName{kProtocolTcp, "tcp", {}},
    IpProtocolName{kProtocolUdp, "udp", {}},
    IpProtocolName{kProtocolIcmpv6, "icmpv6", kIcmpv6Types},
};

struct UdpService {
  std::uint16_t client;
  std::uint16_t server;
  std::string_view name;
};

constexpr std::array kUdpServices = {
    UdpService{68, 67, "dhcp"},
    UdpService{546, 547, "dhcpv6"},
};

bool HasPort(const FrameHeaders& headers, std::uint16_t port) {
  return headers.l4SrcPort == port || headers.l4DstPort == port;
}

std::string ServiceName(std::string_view protocol, const FrameHeaders& headers) {
  for (const UdpService& service : kUdpServices) {
    if (headers.ipProtocol == kProtocolUdp &&
        (HasPort(headers, service.client) || HasPort(headers, service.server))) {
      return std::string(service.name);
    }
  }
  return std::string(protocol);
}

const IpProtocolName* FindProtocol(std::uint8_t number) {
  for (const IpProtocolName& entry : kIpProtocols) {
    if (entry.number == number) {
      return &entry;
    }
  }
  return nullptr;
}

std::string ProtocolText(std::uint8_t number, ByteView frame, const FrameHeaders& headers) {
  const IpProtocolName* known = FindProtocol(number);
  if (!known) {
    return "ip protocol " + std::to_string(number);
  }
  return known->types.empty() ? ServiceName(known->name, headers)
                              : NameByType(known->name, known->types,
                                           frame.subspan(headers.l4Offset, headers.l4Length));
}

std::string EndpointText(const Bytes& address, const std::optional<std::uint16_t>& port) {
  std::string text = FormatIp(address);
  if (!port) {
    return text;
  }
  const bool six = address.size() > 4;
  return (six ? "[" + text + "]" : text) + ":" + std::to_string(*port);
}

std::string IpText(ByteView frame, const FrameHeaders& headers) {
  if (!headers.ipVersion) {
    return "ip damaged";
  }
  return (headers.ipProtocol ? ProtocolText(*headers.ipProtocol, frame, headers) : "ip cut") + " " +
         EndpointText(headers.srcIp, headers.l4SrcPort) + " > " +
         EndpointText(headers.dstIp, headers.l4DstPort);
}

std::string ArpText(ByteView frame, const FrameHeaders& headers) {
  constexpr std::size_t kSize = 28;  // Ethernet and IPv4 addresses
  const ByteView message = frame.subspan(headers.payloadOffset);
  if (message.size() < kSize) {
    return "arp";
  }
  return NameByType("arp", kArpOperations, message, 7) + " " + FormatIp(message.subspan(14, 4)) +
         " > " + FormatIp(message.subspan(24, 4));
}

std::string PppoeDiscoveryText(ByteView frame, const FrameHeaders& headers) {
  return NameByType("pppoe", kPppoeCodes, frame.subspan(headers.payloadOffset), 1);
}

std::string PppoeSessionText(ByteView frame, const FrameHeaders& headers) {
  const ByteView message = frame.subspan(headers.payloadOffset);
  return message.size() < 4
             ? std::string("pppoe session")
             : "pppoe session " + std::to_string(ReadBigEndian(message.subspan(2, 2)));
}

/// A frame with a length in place of the EtherType: LLC (IEEE 802.2).
std::string LlcText(ByteView frame, const FrameHeaders& headers) {
  constexpr std::uint32_t kSpanningTree = 0x4242;
  const ByteView message = frame.subspan(headers.payloadOffset);
  if (message.size() < 2) {
    return "llc";
  }
  const std::uint32_t accessPoints = ReadBigEndian(message.first(2));
  return accessPoints == kSpanningTree ? NameByType("stp", kBpduTypes, message, 6)
                                       : "llc " + HexNumber(accessPoints);
}

struct EtherTypeText {
  std::uint16_t etherType;
  std::string (*text)(ByteView frame, const FrameHeaders& headers);
};

constexpr std::array kEtherTypes = {
    EtherTypeText{kEtherTypeIpv4, IpText},
    EtherTypeText{kEtherTypeIpv6, IpText},
    EtherTypeText{kEtherTypeArp, ArpText},
    EtherTypeText{kEtherTypePppoeDiscovery, PppoeDiscoveryText},
    EtherTypeText{kEtherTypePppoeSession, PppoeSessionText},
};

std::string PayloadText(ByteView frame, const FrameHeaders& headers) {
  if (headers.etherType < kMinEtherType) {
    return LlcText(frame, headers);
  }
  for (const EtherTypeText& entry : kEtherTypes) {
    if (entry.etherType == headers.etherType) {
      return entry.text(frame, headers);
    }
  }
  return "ethertype " + HexNumber(headers.etherType);
}

std::string TagText(const VlanTag& tag) {
  std::string text = tag.tpid == kTpidService ? " svlan " : " vlan ";
  text += std::to_string(tag.vid);
  if (tag.pcp != 0) {
    text += " pcp " + std::to_string(tag.pcp);
  }
  if (tag.dei) {
    text += " dei";
  }
  return text;
}

}  // namespace

std::string SummarizeFrame(ByteView frame) {
  const std::string length = " length " + std::to_string(frame.size());
  FrameHeaders headers;
  const FrameFault fault = ParseFrame(frame, headers);
  if (fault == FrameFault::Runt) {
    return "runt" + length;
  }
  std::string text = FormatMac(headers.dstMac) + " < " + FormatMac(headers.srcMac);
  for (const VlanTag& tag : headers.tags) {
    text += TagText(tag);
  }
  text += " ";
  text += fault == FrameFault::TruncatedTag ? "truncated tag" : PayloadText(frame, headers);
  return text + length;
}

}  // namespace virtual_onu
