/// @file
/// A data path whose three UNI ports and WAN side exchange frames of stations, a letter each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "frame/frame.h"
#include "ports_fixture.h"

namespace virtual_onu {

inline constexpr PortId kWan = PortId::Wan();

/// The address of station 1 is 02:00:00:00:00:01.
inline MacKey Station(std::uint8_t number, std::uint16_t vid) {
  return {{0x02, 0, 0, 0, 0, number}, vid};
}

class MacTest : public PortsTest {
 protected:
  static constexpr std::uint8_t kBroadcast = 0xFF;
  static constexpr std::uint64_t kSecond = 1000;

  /// A tagged frame between two stations; VID 0 is a frame without a tag.
  static Bytes FrameOf(std::uint8_t destination, std::uint8_t source, std::uint16_t vid = 100) {
    const auto address = [](std::uint8_t number) {
      return number == kBroadcast ? Bytes(kMacSize, 0xFF) : Bytes{0x02, 0, 0, 0, 0, number};
    };
    Bytes frame = address(destination);
    const Bytes from = address(source);
    frame.insert(frame.end(), from.begin(), from.end());
    const Bytes rest = Hex(kPlain);
    frame.insert(frame.end(), rest.begin(), rest.end());
    if (vid != 0) {
      PushTag(frame, {kTpidCustomer, 0, false, vid});
    }
    return frame;
  }

  /// Where a frame leaves; empty when it does not.
  PortIds sent(PortId from, std::uint8_t destination, std::uint8_t source,
               std::uint16_t vid = 100) {
    return path.offer(from, FrameOf(destination, source, vid)).egress();
  }

  /// Where a frame from an unknown station would leave; nothing is learned.
  [[nodiscard]] PortIds wouldLeave(PortId from, std::uint8_t destination,
                                   std::uint16_t vid = 100) const {
    return path.explain(from, FrameOf(destination, 0x99, vid)).verdict.egress();
  }

  Outcome outcome(PortId from, std::uint8_t destination, std::uint8_t source,
                  std::uint16_t vid = 100) {
    return path.offer(from, FrameOf(destination, source, vid)).outcome;
  }

  /// A station is heard at a port.
  void hear(PortId from, std::uint8_t source, std::uint16_t vid = 100) {
    EXPECT_EQ(outcome(from, kBroadcast, source, vid), Outcome::FlowForward);
  }

  const PortIds everyUni = {kUni1, kUni2, kUni3};
};

}  // namespace virtual_onu
