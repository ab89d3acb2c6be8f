/// @file
/// From a command's code to its handler.
#include "device/execute_command.h"

#include <algorithm>
#include <cerrno>

#include "device/chip_commands.h"
#include "device/command_row.h"
#include "device/mac_commands.h"
#include "device/mcast_commands.h"
#include "device/packet_commands.h"
#include "device/port_commands.h"
#include "device/qos_commands.h"

namespace virtual_onu {

CommandResult ExecuteCommand(DriverState& state, std::uint32_t code,
                             std::span<std::uint8_t> record) {
  if (record.size() < RequiredSize(code)) {
    return {EINVAL, "short record"};
  }
  for (const std::span<const CommandRow> rows :
       {ChipCommands(), PortCommands(), QosCommands(), MacCommands(), McastCommands(),
        PacketCommands()}) {
    const auto row = std::ranges::find(rows, code, &CommandRow::code);
    if (row != rows.end()) {
      return row->run(state, record);
    }
  }
  return {};
}

}  // namespace virtual_onu
