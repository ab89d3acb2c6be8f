/// @file
/// A unit on which the library has started and whose ports are up, and short ways to offer frames
/// and to read what became of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "datapath/data_path.h"
#include "support/library_test.h"

namespace hal_test {

using virtual_onu::Bytes;
using virtual_onu::ByteView;
using virtual_onu::Outcome;
using virtual_onu::PortId;
using virtual_onu::Transmission;
using virtual_onu::Verdict;

constexpr PortId kWan = PortId::Wan();

constexpr PortId Uni(std::uint32_t number) {
  return PortId::Uni(number);
}

/// The words of an event's header and its data field.
struct EventParts {
  std::vector<std::uint32_t> header;
  Bytes data;
};

class PacketTest : public LibraryTest {
 protected:
  using LibraryTest::LibraryTest;
  void SetUp() override;

  /// Reads the event that waits, as the library does; there must be one.
  EventParts readEvent();

  /// Throws away the events that wait.
  void drain();

  [[nodiscard]] std::size_t pending() { return unit.device().pendingEvents(); }

  /// Sends a command whose record is these bytes; the result of the ioctl.
  int command(std::uint32_t code, Bytes record);

  /// The frames counted at a port under an outcome.
  [[nodiscard]] std::uint64_t counted(PortId port, Outcome outcome);

  /// The lines of the trace that speak of events.
  [[nodiscard]] std::vector<std::string> eventLines() const;
};

/// A frame filled up with zeros to a length.
Bytes Padded(Bytes frame, std::size_t length);

}  // namespace hal_test
