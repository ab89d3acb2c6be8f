/// @file
/// The table of the fields that the chip can compare. Where the bytes of a value lie is said at
/// QosClassRule.
#include "bcm6838x_qos_field.h"

#include <cstddef>
#include <cstring>

#include <bcm6838x_qos.h>

#include "hal_bcm6838x_find.h"

using namespace hal;

namespace {

constexpr size_t kIpv4At = 2;
constexpr size_t kNumberAt = 4;
constexpr size_t kByteAt = 5;
constexpr size_t kMacSize = 6;
constexpr size_t kIpv4Size = 4;
constexpr size_t kIpv6Size = 16;

/// IP versions as a flow names them.
constexpr uint32_t kIpv4 = 0;
constexpr uint32_t kIpv6 = 1;

using Version = uint32_t IngressFlowRule::*;
using Address = uint8_t (IngressFlowRule::*)[kIpv6Size];

template <uint8_t IngressFlowRule::*key>
void SetByte(IngressFlowRule& flow, const uint8_t* value) {
  flow.*key = value[kByteAt];
}

template <uint16_t IngressFlowRule::*key>
void SetNumber(IngressFlowRule& flow, const uint8_t* value) {
  flow.*key = static_cast<uint16_t>(value[kNumberAt] << 8 | value[kNumberAt + 1]);
}

template <uint8_t (IngressFlowRule::*key)[kMacSize]>
void SetMac(IngressFlowRule& flow, const uint8_t* value) {
  memcpy(flow.*key, value, kMacSize);
}

template <Version version, Address address>
void SetIpv4(IngressFlowRule& flow, const uint8_t* value) {
  flow.*version = kIpv4;
  memcpy(flow.*address, value + kIpv4At, kIpv4Size);
}

template <Version version, Address address>
void SetIpv6(IngressFlowRule& flow, const uint8_t* value) {
  flow.*version = kIpv6;
  memcpy(flow.*address, value, kIpv6Size);
}

using Flow = IngressFlowRule;

constexpr QosFieldKey kFieldKeys[] = {
    {BCM6838X_QOS_FIELD_DESTINATION_MAC, BRMGR_KEY_DESTINATION_MAC, SetMac<&Flow::dstMac>},
    {BCM6838X_QOS_FIELD_SOURCE_MAC, BRMGR_KEY_SOURCE_MAC, SetMac<&Flow::srcMac>},
    {BCM6838X_QOS_FIELD_PRIORITY, BRMGR_KEY_OUTER_PBIT, SetByte<&Flow::outerPbit>},
    {BCM6838X_QOS_FIELD_VLAN_ID, BRMGR_KEY_OUTER_VID, SetNumber<&Flow::outerVid>},
    {BCM6838X_QOS_FIELD_ETHERTYPE, BRMGR_KEY_ETHERTYPE, SetNumber<&Flow::etherType>},
    {BCM6838X_QOS_FIELD_DESTINATION_IP, BRMGR_KEY_DESTINATION_IP,
     SetIpv4<&Flow::dstIpVersion, &Flow::dstIp>},
    {BCM6838X_QOS_FIELD_SOURCE_IP, BRMGR_KEY_SOURCE_IP, SetIpv4<&Flow::srcIpVersion, &Flow::srcIp>},
    {BCM6838X_QOS_FIELD_IP_PROTOCOL, BRMGR_KEY_IP_PROTOCOL, SetByte<&Flow::ipProtocol>},
    {BCM6838X_QOS_FIELD_DSCP, BRMGR_KEY_DSCP, SetByte<&Flow::dscp>},
    {BCM6838X_QOS_FIELD_L4_SOURCE, BRMGR_KEY_L4_SOURCE, SetNumber<&Flow::l4SrcPort>},
    {BCM6838X_QOS_FIELD_L4_DESTINATION, BRMGR_KEY_L4_DESTINATION, SetNumber<&Flow::l4DstPort>},
    {BCM6838X_QOS_FIELD_DESTINATION_IPV6, BRMGR_KEY_DESTINATION_IP,
     SetIpv6<&Flow::dstIpVersion, &Flow::dstIp>},
    {BCM6838X_QOS_FIELD_SOURCE_IPV6, BRMGR_KEY_SOURCE_IP,
     SetIpv6<&Flow::srcIpVersion, &Flow::srcIp>},
};

}  // namespace

const QosFieldKey* hal::FindQosFieldKey(uint32_t field) {
  return FirstOf(kFieldKeys, [field](const QosFieldKey& key) { return key.field == field; });
}
