/// @file
/// How a command finds its handler: the rows of the tables of commands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

#include <brmgr_cmd.h>
#include <brmgr_traits.h>

#include "device/driver_state.h"

namespace virtual_onu {

// A branch a row of the table: rows may agree.
// NOLINTBEGIN(bugprone-branch-clone)
/// The bytes without which a command is refused: its record's; of one that ends with its frame, none.
constexpr std::size_t RequiredSize(std::uint32_t code) {
  switch (code) {
#define RETURN_SIZE(command, ...) \
  case command:                   \
    return brmgr::CommandTraits<command>::kFixedLength;
    BRMGR_COMMAND_LIST(RETURN_SIZE)
#undef RETURN_SIZE
    default:
      return 0;
  }
}
// NOLINTEND(bugprone-branch-clone)

template <typename Function>
struct HandlerTraits;

template <typename Taken>
struct HandlerTraits<CommandResult (*)(DriverState&, Taken&)> {
  using Record = Taken;
};

/// Runs a handler on a copy of the record, which need not be aligned in `bytes`. ExecuteCommand has
/// checked the length.
template <std::uint32_t kCode, auto kHandle>
CommandResult Run(DriverState& state, std::span<std::uint8_t> bytes) {
  using Record = brmgr::CommandRecord<kCode>;
  static_assert(std::is_same_v<typename HandlerTraits<decltype(kHandle)>::Record, Record>,
                "the handler takes another record");
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

/// The row of a command and its handler, which takes the record that the command carries.
template <std::uint32_t kCode, auto kHandle>
constexpr CommandRow kRow = {kCode, Run<kCode, kHandle>};

}  // namespace virtual_onu
