/// @file
/// Commands that the driver refuses: the log line, and a driver that has written into the record
/// before it refuses.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include <brmgr_record.h>

#include "unit/unit.h"

namespace hal_test {

/// The line of the command channel, as Left() describes it.
std::string RefusalLogged(std::uint32_t code);

/// From now on the driver refuses every command of one code, once `write` has changed its record.
template <typename Record, typename Write>
void RefuseWritten(virtual_onu::Unit& unit, std::uint32_t code, Write write) {
  unit.device().onRequest([code, write](const BrmgrRequest& request) -> std::optional<int> {
    if (request.cmd != code) {
      return std::nullopt;
    }
    EXPECT_EQ(request.len, sizeof(Record));
    write(*static_cast<Record*>(request.buf));
    return -1;
  });
}

}  // namespace hal_test
