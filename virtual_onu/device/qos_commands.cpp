/// @file
/// The handlers of policers, line rates, downstream limits and DSCP maps: they keep what they are
/// told. What it does to frames is the data path's matter.
#include "device/qos_commands.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "device/port_commands.h"

namespace virtual_onu {
namespace {

CommandResult BadUni(const DriverState& state, std::uint32_t uni) {
  return {EINVAL, "UNI port " + std::to_string(uni) + " is none of 1 to " +
                      std::to_string(state.limits.uniPorts)};
}

bool IsUni(const DriverState& state, std::uint32_t uni) {
  return uni >= 1 && uni <= state.limits.uniPorts;
}

/// A policer that exists is replaced.
CommandResult AddPolicer(DriverState& state, PolicerCfg& record) {
  if (!IsUni(state, record.port)) {
    return BadUni(state, record.port);
  }
  state.qosTables.policers[record.port] = {record, ++state.qosTables.made};
  return {};
}

CommandResult DeletePolicer(DriverState& state, PolicerDel& record) {
  if (!IsUni(state, record.port)) {
    return BadUni(state, record.port);
  }
  if (state.qosTables.policers.erase(record.port) == 0) {
    return {ENOENT, "UNI port " + std::to_string(record.port) + " has no policer"};
  }
  return {};
}

/// Links are reported of interfaces of any number; one that is no port of the chip means nothing.
CommandResult SetLineRate(DriverState& state, PortRateRecord& record) {
  if (const auto uni = UniOf(state, record.port)) {
    state.qosTables.lineRates[*uni] = record.rate;
  }
  return {};
}

/// This command carries a port index from 0, plus 1: the UNI port number. A rate of 0 takes the
/// limit away; a limit that exists is replaced.
CommandResult SetDownstreamLimit(DriverState& state, DsRateLimitRecord& record) {
  if (!IsUni(state, record.port)) {
    return BadUni(state, record.port);
  }
  if (record.rate == 0) {
    state.qosTables.dsLimits.erase(record.port);
  } else {
    state.qosTables.dsLimits[record.port] = {record.rate, ++state.qosTables.made};
  }
  return {};
}

CommandResult SetDscpMap(DriverState& state, DscpMapRecord& record) {
  const auto uni = UniOf(state, record.port);
  if (!uni) {
    return NoPort(state, record.port);
  }
  std::ranges::copy(record.priority, state.qosTables.dscpMaps[*uni].begin());
  return {};
}

constexpr std::array kQosCommands = {
    kRow<BRMGR_CMD_POLICER_ADD, AddPolicer>, kRow<BRMGR_CMD_POLICER_DEL, DeletePolicer>,
    kRow<BRMGR_CMD_PORT_STATE, SetLineRate>, kRow<BRMGR_CMD_DS_RATE_LIMIT, SetDownstreamLimit>,
    kRow<BRMGR_CMD_DSCP_MAP, SetDscpMap>,
};

}  // namespace

std::span<const CommandRow> QosCommands() {
  return kQosCommands;
}

}  // namespace virtual_onu
