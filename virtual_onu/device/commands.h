/// @file
/// What the driver does with each command: checks, the chip's tables, index allotment. Requests,
/// descriptors and the trace are the device's.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <brmgr_record.h>

#include "device/chip_tables.h"
#include "device/mac_tables.h"
#include "device/outgoing_frame.h"
#include "device/port_tables.h"
#include "device/qos_tables.h"

namespace virtual_onu {

/// All that the driver keeps.
struct DriverState {
  ChipLimits limits = {};
  ChipTables tables = {};
  PortTables portTables = {};
  QosTables qosTables = {};
  MacTables macTables = {};
  McastGroups mcastGroups = {};
  std::optional<DrvInitRecord> ports = {};
  std::optional<std::uint32_t> feature = {};
  std::uint64_t now = 0;  ///< when the command came, in milliseconds of the unit
  /// The frame that the last command gave to send; whoever sends it takes it out.
  std::optional<OutgoingFrame> outgoing = {};
};

struct CommandResult {
  int error = 0;       ///< 0, or the errno value of the refusal
  std::string reason;  ///< why the command was refused; empty when it was not
};

/// Sets the VLAN action of a port on a flow of a downstream class, or takes it away.
/// @param[in] vlanActionIndex  a downstream VLAN action, or BRMGR_INDEX_NONE
CommandResult SetPortAction(DriverState& state, std::uint32_t icIndex, const PortActionKey& key,
                            std::uint32_t vlanActionIndex);

/// Carries out one command on a record in the processor's byte order, and fills in what the driver
/// returns. A code that has no described record is accepted and changes nothing; a refused command
/// changes neither the state nor the record.
CommandResult ExecuteCommand(DriverState& state, std::uint32_t code,
                             std::span<std::uint8_t> record);

}  // namespace virtual_onu
