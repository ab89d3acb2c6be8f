/// @file
/// The rows of the operations that bcm6838x_vlan_port.h declares. A new operation is one more row.
#include <cstdint>

#include <bcm6838x_vlan_port.h>

#include "operations/operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

constexpr Argument kVid = {"vid", ArgumentType::Number, "VID, 1..4095"};

/// Calls an operation that takes an entry of the trunk list.
template <auto operation>
std::uint32_t WithTrunkEntry(std::uint32_t port, std::uint32_t vid) {
  const PortVlanTrunkEntry entry = {static_cast<std::uint8_t>(port), 0,
                                    static_cast<std::uint16_t>(vid)};
  return operation(&entry);
}

/// Calls an operation that takes an entry of the translation list.
template <auto operation>
std::uint32_t WithTransEntry(std::uint32_t port, std::uint32_t localVid, std::uint32_t netVid,
                             std::uint32_t usPriority, std::uint32_t dsPriority) {
  const PortVlanTransEntry entry = {
      static_cast<std::uint8_t>(port),        0,
      static_cast<std::uint16_t>(dsPriority), static_cast<std::uint16_t>(localVid),
      static_cast<std::uint16_t>(usPriority), static_cast<std::uint16_t>(netVid)};
  return operation(&entry);
}

/// Shows a number that an operation wrote.
void Report(CallOutcome& outcome, const std::string& name, std::uint32_t value) {
  outcome.outputs[name] = value;
  outcome.text += "  " + name + " = " + std::to_string(value) + "\n";
}

/// Binds an operation that takes a range of the stacking list and advances its start.
Binding BindStackRange(std::uint32_t (*function)(PortVlanStackRange* req)) {
  return {[function](const Arguments& given, std::span<const Argument> rows) {
            PortVlanStackRange range = {};
            range.port = static_cast<std::uint8_t>(given.number(rows[0].name));
            range.stackParam = given.number(rows[1].name);
            range.cvidStart = given.number(rows[2].name);
            range.cvidEnd = static_cast<std::uint16_t>(given.number(rows[3].name));
            range.svid = static_cast<std::uint16_t>(given.number(rows[4].name));
            CallOutcome outcome;
            outcome.value = function(&range);
            Report(outcome, "cvidStart", range.cvidStart);
            return outcome;
          },
          5};
}

/// Binds an operation that reads an entry of the membership table.
Binding BindVlanEntry(std::uint32_t (*function)(std::uint16_t* vid, std::uint32_t* portMask,
                                                std::uint32_t* attr)) {
  return {[function](const Arguments& /*given*/, std::span<const Argument> /*rows*/) {
            std::uint16_t vid = 0;
            std::uint32_t portMask = 0;
            std::uint32_t attr = 0;
            CallOutcome outcome;
            outcome.value = function(&vid, &portMask, &attr);
            Report(outcome, "vid", vid);
            Report(outcome, "portMask", portMask);
            Report(outcome, "attr", attr);
            return outcome;
          },
          0};
}

Binding BindVlanPorts() {
  return {[](const Arguments& given, std::span<const Argument> rows) {
            std::uint32_t portMask = 0;
            std::uint32_t extra = 0;
            CallOutcome outcome;
            outcome.value = BCM6838X_GetVlanPorts(given.number(rows[0].name), &portMask, &extra);
            Report(outcome, "portMask", portMask);
            Report(outcome, "extra", extra);
            return outcome;
          },
          1};
}

// Operations with further arguments, given those that count.
std::uint32_t SetCtcMode(std::uint32_t port, std::uint32_t mode) {
  return BCM6838X_SetPortCtcMode(port, mode);
}

std::uint32_t AddNothingOfVlan(std::uint32_t vid) {
  return BCM6838X_AddVlan(vid);
}

std::uint32_t DelNothingOfVlan(std::uint32_t vid) {
  return BCM6838X_DelVlan(vid);
}

const ArgumentRows kTrunkEntry = {kUniPort, kVid};

const ArgumentRows kTransEntry = {
    kUniPort,
    {"localVid", ArgumentType::Number, "VID on the UNI side"},
    {"netVid", ArgumentType::Number, "VID on the network side"},
    {"usPriority", ArgumentType::Number, "priority written upstream, 0..7"},
    {"dsPriority", ArgumentType::Number, "priority written downstream, 0..7"}};

