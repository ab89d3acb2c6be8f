/// @file
/// Offsets of the configuration of the ports.
#include "hal/vlan/expected_vlan_config.h"

namespace hal_test {

namespace {

constexpr std::size_t kPorts = 32;
constexpr std::size_t kPortSize = 15376;
constexpr std::size_t kTrunkList = 16;
constexpr std::size_t kTrunkSize = 4;
constexpr std::size_t kTranslationList = 2064;
constexpr std::size_t kTranslationSize = 10;
constexpr std::size_t kStackingList = 7184;
constexpr std::size_t kStackingSize = 16;

std::size_t PortAt(std::uint32_t port) {
  return (port - 1) * kPortSize;
}

}  // namespace

ExpectedVlanConfig::ExpectedVlanConfig(std::uint32_t ethPorts) : record_(kPorts * kPortSize) {
  for (std::uint32_t port = 1; port <= ethPorts; ++port) {
    mode(port, kNone);
  }
}

ExpectedVlanConfig& ExpectedVlanConfig::pvid(std::uint32_t port, std::uint16_t pvid) {
  record_.u16(PortAt(port), pvid).u16(PortAt(port) + 4, 0x8100);
  return *this;
}

ExpectedVlanConfig& ExpectedVlanConfig::priority(std::uint32_t port, std::uint16_t priority) {
  record_.u16(PortAt(port) + 2, priority);
  return *this;
}

ExpectedVlanConfig& ExpectedVlanConfig::mode(std::uint32_t port, std::uint32_t mode) {
  record_.u32(PortAt(port) + 8, mode);
  return *this;
}

ExpectedVlanConfig& ExpectedVlanConfig::stackingEnable(std::uint32_t port, std::uint32_t on) {
  record_.u32(PortAt(port) + 12, on);
  return *this;
}

ExpectedVlanConfig& ExpectedVlanConfig::trunk(std::uint32_t port, std::size_t place,
                                              std::uint16_t vid) {
  const std::size_t at = PortAt(port) + kTrunkList + place * kTrunkSize;
  record_.u8(at, vid == 0 ? 0 : static_cast<std::uint8_t>(port)).u16(at + 2, vid);
  return *this;
}

ExpectedVlanConfig& ExpectedVlanConfig::translation(std::uint32_t port, std::size_t place,
                                                    std::uint16_t localVid, std::uint16_t netVid,
                                                    std::uint16_t usPriority,
                                                    std::uint16_t dsPriority) {
  const std::size_t at = PortAt(port) + kTranslationList + place * kTranslationSize;
  record_.u8(at, static_cast<std::uint8_t>(port)).u16(at + 2, dsPriority).u16(at + 4, localVid);
  record_.u16(at + 6, usPriority).u16(at + 8, netVid);
  return *this;
}

ExpectedVlanConfig& ExpectedVlanConfig::stacking(std::uint32_t port, std::size_t place,
                                                 std::uint32_t stackParam, std::uint32_t cvid,
                                                 std::uint16_t svid) {
  const std::size_t at = PortAt(port) + kStackingList + place * kStackingSize;
  record_.u8(at, static_cast<std::uint8_t>(port)).u32(at + 4, stackParam).u32(at + 8, cvid);
  record_.u16(at + 14, svid);
  return *this;
}

std::string ExpectedVlanConfig::sent() const {
  return Sent("VLAN_REBUILD", 0, record_);
}

}  // namespace hal_test
