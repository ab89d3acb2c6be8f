/// @file
/// All that the driver keeps, and what becomes of a command that works on it.
#pragma once

#include <cstdint>
#include <optional>
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

}  // namespace virtual_onu
