/// @file
/// Commands that the driver refuses: the log line, and a driver that writes into the record before
/// it answers.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include <brmgr_record.h>

#include "unit/unit.h"

namespace hal_test {

/// What the ioctl of a refused command returns.
inline constexpr int kRefused = -1;

/// The line of the command channel, as Left() describes it.
std::string RefusalLogged(std::uint32_t code);

/// From now on `write` changes the record of every command of one code in the driver's place, and
/// the ioctl returns `result`.
template <typename Record, typename Write>
void AnswerWritten(virtual_onu::Unit& unit, std::uint32_t code, int result, Write write) {
  unit.device().onRequest([code, result, write](const BrmgrRequest& request) -> std::optional<int> {
    if (request.cmd != code) {
      return std::nullopt;
    }
    EXPECT_EQ(request.len, sizeof(Record));
    write(*static_cast<Record*>(request.buf));
    return result;
  });
}

}  // namespace hal_test
