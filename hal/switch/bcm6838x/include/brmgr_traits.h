/// @file
/// What the command table says of each command, as types of C++: its record, its length, its flags.
/// The library sends and the simulated device receives by these, so that neither can mistake the
/// record of a command. The table itself is in brmgr_cmd.h; C has nothing here.
#ifndef BRMGR_TRAITS_H
#define BRMGR_TRAITS_H

#include "brmgr_cmd.h"
#include "brmgr_record.h"

#ifdef __cplusplus

/// @cond
namespace brmgr {

/// Bytes of a record; none of `void`, which is that of a command without one.
template <typename Record>
inline constexpr uint32_t kSizeOf = sizeof(Record);
template <>
inline constexpr uint32_t kSizeOf<void> = 0;

template <typename A, typename B>
inline constexpr bool kIsSame = false;
template <typename A>
inline constexpr bool kIsSame<A, A> = true;

/// One row of the table.
template <typename RowRecord, uint32_t length, uint32_t flag, uint32_t otherFlag>
struct TableRow {
  using Record = RowRecord;
  static constexpr uint32_t kLength = length;
  static constexpr uint32_t kFlag = flag;
  static constexpr bool kHasRecord = !kIsSame<Record, void>;
  /// Whether the record ends with its frame.
  static constexpr bool kIsVariable = length == BRMGR_LENGTH_VARIABLE;
  /// Bytes that every record of the command has; none are certain where it ends with its frame.
  static constexpr uint32_t kFixedLength = kIsVariable ? 0 : length;
  static_assert(kIsVariable || length == kSizeOf<Record>,
                "the table gives a length that the record does not have");

  /// Whether any sender sends the command with that flag.
  static constexpr bool isSentWith(uint32_t wanted) {
    // NOLINTNEXTLINE(misc-redundant-expression) most rows name one flag twice
    return wanted == flag || wanted == otherFlag;
  }
};

/// The row of a command.
template <uint32_t code>
struct CommandTraits {
  static_assert(kIsSame<CommandTraits, void>, "the table has no such command");
};

#define BRMGR_DEFINE_TRAITS(code, name, record, length, flag, otherFlag, purpose) \
  template <>                                                                     \
  struct CommandTraits<BRMGR_CMD_##name>                                          \
      : TableRow<record, (length), BRMGR_FLAG_##flag, BRMGR_FLAG_##otherFlag> {};
BRMGR_COMMAND_LIST(BRMGR_DEFINE_TRAITS)
#undef BRMGR_DEFINE_TRAITS

template <uint32_t code>
using CommandRecord = typename CommandTraits<code>::Record;

}  // namespace brmgr
/// @endcond

#endif

#endif
