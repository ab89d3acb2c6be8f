/// @file
/// The table of keys.
#include "datapath/key_fields.h"

#include <algorithm>
#include <utility>

#include "base/bytes.h"
#include "base/text.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kVersionCodeIpv4 = 0;
constexpr std::uint32_t kVersionCodeIpv6 = 1;
constexpr std::size_t kIpv4Size = 4;

KeyValue Number(std::uint64_t number) {
  return {.number = number};
}

template <typename Field>
std::optional<KeyValue> NumberIf(const std::optional<Field>& field) {
  return field ? std::optional(Number(*field)) : std::nullopt;
}

KeyValue MacNumber(std::span<const std::uint8_t, kMacSize> mac) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : mac) {
    number = (number << 8U) | byte;
  }
  return Number(number);
}

KeyValue FlowAddress(std::uint32_t version, ByteView address) {
  KeyValue value = Number(version);
  const ByteView part = version == kVersionCodeIpv4 ? address.first(kIpv4Size) : address;
  std::copy(part.begin(), part.end(), value.address.begin());
  return value;
}

std::optional<KeyValue> FrameAddress(const Bytes& address) {
  if (address.empty()) {
    return std::nullopt;
  }
  KeyValue value = Number(address.size() == kIpv4Size ? kVersionCodeIpv4 : kVersionCodeIpv6);
  std::copy(address.begin(), address.end(), value.address.begin());
  return value;
}

const VlanTag* OuterTag(const ReceivedFrame& frame) {
  return frame.headers.tags.empty() ? nullptr : &frame.headers.tags.front();
}

std::optional<KeyValue> FrameOuterVid(const ReceivedFrame& frame) {
  const VlanTag* tag = OuterTag(frame);
  return tag ? std::optional(Number(tag->vid)) : std::nullopt;
}

std::optional<KeyValue> FrameOuterPcp(const ReceivedFrame& frame) {
  const VlanTag* tag = OuterTag(frame);
  return tag ? std::optional(Number(tag->pcp)) : std::nullopt;
}

std::optional<KeyValue> FrameEtherType(const ReceivedFrame& frame) {
  const std::uint16_t type = frame.headers.etherType;
  return type >= kMinEtherType ? std::optional(Number(type)) : std::nullopt;
}

std::string DecimalText(const KeyValue& value) {
  return std::to_string(value.number);
}

std::string HexText(const KeyValue& value) {
  return HexNumber(static_cast<std::uint32_t>(value.number));
}

std::string MacText(const KeyValue& value) {
  std::array<std::uint8_t, kMacSize> mac = {};
  std::uint64_t number = value.number;
  for (auto byte = mac.rbegin(); byte != mac.rend(); ++byte, number >>= 8U) {
    *byte = static_cast<std::uint8_t>(number);
  }
  return FormatMac(mac);
}

std::string IpText(const KeyValue& value) {
  if (value.number > kVersionCodeIpv6) {
    return "IP version code " + std::to_string(value.number);
  }
  const ByteView address(value.address);
  return FormatIp(value.number == kVersionCodeIpv4 ? address.first(kIpv4Size) : address);
}

constexpr std::array kKeys = {
    Key{BRMGR_KEY_SOURCE_IP, "srcIp",
        [](const IngressFlowRule& flow) { return FlowAddress(flow.srcIpVersion, flow.srcIp); },
        [](const ReceivedFrame& frame) { return FrameAddress(frame.headers.srcIp); }, IpText},
    Key{BRMGR_KEY_DESTINATION_IP, "dstIp",
        [](const IngressFlowRule& flow) { return FlowAddress(flow.dstIpVersion, flow.dstIp); },
        [](const ReceivedFrame& frame) { return FrameAddress(frame.headers.dstIp); }, IpText},
    Key{BRMGR_KEY_L4_SOURCE, "l4SrcPort",
        [](const IngressFlowRule& flow) { return Number(flow.l4SrcPort); },
        [](const ReceivedFrame& frame) { return NumberIf(frame.headers.l4SrcPort); }, DecimalText},
    Key{BRMGR_KEY_L4_DESTINATION, "l4DstPort",
        [](const IngressFlowRule& flow) { return Number(flow.l4DstPort); },
        [](const ReceivedFrame& frame) { return NumberIf(frame.headers.l4DstPort); }, DecimalText},
    Key{BRMGR_KEY_OUTER_VID, "outerVid",
        [](const IngressFlowRule& flow) { return Number(flow.outerVid); }, FrameOuterVid,
        DecimalText},
    Key{BRMGR_KEY_DESTINATION_MAC, "dstMac",
        [](const IngressFlowRule& flow) { return MacNumber(flow.dstMac); },
        [](const ReceivedFrame& frame) { return std::optional(MacNumber(frame.headers.dstMac)); },
        MacText},
    Key{BRMGR_KEY_SOURCE_MAC, "srcMac",
        [](const IngressFlowRule& flow) { return MacNumber(flow.srcMac); },
        [](const ReceivedFrame& frame) { return std::optional(MacNumber(frame.headers.srcMac)); },
        MacText},
    Key{BRMGR_KEY_ETHERTYPE, "etherType",
        [](const IngressFlowRule& flow) { return Number(flow.etherType); }, FrameEtherType,
        HexText},
    Key{BRMGR_KEY_IP_PROTOCOL, "ipProtocol",
        [](const IngressFlowRule& flow) { return Number(flow.ipProtocol); },
        [](const ReceivedFrame& frame) { return NumberIf(frame.headers.ipProtocol); }, DecimalText},
    Key{BRMGR_KEY_DSCP, "dscp", [](const IngressFlowRule& flow) { return Number(flow.dscp); },
        [](const ReceivedFrame& frame) { return NumberIf(frame.headers.tos); }, DecimalText},
    Key{BRMGR_KEY_INGRESS_PORT, "ingressPort",
        [](const IngressFlowRule& flow) { return Number(flow.ingressPort); },
        [](const ReceivedFrame& frame) { return std::optional(Number(frame.ingressPort)); },
        DecimalText},
    Key{BRMGR_KEY_OUTER_PBIT, "outerPbit",
        [](const IngressFlowRule& flow) { return Number(flow.outerPbit); }, FrameOuterPcp,
        DecimalText},
    Key{BRMGR_KEY_VLAN_NUM, "vlanNum",
        [](const IngressFlowRule& flow) { return Number(flow.vlanNum); },
        [](const ReceivedFrame& frame) { return std::optional(Number(frame.headers.tags.size())); },
        DecimalText},
};

// The table and the list of the record declarations name the same keys in the same order.
#define KEY_OF_THE_LIST(bit, name, field) std::pair<std::uint32_t, std::string_view>{bit, #field},
constexpr std::array kListed = {BRMGR_KEY_LIST(KEY_OF_THE_LIST)};
#undef KEY_OF_THE_LIST
static_assert(std::equal(kKeys.begin(), kKeys.end(), kListed.begin(), kListed.end(),
                         [](const Key& key, const auto& listed) {
                           return key.bit == listed.first && key.name == listed.second;
                         }),
              "a key of BRMGR_KEY_LIST is missing here, or stands elsewhere");

}  // namespace

std::span<const Key> AllKeys() {
  return kKeys;
}

std::uint32_t UnknownKeyBits(std::uint32_t fieldMask) {
  for (const Key& key : kKeys) {
    fieldMask &= ~key.bit;
  }
  return fieldMask;
}

}  // namespace virtual_onu
