/// @file
/// The handlers of the packet path. Where a frame leaves is not known here.
#include "device/packet_commands.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <set>
#include <string>

namespace virtual_onu {
namespace {

/// This command counts its ports from 0.
CommandResult SetTrap(const DriverState& state, const TrapEnableRecord& record,
                      std::set<std::uint32_t>& ports) {
  if (record.portIndex >= state.limits.uniPorts) {
    return {EINVAL, "port index " + std::to_string(record.portIndex) + ", but the chip has " +
                        std::to_string(state.limits.uniPorts) + " ports, counted from 0"};
  }
  if (record.enable != 0) {
    ports.insert(record.portIndex + 1);
  } else {
    ports.erase(record.portIndex + 1);
  }
  return {};
}

CommandResult SetDhcpTrap(DriverState& state, TrapEnableRecord& record) {
  return SetTrap(state, record, state.portTables.traps.dhcp);
}

CommandResult SetPppoeTrap(DriverState& state, TrapEnableRecord& record) {
  return SetTrap(state, record, state.portTables.traps.pppoe);
}

/// Reads the record of a frame, which ends with the frame or behind it.
/// @tparam kLengthOffset  where the frame's length stands
template <std::uint32_t kCode, std::size_t kLengthOffset>
CommandResult Send(DriverState& state, std::span<std::uint8_t> bytes) {
  using Record = brmgr::CommandRecord<kCode>;
  constexpr std::size_t kHeader = offsetof(Record, data);
  if (bytes.size() < kHeader) {
    return {EINVAL, "short record"};
  }
  const auto word = [bytes](std::size_t offset) {
    std::uint32_t value = 0;
    std::memcpy(&value, &bytes[offset], sizeof(value));
    return value;
  };
  const std::span<const std::uint8_t> rest = bytes.subspan(kHeader);
  const std::uint32_t length = word(kLengthOffset);
  if (length > rest.size()) {
    return {EINVAL, "frame of " + std::to_string(length) + " bytes in a record with " +
                        std::to_string(rest.size())};
  }
  const std::span<const std::uint8_t> frame = rest.first(length);
  state.outgoing = {kCode, word(offsetof(Record, desPort)), {frame.begin(), frame.end()}};
  return {};
}

template <std::uint32_t kCode>
constexpr CommandRow kRelayRow = {kCode, Send<kCode, offsetof(RelayPkt, length)>};

constexpr std::array kPacketCommands = {
    kRow<BRMGR_CMD_DHCP_TRAP, SetDhcpTrap>,
    kRow<BRMGR_CMD_PPPOE_TRAP, SetPppoeTrap>,
    kRelayRow<BRMGR_CMD_SEND_BPDU>,
    kRelayRow<BRMGR_CMD_SEND_DHCP>,
    kRelayRow<BRMGR_CMD_SEND_PPPOE>,
    CommandRow{BRMGR_CMD_SEND_PKT, Send<BRMGR_CMD_SEND_PKT, offsetof(RdpaPkt, size)>},
};

}  // namespace

std::span<const CommandRow> PacketCommands() {
  return kPacketCommands;
}

}  // namespace virtual_onu
