/// @file
/// The handlers of the ports and of MAC learning: they keep what they are told. What it does to
/// frames is the data path's matter.
#include "device/port_commands.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <string>

namespace virtual_onu {
namespace {

constexpr std::uint32_t kFirstPort = DevicePortOf(1);
constexpr std::uint32_t kMaxDirection = 2;

CommandResult SetAdmin(DriverState& state, PortAdminRecord& record) {
  const auto uni = UniOf(state, record.port);
  if (!uni) {
    return NoPort(state, record.port);
  }
  state.portTables.settings[*uni].adminUp = record.enable != 0;
  return {};
}

CommandResult SetLoopback(DriverState& state, PortLoopbackRecord& record) {
  const auto uni = UniOf(state, record.port);
  if (!uni) {
    return NoPort(state, record.port);
  }
  state.portTables.settings[*uni].loopback = record.enable != 0;
  return {};
}

CommandResult SetIsolation(DriverState& state, PortIsolateRecord& record) {
  const auto uni = UniOf(state, record.port);
  const auto peer = UniOf(state, record.peerPort);
  if (!uni || !peer) {
    return NoPort(state, uni ? record.peerPort : record.port);
  }
  const PortPair pair = MakePortPair(*uni, *peer);
  if (record.isolate != 0) {
    state.portTables.isolated.insert(pair);
  } else {
    state.portTables.isolated.erase(pair);
  }
  return {};
}

/// This command counts its ports from 0.
CommandResult SetSpanningTree(DriverState& state, PortStpRecord& record) {
  if (record.portIndex >= state.limits.uniPorts) {
    return {EINVAL, "port index " + std::to_string(record.portIndex) + ", but the chip has " +
                        std::to_string(state.limits.uniPorts) + " ports, counted from 0"};
  }
  state.portTables.settings[record.portIndex + 1].spanningTree = record.enable;
  return {};
}

CommandResult SetMirror(DriverState& state, PortMirrorRecord& record) {
  const bool on = record.enable != 0;
  if (on && !UniOf(state, record.destinationPort)) {
    return NoPort(state, record.destinationPort);
  }
  if (on && record.selector != 0) {
    return {EINVAL, "port selector " + std::to_string(record.selector) + " is not 0 (all ports)"};
  }
  if (on && record.direction > kMaxDirection) {
    return {EINVAL, "mirror direction " + std::to_string(record.direction) +
                        " is none of 0 (transmitted), 1 (received) and 2 (both)"};
  }
  state.portTables.mirror = record;
  return {};
}

CommandResult SetVlans(DriverState& state, PortVlanTable& record) {
  state.portTables.vlans.assign(std::begin(record.port), std::end(record.port));
  return {};
}

/// Counts its ports from 1, and takes 0 for the first one too. Reading changes no counter.
// Required: counters-of-0-are-the-first-port
CommandResult ReadCounters(DriverState& state, PortStatsRecord& record) {
  if (record.port > state.limits.uniPorts) {
    return {EINVAL, "UNI port " + std::to_string(record.port) + ", but the chip has " +
                        std::to_string(state.limits.uniPorts) + " ports, counted from 1"};
  }
  record = state.portTables.counters[std::max(record.port, 1U)];
  return {};
}

CommandResult SetMacLimit(DriverState& state, MacLimitRecord& record) {
  state.portTables.macLimit = record.limit;
  return {};
}

/// One command for two purposes: it switches learning, and clears what was learned so far.
CommandResult SetMacLearn(DriverState& state, MacLearnRecord& record) {
  state.portTables.macLearn = record.value;
  state.macTables.removeDynamic();
  return {};
}

constexpr std::array kPortCommands = {
    kRow<BRMGR_CMD_VLAN_REBUILD, SetVlans>,     kRow<BRMGR_CMD_PORT_ADMIN, SetAdmin>,
    kRow<BRMGR_CMD_PORT_LOOPBACK, SetLoopback>, kRow<BRMGR_CMD_PORT_ISOLATE, SetIsolation>,
    kRow<BRMGR_CMD_PORT_STATS, ReadCounters>,   kRow<BRMGR_CMD_PORT_STP, SetSpanningTree>,
    kRow<BRMGR_CMD_PORT_MIRROR, SetMirror>,     kRow<BRMGR_CMD_MAC_LIMIT, SetMacLimit>,
    kRow<BRMGR_CMD_MAC_LEARN, SetMacLearn>,
};

}  // namespace

std::span<const CommandRow> PortCommands() {
  return kPortCommands;
}

std::optional<std::uint32_t> UniOf(const DriverState& state, std::uint32_t port) {
  if (port < kFirstPort || port - kFirstPort >= state.limits.uniPorts) {
    return std::nullopt;
  }
  return port - kFirstPort + 1;
}

CommandResult NoPort(const DriverState& state, std::uint32_t port) {
  return {EINVAL, "device port " + std::to_string(port) + " is none of " +
                      std::to_string(kFirstPort) + " to " +
                      std::to_string(DevicePortOf(state.limits.uniPorts))};
}

}  // namespace virtual_onu