const ArgumentRows kStackRange = {
    kUniPort,
    {"stackParam", ArgumentType::Number, "2 in the entries that BDCOM stacking builds"},
    {"cvidStart", ArgumentType::Number, "first customer VID"},
    {"cvidEnd", ArgumentType::Number, "last customer VID"},
    {"svid", ArgumentType::Number, "service VID, 1..4095"}};

const std::vector<Operation> kRows = {
    {{"BCM6838X_InitVlan", {}, "builds the initial VLAN actions and tables", {"InitVlan"}},
     Status,
     Bind(BCM6838X_InitVlan)},
    {{"BCM6838X_SetVlanTransparent",
      {kUniPort},
      "switches a port to transparent mode",
      {"Init\nSetVlanTransparent 1"}},
     Status,
     Bind(BCM6838X_SetVlanTransparent)},
    {{"BCM6838X_SetVlanTag",
      {kUniPort},
      "switches a port to tag mode",
      {"Init\nSetPortPvid 1 100\nSetVlanTag 1"}},
     Status,
     Bind(BCM6838X_SetVlanTag)},
    {{"BCM6838X_SetVlanTranslation",
      {kUniPort},
      "switches a port to translation mode",
      {"Init\nAddVlanTranslation 1 10 100 0 0\nSetVlanTranslation 1"}},
     Status,
     Bind(BCM6838X_SetVlanTranslation)},
    {{"BCM6838X_SetVlanTrunk",
      {kUniPort},
      "switches a port to trunk mode",
      {"Init\nAddVlanTrunk 1 100\nSetVlanTrunk 1"}},
     Status,
     Bind(BCM6838X_SetVlanTrunk)},
    {{"BCM6838X_SetZteVlanTrunk",
      {kUniPort},
      "switches a port to ZTE trunk mode",
      {"Init\nAddZteVlanTrunk 1 100\nSetZteVlanTrunk 1"}},
     Status,
     Bind(BCM6838X_SetZteVlanTrunk)},
    {{"BCM6838X_SetZteStacking",
      {kUniPort},
      "switches a port to ZTE stacking mode",
      {"Init\nSetPortPvid 1 100\nSetZteStacking 1"}},
     Status,
     Bind(BCM6838X_SetZteStacking)},
    {{"BCM6838X_SetBdcomStacking",
      {kUniPort},
      "switches a port to BDCOM stacking mode",
      {"Init\nSetBdcomStacking 1\nAddVlanStacking 1 2 10 10 100"}},
     Status,
     Bind(BCM6838X_SetBdcomStacking)},
    {{"BCM6838X_ApplyVlan",
      {kUniPort},
      "makes the configuration of a port effective",
      {"Init\nSetVlanTrunk 1\nAddVlanTrunk 1 100\nApplyVlan 1"}},
     Status,
     Bind(BCM6838X_ApplyVlan)},
    {{"BCM6838X_ClearVlanRule",
      {kUniPort},
      "removes the rules of a port's applied configuration",
      {"Init\nSetVlanTag 1\nClearVlanRule 1"}},
     Status,
     Bind(BCM6838X_ClearVlanRule)},
    {{"BCM6838X_RebuildVlanRule",
      {kUniPort},
      "creates the rules of a port's current configuration",
      {"Init\nRebuildVlanRule 1"}},
     Status,
     Bind(BCM6838X_RebuildVlanRule)},
    {{"BCM6838X_AddVlanTrunk",
      kTrunkEntry,
      "adds a VLAN to a port's trunk list",
      {"Init\nAddVlanTrunk 1 100"}},
     Status,
     Bind(WithTrunkEntry<BCM6838X_AddVlanTrunk>)},
    {{"BCM6838X_DelVlanTrunk",
      kTrunkEntry,
      "takes a VLAN out of a port's trunk list",
      {"DelVlanTrunk 1 100"}},
     Status,
     Bind(WithTrunkEntry<BCM6838X_DelVlanTrunk>)},
    {{"BCM6838X_AddZteVlanTrunk",
      kTrunkEntry,
      "adds a VLAN to a port's trunk list",
      {"Init\nAddZteVlanTrunk 1 100"}},
     Status,
     Bind(WithTrunkEntry<BCM6838X_AddZteVlanTrunk>)},
    {{"BCM6838X_DelZteVlanTrunk",
      kTrunkEntry,
      "takes a VLAN out of a port's trunk list",
      {"DelZteVlanTrunk 1 100"}},
     Status,
     Bind(WithTrunkEntry<BCM6838X_DelZteVlanTrunk>)},
    {{"BCM6838X_AddVlanTranslation",
      kTransEntry,
      "adds a pair to a port's translation list",
      {"Init\nAddVlanTranslation 1 10 100 0 0"}},
     Status,
     Bind(WithTransEntry<BCM6838X_AddVlanTranslation>)},
    {{"BCM6838X_DelVlanTranslation",
      kTransEntry,
      "takes a pair out of a port's translation list",
      {"DelVlanTranslation 1 10 100 0 0"}},
     Status,
     Bind(WithTransEntry<BCM6838X_DelVlanTranslation>)},
    {{"BCM6838X_AddVlanStacking",
      kStackRange,
      "adds a range of customer VLANs to a port's stacking list",
      {"Init\nAddVlanStacking 1 2 10 13 100"}},
     Status,
     BindStackRange(BCM6838X_AddVlanStacking)},
    {{"BCM6838X_DelVlanStacking",
      kStackRange,
      "takes the first half of a range of customer VLANs out of a port's stacking list",
      {"Init\nDelVlanStacking 1 2 10 13 100"}},
     Status,
     BindStackRange(BCM6838X_DelVlanStacking)},
    {{"BCM6838X_SetPortPvid",
      {kUniPort, {"pvid", ArgumentType::Number, "VID; the low 16 bits count"}},
      "sets a port's VID",
      {"Init\nSetPortPvid 1 100"}},
     Status,
     Bind(BCM6838X_SetPortPvid)},
    {{"BCM6838X_SetPortPriority",
      {kUniPort, {"priority", ArgumentType::Number, "priority; the low 8 bits count"}},
      "sets a port's default priority",
      {"Init\nSetPortPriority 1 5"}},
     Status,
     Bind(BCM6838X_SetPortPriority)},
    {{"BCM6838X_SetPortCtcMode",
      {kUniPort,
       {"mode", ArgumentType::Number,
        "0 transparent, 1 tag, 2 and 3 translation, 4 and 20 trunk, 19 ZTE trunk, "
        "160 ZTE stacking, 253 BDCOM stacking"}},
      "sets a port's VLAN mode by its code",
      {"Init\nSetPortCtcMode 1 4"}},
     Status,
     Bind(SetCtcMode)},
    {{"BCM6838X_SetVlanEntry",
      {kUniPort, {"vid", ArgumentType::Number, "VID; the low 16 bits count"}},
      "makes a port a member of a VLAN, and of no other, in the membership table",
      {"SetVlanEntry 1 100"}},
     Status,
     Bind(BCM6838X_SetVlanEntry)},
    {{"BCM6838X_GetVlanPorts",
      {{"vid", ArgumentType::Number, "VID; the low 16 bits count"}},
      "reads the members of a VLAN from the membership table",
      {"SetVlanEntry 1 100\nGetVlanPorts 100"}},
     Status,
     BindVlanPorts()},
    {{"BCM6838X_GetFirstVlanEntry",
      {},
      "reads the first VLAN of the membership table",
      {"SetVlanEntry 1 100\nGetFirstVlanEntry"}},
     Status,
     BindVlanEntry(BCM6838X_GetFirstVlanEntry)},
    {{"BCM6838X_GetNextVlanEntry",
      {},
      "reads the next VLAN of the membership table",
      {"SetVlanEntry 1 100\nSetVlanEntry 2 200\nGetNextVlanEntry"}},
     Status,
     BindVlanEntry(BCM6838X_GetNextVlanEntry)},
    {{"BCM6838X_AddIphostVlan",
      {kVid},
      "gives the unit's own IP traffic a VLAN tag",
      {"InitDrv\nAddIphostVlan 100"}},
     Status,
     Bind(BCM6838X_AddIphostVlan)},
    {{"BCM6838X_DelIphostVlan",
      {kVid},
      "takes the VLAN tag of the unit's own IP traffic away",
      {"InitDrv\nDelIphostVlan 100"}},
     Status,
     Bind(BCM6838X_DelIphostVlan)},
    {{"BCM6838X_AddVlan",
      {{"vid", ArgumentType::Number, "not used"}},
      "does nothing",
      {"AddVlan 100"}},
     Status,
     Bind(AddNothingOfVlan)},
    {{"BCM6838X_DelVlan",
      {{"vid", ArgumentType::Number, "not used"}},
      "does nothing",
      {"DelVlan 100"}},
     Status,
     Bind(DelNothingOfVlan)},
};

}  // namespace

const std::vector<Operation>& VlanPortOperations() {
  return kRows;
}

}  // namespace onu
