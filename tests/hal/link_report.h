/// @file
/// What a report of a link change leaves behind.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hal/packet/packet_bytes.h"
#include "support/wire_record.h"

namespace hal_test {

/// One notification of the management process; its words are in the processor's byte order.
inline std::string Notification(std::uint32_t port, std::uint16_t code, bool up) {
  const Bytes message =
      Joined({NativeHalf(1), Bytes(2), NativeWord(port | 0x01000000), NativeHalf(code),
              Bytes{up ? std::uint8_t{1} : std::uint8_t{0}}, Bytes(25)});
  return "message 41600 3330 " + virtual_onu::ToHex(message);
}

inline std::string ChangeLine(std::uint32_t port, std::uint32_t state) {
  return "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_link.cpp UNI port[" + std::to_string(port) +
         "] MODE change to [" + std::to_string(state) + "]\r\n";
}

/// A report of a link that is up.
inline std::vector<std::string> UpReport(std::uint32_t port, std::uint32_t state,
                                         std::uint32_t devicePort, std::uint32_t rate) {
  return {ChangeLine(port, state),
          Sent("PORT_STATE", 0, WireRecord(8).u32(0, devicePort).u32(4, rate)),
          Notification(port, 0x0301, true), Notification(port, 0x0302, true)};
}

/// A report of a link that is down.
inline std::vector<std::string> DownReport(std::uint32_t port) {
  return {ChangeLine(port, 6), Notification(port, 0x0301, false),
          Notification(port, 0x0302, false)};
}

}  // namespace hal_test
