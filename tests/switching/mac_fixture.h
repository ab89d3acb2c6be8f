/// @file
/// A unit with three transparent ports, and the MAC table as the library's walk shows it.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include <bcm6838x_mac.h>
#include <bcm6838x_vlan_port.h>

#include "base/text.h"
#include "switching_fixture.h"

namespace hal_test {

using Mac = std::array<std::uint8_t, 6>;

/// The address of station 1 is 02:00:00:00:00:01.
constexpr Mac Station(std::uint8_t number) {
  return {0x02, 0, 0, 0, 0, number};
}

class MacTableTest : public SwitchingTest {
 protected:
  MacTableTest() {
    for (std::uint32_t port = 1; port <= kOpenPorts; ++port) {
      EXPECT_EQ(BCM6838X_SetVlanTransparent(port), 0U);
    }
  }

  /// A frame between two stations in a VLAN.
  static std::string Between(std::uint8_t source, std::uint8_t destination, std::uint16_t vid) {
    return "src " + virtual_onu::FormatMac(Station(source)) + " dst " +
           virtual_onu::FormatMac(Station(destination)) + " vlan " + std::to_string(vid);
  }

  /// "LAST OCTET/VID@PORT" of each entry, 's' behind a static one, from the first to the last. The
  /// library tells nothing at the end but the cursor: port 0, VID 0.
  static std::vector<std::string> walk() {
    std::vector<std::string> entries;
    std::uint32_t port = 0;
    std::uint16_t vid = 0;
    Mac mac = {};
    std::uint8_t flag = 0;
    EXPECT_EQ(BCM6838X_GetFirstMacEntry(&port, &vid, mac.data(), &flag), 0U);
    while (vid != 0) {
      entries.push_back(std::to_string(mac[5]) + "/" + std::to_string(vid) + "@" +
                        std::to_string(port) + (flag != 0 ? "s" : ""));
      EXPECT_EQ(BCM6838X_GetNextMacEntry(&port, &vid, mac.data(), &flag), 0U);
    }
    return entries;
  }

  static MacStaticEntry StaticEntry(std::uint8_t number, std::uint16_t vid, std::uint8_t port) {
    const Mac mac = Station(number);
    return {vid, {mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]}, port};
  }
  static MacDynamicEntry DynamicEntry(std::uint8_t number, std::uint16_t vid, std::uint32_t port) {
    MacDynamicEntry entry = {};
    entry.vid = vid;
    entry.port = port;
    std::ranges::copy(Station(number), std::begin(entry.mac));
    return entry;
  }
  static MacAddress AddressOf(std::uint8_t number) {
    MacAddress address = {};
    std::ranges::copy(Station(number), std::begin(address.octet));
    return address;
  }
};

}  // namespace hal_test
