/// @file
/// The rows of the operations that bcm6838x_port.h declares. A new operation is one more row.
#include <array>
#include <cstdint>

#include <bcm6838x_port.h>

#include "operations/operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

/// As many modes as a unit can have UNI ports.
constexpr std::size_t kModes = 32;

std::uint32_t SetMirrorModes(std::uint32_t mode1, std::uint32_t mode2, std::uint32_t mode3,
                             std::uint32_t mode4) {
  const std::array<std::uint8_t, kModes> modes = {
      static_cast<std::uint8_t>(mode1), static_cast<std::uint8_t>(mode2),
      static_cast<std::uint8_t>(mode3), static_cast<std::uint8_t>(mode4)};
  return BCM6838X_SetPortMirrorMode(modes.data());
}

// The operations that take anything and do nothing, given the port alone.
std::uint32_t ReadNothingOfGlobalLinkState(std::uint32_t port) {
  return BCM6838X_GetGlobalLinkState(port);
}

std::uint32_t ReadNothingOfGlobalNegResult(std::uint32_t port) {
  return BCM6838X_GetGlobalNegResult(port);
}

std::uint32_t SetNothingOfPortAuthMode(std::uint32_t port) {
  return BCM6838X_SetPortAuthMode(port);
}

const std::vector<Operation> kRows = {
    {{"BCM6838X_InitPort", {}, "puts port control into its initial state", {"InitPort"}},
     Status,
     Bind(BCM6838X_InitPort)},
    {{"BCM6838X_GetMediaType",
      {kUniPort},
      "reads a port's media type: 0 to 5 from 1000 full to 10 half, 6 link down",
      {"GetMediaType 1"}},
     Status,
     BindReading(BCM6838X_GetMediaType, "type")},
    {{"BCM6838X_GetPortLinkState", {kUniPort}, "reads a port's link state", {"GetPortLinkState 1"}},
     Status,
     BindReading(BCM6838X_GetPortLinkState, "state")},
    {{"BCM6838X_GetPortNegResult",
      {kUniPort},
      "reads a port's negotiation result: 0 10 half, 1 100 half, 2 1000 half, 3 10 full, "
      "4 100 full, 5 1000 full",
      {"GetPortNegResult 1"}},
     Status,
     BindReading(BCM6838X_GetPortNegResult, "negResult")},
    {{"BCM6838X_PauseAbilityGet",
      {kUniPort},
      "reads whether a port advertises pause: 2 or 0",
      {"PauseAbilityGet 1"}},
     Status,
     BindReading(BCM6838X_PauseAbilityGet, "mode")},
    {{"BCM6838X_PauseAbilitySet",
      {kUniPort, {"mode", ArgumentType::Number, "1, 2 and 6 advertise pause"}},
      "sets whether a port advertises pause",
      {"PauseAbilitySet 1 2"}},
     Status,
     Bind(BCM6838X_PauseAbilitySet)},
    {{"BCM6838X_SetPortFlowControl",
      {kUniPort, {"on", ArgumentType::Number, "1 on, any other value off"}},
      "switches a port's flow control",
      {"SetPortFlowControl 1 1"}},
     Status,
     Bind(BCM6838X_SetPortFlowControl)},
    {{"BCM6838X_PhyPowerDown",
      {kUniPort, {"down", ArgumentType::Number, "0 up, any other value down"}},
      "powers a port's PHY down or up",
      {"PhyPowerDown 1 1"}},
     Status,
     Bind(BCM6838X_PhyPowerDown)},
    {{"BCM6838X_SetPortAdminState",
      {kUniPort, {"state", ArgumentType::Number, "0 down, any other value up"}},
      "sets the administrative state of a port",
      {"SetPortAdminState 1 0"}},
     Status,
     Bind(BCM6838X_SetPortAdminState)},
    {{"BCM6838X_SetPortNegMode",
      {kUniPort,
       {"mode", ArgumentType::Number,
        "0 10 half, 1 100 half, 3 10 full, 4 100 full; 2, 5, 6 auto"}},
      "sets a port's negotiation mode",
      {"SetPortNegMode 1 4"}},
     Status,
     Bind(BCM6838X_SetPortNegMode)},
    {{"BCM6838X_SetPortLoopback",
      {kUniPort, {"on", ArgumentType::Number, "0 off, any other value on"}},
      "switches a port's loopback",
      {"SetPortLoopback 1 1"}},
     Status,
     Bind(BCM6838X_SetPortLoopback)},
    {{"BCM6838X_SetPortIsolateMask",
      {kUniPort, {"mask", ArgumentType::Number, "0 releases; bit b isolates from UNI port b + 1"}},
      "isolates a port from others",
      {"SetPortIsolateMask 3 9"}},
     Status,
     Bind(BCM6838X_SetPortIsolateMask)},
    {{"BCM6838X_SetPortMacLearn",
      {kIgnoredPort, {"enable", ArgumentType::Number, "passed on as it is"}},
      "switches MAC learning of the whole switch",
      {"SetPortMacLearn 1 1"}},
     Status,
     Bind(BCM6838X_SetPortMacLearn)},
    {{"BCM6838X_SetPortLimitMacNum",
      {kIgnoredPort, {"limit", ArgumentType::Number, "number of addresses"}},
      "sets the learning limit of the whole switch",
      {"SetPortLimitMacNum 1 16"}},
     Status,
     Bind(BCM6838X_SetPortLimitMacNum)},
    {{"BCM6838X_SetPortStpEnable",
      {{"enable", ArgumentType::Number, "passed on as it is"}},
      "switches spanning tree on every port",
      {"SetPortStpEnable 1"}},
     Status,
     Bind(BCM6838X_SetPortStpEnable)},
    {{"BCM6838X_SetPortStpState",
      {kUniPort, {"state", ArgumentType::Number, "1 takes the port down, 4 takes it up"}},
      "enforces a spanning-tree state",
      {"SetPortStpState 1 4"}},
     Status,
     Bind(BCM6838X_SetPortStpState)},
    {{"BCM6838X_SetPortMtu",
      {kUniPort, {"mtu", ArgumentType::Number, "octets; jumbo frames from 1519"}},
      "sets a port's maximum frame size",
      {"SetPortMtu 1 1519"}},
     Status,
     Bind(BCM6838X_SetPortMtu)},
    {{"BCM6838X_SetPortMirrorDestport",
      {kUniPort},
      "chooses the port that receives mirrored frames",
      {"SetPortMirrorDestport 2"}},
     Status,
     Bind(BCM6838X_SetPortMirrorDestport)},
    {{"BCM6838X_SetPortMirrorMode",
      {{"mode1", ArgumentType::Number, "0 none, 1, 2 or 3; of UNI port 1"},
       {"mode2", ArgumentType::Number, "0 none, 1, 2 or 3; of UNI port 2"},
       {"mode3", ArgumentType::Number, "0 none, 1, 2 or 3; of UNI port 3"},
       {"mode4", ArgumentType::Number, "0 none, 1, 2 or 3; of UNI port 4"}},
      "chooses what is mirrored, for UNI ports 1 to 4; further ports get 0",
      {"SetPortMirrorMode 1 0 0 0"}},
     Status,
     Bind(SetMirrorModes)},
    {{"BCM6838X_SetPortMirrorEnable",
      {{"enable", ArgumentType::Number, "passed on as it is"}},
      "switches mirroring",
      {"SetPortMirrorEnable 1"}},
     Status,
     Bind(BCM6838X_SetPortMirrorEnable)},
    {{"BCM6838X_GetGlobalLinkState", {kIgnoredPort}, "does nothing", {"GetGlobalLinkState 1"}},
     Status,
     Bind(ReadNothingOfGlobalLinkState)},
    {{"BCM6838X_GetGlobalNegResult", {kIgnoredPort}, "does nothing", {"GetGlobalNegResult 1"}},
     Status,
     Bind(ReadNothingOfGlobalNegResult)},
    {{"BCM6838X_SetPortAuthMode", {kIgnoredPort}, "does nothing", {"SetPortAuthMode 1"}},
     Status,
     Bind(SetNothingOfPortAuthMode)},
};

}  // namespace

const std::vector<Operation>& PortOperations() {
  return kRows;
}

}  // namespace onu
