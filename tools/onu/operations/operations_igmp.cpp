/// @file
/// The rows of the operations that bcm6838x_igmp.h declares. A new operation is one more row.
#include <cstdint>

#include <bcm6838x_igmp.h>

#include "base/text.h"
#include "clients/group_request.h"
#include "operations/operation_rows.h"
#include "operations/packet_call.h"

namespace onu {

namespace {

using enum ResultKind;

constexpr Argument kVid = {"vid", ArgumentType::Number, "multicast VLAN; the low 16 bits count"};
constexpr Argument kMvlan = {"mvlan", ArgumentType::Number, "multicast VLAN from the network"};
constexpr Argument kIptvVlan = {"iptvVlan", ArgumentType::Number, "VLAN towards the port"};
constexpr Argument kGroup = {"group", ArgumentType::Ip, "group address; gives the MAC address too"};
constexpr Argument kPortMask = {"portMask", ArgumentType::Number, "bit p - 1 for UNI port p"};
const ArgumentRows kRule = {kUniPort, kMvlan, kIptvVlan};
const ArgumentRows kRequest = {kGroup, kPortMask, kVid};

McastGroupRequest GroupOf(const Arguments& given) {
  return virtual_onu::GroupRequest(virtual_onu::ParseIp(given.word(kGroup.name)).value());
}

Binding BindGroup(std::uint32_t (*function)(const McastGroupRequest* request)) {
  return {[function](const Arguments& given, std::span<const Argument> /*rows*/) {
            McastGroupRequest request = GroupOf(given);
            request.portMask = given.number(kPortMask.name);
            request.vlan = static_cast<std::uint16_t>(given.number(kVid.name));
            CallOutcome outcome;
            outcome.value = function(&request);
            return outcome;
          },
          {}};
}

CallOutcome FindTarget(const Arguments& given, std::span<const Argument> /*rows*/) {
  const McastGroupRequest request = GroupOf(given);
  CallOutcome outcome;
  outcome.value = BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, request.groupIpv6,
                                                   given.number(kUniPort.name));
  return outcome;
}

CallOutcome PrintHex(const Arguments& given, std::span<const Argument> rows) {
  const virtual_onu::Bytes bytes = virtual_onu::ParseHex(given.word(rows[0].name)).value();
  BCM6838X_PrintHex(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return {};
}

const std::vector<Operation> kRows = {
    {{"BCM6838X_InitIgmp", {}, "clears the multicast tables", {"InitIgmp"}},
     Status,
     Bind(BCM6838X_InitIgmp)},
    {{"BCM6838X_AddIgmpVlan",
      {kUniPort, kVid},
      "adds a multicast VLAN to a port",
      {"Init\nAddIgmpVlan 1 100"}},
     Status,
     Bind(BCM6838X_AddIgmpVlan)},
    {{"BCM6838X_DelIgmpVlan",
      {kUniPort, kVid},
      "removes a multicast VLAN from a port",
      {"Init\nAddIgmpVlan 1 100\nDelIgmpVlan 1 100"}},
     Status,
     Bind(BCM6838X_DelIgmpVlan)},
    {{"BCM6838X_SetMulticastVlanMode",
      {kUniPort,
       {"mode", ArgumentType::Number, "0 removes the tag, 1 keeps it, 2 replaces its VID"}},
      "sets what becomes of the tag of a port's multicast frames",
      {"Init\nSetMulticastVlanMode 1 0"}},
     Status,
     Bind(BCM6838X_SetMulticastVlanMode)},
    {{"BCM6838X_AddMulticastVlanTrans",
      kRule,
      "adds a translation rule to a port",
      {"Init\nSetMulticastVlanMode 1 2\nAddMulticastVlanTrans 1 100 200"}},
     Status,
     Bind(BCM6838X_AddMulticastVlanTrans)},
    {{"BCM6838X_DelMulticastVlanTrans",
      kRule,
      "removes a translation rule from a port",
      {"Init\nAddMulticastVlanTrans 1 100 200\nDelMulticastVlanTrans 1 100 200"}},
     Status,
     Bind(BCM6838X_DelMulticastVlanTrans)},
    {{"BCM6838X_FindUnuseMcastChanSlot",
      {},
      "the first free slot of the channel table; 65535 when there is none",
      {"Init\nFindUnuseMcastChanSlot"}},
     Number,
     Bind(BCM6838X_FindUnuseMcastChanSlot)},
    {{"BCM6838X_FindTargetMcastChanSlot",
      {kGroup, kUniPort},
      "the slot of a group on a port; 65535 when there is none",
      {"Init\nAddMulticastMacAddr 239.1.2.3 1 100\nFindTargetMcastChanSlot 239.1.2.3 1"}},
     Number,
     {FindTarget, {}}},
    {{"BCM6838X_AddMulticastMacAddr",
      kRequest,
      "forwards a group to the first port of the mask",
      {"Init\nAddMulticastMacAddr 239.1.2.3 0x1 100", "Init\nAddMulticastMacAddr ff0e::1 0x2 100"}},
     Status,
     BindGroup(BCM6838X_AddMulticastMacAddr)},
    {{"BCM6838X_ModifyMulticastMacAddr",
      kRequest,
      "forwards a group to the ports of the mask and no others",
      {"Init\nModifyMulticastMacAddr 239.1.2.3 0x6 100"}},
     Status,
     BindGroup(BCM6838X_ModifyMulticastMacAddr)},
    {{"BCM6838X_DelMulticastMacAddr",
      kRequest,
      "stops forwarding a group to the first port of the mask that has it",
      {"Init\nAddMulticastMacAddr 239.1.2.3 0x1 100\nDelMulticastMacAddr 239.1.2.3 0x1 100"}},
     Status,
     BindGroup(BCM6838X_DelMulticastMacAddr)},
    {{"BCM6838X_DispatchIgmpPacket",
      {kUniPort,
       {kFrameArgument, ArgumentType::Frame, "a frame of a capture, hexadecimal digits, or words",
        Presence::Rest}},
      "sends a frame of a port towards the uplink, any other to each port",
      {"Init\nDispatchIgmpPacket 1 tests/data/igmp-join.pcap#1"}},
     Status,
     BindDispatchIgmpPacket()},
    {{"BCM6838X_PrintHex",
      {{"hex", ArgumentType::Hex, "the bytes"}},
      "prints bytes as hexadecimal digits and characters",
      {"PrintHex 48656c6c6f"}},
     Nothing,
     {PrintHex, {}}},
};

}  // namespace

const std::vector<Operation>& IgmpOperations() {
  return kRows;
}

}  // namespace onu
