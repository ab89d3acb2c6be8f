/// @file
/// How a command finds its handler: the rows of the tables of commands.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "device/driver_state.h"

namespace virtual_onu {

struct CommandSize {
  std::uint32_t code;
  std::size_t size;
};

#define MAKE_SIZE(command, record) CommandSize{BRMGR_CMD_##command, sizeof(record)},
inline constexpr std::array kCommandSizes = {BRMGR_COMMAND_RECORD_LIST(MAKE_SIZE)};
#undef MAKE_SIZE

/// Size of the described record of a command; 0 where none is described. Of a record that ends with
/// its frame it is the size of the longest.
constexpr std::size_t RecordSize(std::uint32_t code) {
  const auto* const found = std::ranges::find(kCommandSizes, code, &CommandSize::code);
  return found == kCommandSizes.end() ? 0 : found->size;
}

// A branch a row of the table: rows may agree.
// NOLINTBEGIN(bugprone-branch-clone)
/// Whether a command's record ends with its frame.
constexpr bool HasVariableLength(std::uint32_t code) {
  switch (code) {
#define RETURN_VARIABLE(command, name, length, flag, purpose) \
  case command:                                               \
    return (length) == BRMGR_LENGTH_VARIABLE;
    BRMGR_COMMAND_LIST(RETURN_VARIABLE)
#undef RETURN_VARIABLE
    default:
      return false;
  }
}
// NOLINTEND(bugprone-branch-clone)

/// Runs a handler on a copy of the record, which need not be aligned in `bytes`. ExecuteCommand has
/// checked the length.
template <std::uint32_t kCode, typename Record, CommandResult (*kHandle)(DriverState&, Record&)>
CommandResult Run(DriverState& state, std::span<std::uint8_t> bytes) {
  static_assert(sizeof(Record) == RecordSize(kCode), "the handler takes another record");
  Record record;
  std::memcpy(&record, bytes.data(), sizeof(record));
  CommandResult result = kHandle(state, record);
  if (result.error == 0) {
    std::memcpy(bytes.data(), &record, sizeof(record));
  }
  return result;
}

struct CommandRow {
  std::uint32_t code;
  CommandResult (*run)(DriverState& state, std::span<std::uint8_t> bytes);
};

template <std::uint32_t kCode, typename Record, CommandResult (*kHandle)(DriverState&, Record&)>
constexpr CommandRow kRow = {kCode, Run<kCode, Record, kHandle>};

}  // namespace virtual_onu
