/// @file
/// The commands of the chip's objects: classes, flows, VLAN actions, and what start-up tells.
#pragma once

#include <cstdint>
#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> ChipCommands();

/// Sets the VLAN action of a port on a flow of a downstream class, or takes it away.
/// @param[in] vlanActionIndex  a downstream VLAN action, or BRMGR_INDEX_NONE
CommandResult SetPortAction(DriverState& state, std::uint32_t icIndex, const PortActionKey& key,
                            std::uint32_t vlanActionIndex);

}  // namespace virtual_onu
