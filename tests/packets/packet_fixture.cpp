/// @file
/// The start of the library, and the reader's end of the device.
#include "packet_fixture.h"

#include <cstring>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

namespace hal_test {

void PacketTest::SetUp() {
  ASSERT_EQ(BCM6838X_Init(), 0U);
  for (std::uint32_t port = 1; port <= unit.dataPath().uniPorts(); ++port) {
    ASSERT_EQ(BCM6838X_SetPortAdminState(port, 1), 0);
  }
  forget();
}

EventParts PacketTest::readEvent() {
  EventParts parts;
  if (pending() == 0) {
    ADD_FAILURE() << "no event waits";
    return parts;
  }
  BrmgrEvent event;
  EXPECT_EQ(BCM6838X_GetEvent(&event), 0U);
  parts.header = {event.eventType, event.length, event.reserved8, event.port, event.gemFlowId};
  parts.data.assign(std::begin(event.data), std::end(event.data));
  return parts;
}

void PacketTest::drain() {
  while (pending() != 0) {
    readEvent();
  }
}

int PacketTest::command(std::uint32_t code, Bytes record) {
  BrmgrRequest request = {code, static_cast<std::uint32_t>(record.size()), 0, record.data()};
  return unit.device().ioctl(BRMGR_IOCTL_REQUEST, &request);
}

std::uint64_t PacketTest::counted(PortId port, Outcome outcome) {
  for (const virtual_onu::OutcomeCount& count : unit.dataPath().counters().outcomes()) {
    if (count.port == port && count.outcome == outcome) {
      return count.frames;
    }
  }
  return 0;
}

std::vector<std::string> PacketTest::eventLines() const {
  std::vector<std::string> lines;
  for (const std::string& line : left()) {
    if (line.starts_with("call event(")) {
      lines.push_back(line);
    }
  }
  return lines;
}

Bytes Padded(Bytes frame, std::size_t length) {
  frame.resize(length);
  return frame;
}

}  // namespace hal_test
