/// @file
/// The rows of the operations that bcm6838x_vlan.h declares. A new operation is one more row.
#include <cstdint>

#include <bcm6838x_vlan.h>

#include "operations/operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

constexpr Argument kWidePort = {"port", ArgumentType::Number,
                                "UNI port number, from 1; the low 16 bits count"};

/// A rule with one tag of TPID 8100.
VlanActionRule MakeRule(std::uint32_t cmd, std::uint32_t vid, std::uint32_t pbit,
                        std::uint32_t dir) {
  constexpr std::uint16_t kTpid = 0x8100;
  VlanActionRule rule = {};
  rule.cmd = cmd;
  rule.tag[0] = {static_cast<std::uint16_t>(vid), static_cast<std::uint8_t>(pbit), 0, kTpid};
  rule.dir = dir;
  rule.vlanActionIndex = BRMGR_INDEX_NONE;
  return rule;
}

std::int32_t AddPushedAction(std::uint32_t cmd, std::uint32_t vid, std::uint32_t pbit,
                             std::uint32_t dir, std::uint32_t count) {
  return BCM6838X_AddVlanAction(MakeRule(cmd, vid, pbit, dir), count);
}

std::int32_t GetPushedAction(std::uint32_t cmd, std::uint32_t vid, std::uint32_t pbit,
                             std::uint32_t dir) {
  return BCM6838X_GetVlanAction(MakeRule(cmd, vid, pbit, dir));
}

std::uint32_t DelActionByIndex(std::uint32_t dir, std::uint32_t index) {
  VlanActionRule rule = {};
  rule.dir = dir;
  rule.vlanActionIndex = index;
  return BCM6838X_DelVlanAction(rule);
}

const std::vector<Operation> kRows = {
    {{"BCM6838X_AddVlanAction",
      {{"cmd", ArgumentType::Number,
        "tag operations: 1 push, 4 pop, 8 replace the VID, 256 replace the priority"},
       {"vid", ArgumentType::Number, "VID of the tag, 0..4095"},
       {"pbit", ArgumentType::Number, "priority of the tag, 0..7"},
       {"dir", ArgumentType::Number, "0 downstream, 1 upstream"},
       {"count", ArgumentType::Number, "references to take"}},
      "takes references on a pooled VLAN action with TPID 8100",
      {"InitDrv\nAddVlanAction 257 100 3 1 1"}},
     Number,
     Bind(AddPushedAction)},
    {{"BCM6838X_GetVlanAction",
      {{"cmd", ArgumentType::Number,
        "tag operations: 1 push, 4 pop, 8 replace the VID, 256 replace the priority"},
       {"vid", ArgumentType::Number, "VID of the tag, 0..4095"},
       {"pbit", ArgumentType::Number, "priority of the tag, 0..7"},
       {"dir", ArgumentType::Number, "0 downstream, 1 upstream"}},
      "looks a pooled VLAN action with TPID 8100 up",
      {"InitDrv\nGetVlanAction 257 100 3 1"}},
     Number,
     Bind(GetPushedAction)},
    {{"BCM6838X_DelVlanAction",
      {{"dir", ArgumentType::Number, "0 downstream, 1 upstream"},
       {"index", ArgumentType::Number, "the action"}},
      "gives a reference on a pooled VLAN action back",
      {"DelVlanAction 1 0"}},
     Status,
     Bind(DelActionByIndex)},
    {{"BCM6838X_AddWanVlan",
      {kWidePort,
       {"wanVid", ArgumentType::Number, "WAN VID, 1..4095"},
       {"lanVid", ArgumentType::Number, "LAN VID, 1..4096; 4096 untagged"}},
      "adds a LAN VID of a port to a WAN VLAN object",
      {"AddWanVlan 1 100 4096"}},
     Status,
     Bind(BCM6838X_AddWanVlan)},
    {{"BCM6838X_DelWanVlan",
      {kWidePort,
       {"wanVid", ArgumentType::Number, "WAN VID, 1..4095"},
       {"lanVid", ArgumentType::Number, "LAN VID, 1..4096; 4096 untagged"}},
      "removes a LAN VID of a port from a WAN VLAN object",
      {"DelWanVlan 1 100 4096"}},
     Status,
     Bind(BCM6838X_DelWanVlan)},
    {{"BCM6838X_AddLanVlan",
      {kWidePort, {"vid", ArgumentType::Number, "VID, 1..4095"}},
      "takes a reference on a LAN VLAN object",
      {"AddLanVlan 1 100"}},
     Status,
     Bind(BCM6838X_AddLanVlan)},
    {{"BCM6838X_DelLanVlan",
      {kWidePort, {"vid", ArgumentType::Number, "VID, 1..4095"}},
      "gives a reference on a LAN VLAN object back",
      {"DelLanVlan 1 100"}},
     Status,
     Bind(BCM6838X_DelLanVlan)},
    {{"BCM6838X_AddDsIngressClass",
      {{"vid", ArgumentType::Number, "VID; 4096 any"},
       {"vlanNum", ArgumentType::Number, "number of tags, 0..2"},
       {"count", ArgumentType::Number, "references to take"}},
      "takes references on a shared downstream flow",
      {"Init\nAddDsIngressClass 100 1 8"}},
     Number,
     Bind(BCM6838X_AddDsIngressClass)},
    {{"BCM6838X_AddDsIngressClass_Perf",
      {{"vid", ArgumentType::Number, "VID; 4096 any"},
       {"vlanNum", ArgumentType::Number, "number of tags, 0..2"},
       {"count", ArgumentType::Number, "references to take"}},
      "takes references on a shared downstream flow of performance mode",
      {"Init\nAddDsIngressClass_Perf 4096 0 1"}},
     Number,
     Bind(BCM6838X_AddDsIngressClass_Perf)},
    {{"BCM6838X_DelDsIngressClass",
      {{"vid", ArgumentType::Number, "VID; 4096 any"},
       {"vlanNum", ArgumentType::Number, "number of tags, 0..2"}},
      "gives a reference on a shared downstream flow back",
      {"DelDsIngressClass 100 1"}},
     Status,
     Bind(BCM6838X_DelDsIngressClass)},
    {{"BCM6838X_GetDsIngressClass",
      {{"vid", ArgumentType::Number, "VID; 4096 any"},
       {"vlanNum", ArgumentType::Number, "number of tags, 0..2"}},
      "looks a shared downstream flow up",
      {"GetDsIngressClass 100 1"}},
     Number,
     Bind(BCM6838X_GetDsIngressClass)},
    {{"BCM6838X_AddPortAction",
      {kWidePort,
       {"flowIndex", ArgumentType::Number, "the downstream flow"},
       {"icIndex", ArgumentType::Number, "its class"},
       {"vlanActionIndex", ArgumentType::Number, "the downstream action"}},
      "attaches a VLAN action to one port of a downstream flow",
      {"AddPortAction 1 0 1 0"}},
     Status,
     Bind(BCM6838X_AddPortAction)},
    {{"BCM6838X_DelPortAction",
      {kWidePort,
       {"flowIndex", ArgumentType::Number, "the downstream flow"},
       {"icIndex", ArgumentType::Number, "its class"}},
      "detaches the VLAN action of one port from a downstream flow",
      {"DelPortAction 1 0 1"}},
     Status,
     Bind(BCM6838X_DelPortAction)},
};

}  // namespace

const std::vector<Operation>& VlanOperations() {
  return kRows;
}

}  // namespace onu
