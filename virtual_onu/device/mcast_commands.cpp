/// @file
/// The handlers of the multicast groups: each entry forwards one group to one port.
#include "device/mcast_commands.h"

#include <array>
#include <cerrno>
#include <string>

#include "device/free_index.h"

namespace virtual_onu {
namespace {

CommandResult AddGroup(DriverState& state, McastGroupEntry& record) {
  if (record.port < 1 || record.port > state.limits.uniPorts) {
    return {EINVAL, "UNI port " + std::to_string(record.port) + " is none of 1 to " +
                        std::to_string(state.limits.uniPorts)};
  }
  if (record.vlanActionIndex != BRMGR_INDEX_NONE &&
      !state.tables.downstream.actions.contains(record.vlanActionIndex)) {
    return {ENOENT, "no ds VLAN action " + std::to_string(record.vlanActionIndex)};
  }
  const auto index = FreeIndex(state.mcastGroups, state.limits.mcastGroups);
  if (!index) {
    return {ENOSPC, "all " + std::to_string(state.limits.mcastGroups) +
                        " multicast group entries are in use"};
  }
  record.channelIndex = *index;
  state.mcastGroups[*index] = record;
  return {};
}

CommandResult DeleteGroup(DriverState& state, McastGroupEntry& record) {
  if (state.mcastGroups.erase(record.channelIndex) == 0) {
    return {ENOENT, "no multicast group entry " + std::to_string(record.channelIndex)};
  }
  return {};
}

constexpr std::array kMcastCommands = {
    kRow<BRMGR_CMD_MCAST_ADD, AddGroup>,
    kRow<BRMGR_CMD_MCAST_DEL, DeleteGroup>,
};

}  // namespace

std::span<const CommandRow> McastCommands() {
  return kMcastCommands;
}

}  // namespace virtual_onu
