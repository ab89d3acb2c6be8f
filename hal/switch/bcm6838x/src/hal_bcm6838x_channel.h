/// @file
/// State of the driver core, and the way in which the areas send commands: each names its command,
/// and record, length and flag follow from the table of brmgr_cmd.h.
#ifndef HAL_BCM6838X_CHANNEL_H
#define HAL_BCM6838X_CHANNEL_H

#include <cstddef>
#include <cstdint>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <brmgr_traits.h>
#include <hal_bcm6838x.h>

namespace hal {

/// Size of g_BoardId: an identifier of up to 16 characters and its terminating zero.
constexpr uint32_t kBoardIdSize = 17;

extern "C" {
extern int32_t sgHwDevFd;             ///< descriptor of "BrmgrDev"; below 1 when not open
extern int32_t g_SwitchPerformance;   ///< 1 in performance mode, else 0
extern char g_BoardId[kBoardIdSize];  ///< board identifier
}

/// A command that carries a `Record`, for a helper that serves several commands.
template <typename Record>
struct Command {
  uint32_t code;
  uint32_t flag;
};

/// The command of a code. The flag may be given where the table names two.
template <uint32_t code, uint32_t flag = brmgr::CommandTraits<code>::kFlag>
constexpr Command<brmgr::CommandRecord<code>> CommandOf() {
  using Traits = brmgr::CommandTraits<code>;
  static_assert(Traits::isSentWith(flag), "no sender of the command uses that flag");
  static_assert(!Traits::kIsVariable, "the command's record ends with its frame");
  return {code, flag};
}

/// Sends a whole record.
template <typename Record>
uint32_t Send(Command<Record> command, Record& record) {
  return BCM6838X_Ioctl(command.code, &record, sizeof(record), command.flag);
}

/// Sends a command with its record.
template <uint32_t code, uint32_t flag = brmgr::CommandTraits<code>::kFlag, typename Record>
uint32_t Send(Record& record) {
  static_assert(brmgr::kIsSame<Record, brmgr::CommandRecord<code>>,
                "the command carries another record");
  return Send(CommandOf<code, flag>(), record);
}

/// Sends a command that has no record.
template <uint32_t code>
uint32_t Send() {
  using Traits = brmgr::CommandTraits<code>;
  static_assert(!Traits::kHasRecord, "the command carries a record");
  return BCM6838X_Ioctl(code, nullptr, Traits::kLength, Traits::kFlag);
}

/// A command whose record ends with its frame.
template <typename Record>
struct FrameCommand {
  uint32_t code;
};

/// The frame command of a code.
template <uint32_t code>
constexpr FrameCommand<brmgr::CommandRecord<code>> FrameCommandOf() {
  using Traits = brmgr::CommandTraits<code>;
  static_assert(Traits::kIsVariable, "the command's record has one length");
  static_assert(Traits::kFlag == BRMGR_FLAG_INPUT, "the driver writes into the record");
  return {code};
}

/// Sends the first `length` bytes of a record, up to the end of its frame. The driver only reads it.
template <typename Record>
uint32_t SendFrame(FrameCommand<Record> command, const Record& record, size_t length) {
  return BCM6838X_Ioctl(command.code, const_cast<Record*>(&record), static_cast<uint32_t>(length),
                        BRMGR_FLAG_INPUT);
}

}  // namespace hal

#endif
