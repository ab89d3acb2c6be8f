/// @file
/// A data path with three UNI ports whose states a test changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "chip_builder.h"
#include "datapath/data_path.h"
#include "support/sample_frames.h"

namespace virtual_onu {

inline constexpr std::uint32_t kUniPorts = 3;
inline constexpr PortId kUni1 = PortId::Uni(1);
inline constexpr PortId kUni2 = PortId::Uni(2);
inline constexpr PortId kUni3 = PortId::Uni(3);

inline const std::string kMacA = "020000000011 ";
inline const std::string kMacB = "020000000022 ";

using Names = std::vector<std::string>;
using PortIds = std::vector<PortId>;

/// A data path that forwards every frame of both directions.
class PortsTest : public testing::Test {
 protected:
  PortsTest()
      : path(chip.tables, chip.ports(kUniPorts), std::nullopt,
             MacBridge(macs, chip.portTables, clock, kMacEntries)) {
    chip.addMatchAll(kUp).queue = 5;
    chip.addMatchAll(kDown);
  }

  void setAdmin(std::uint32_t uni, bool up) { chip.portTables.settings[uni].adminUp = up; }
  void isolate(std::uint32_t uni, std::uint32_t peer) {
    chip.portTables.isolated.insert(MakePortPair(uni, peer));
  }
  void mirrorTo(std::uint32_t uni, std::uint32_t direction) {
    chip.portTables.mirror = {0, DevicePortOf(uni), 1, direction};
  }

  std::string outcomeOf(PortId port, const std::string& frame = kTagged) {
    return std::string(Describe(path.offer(port, Hex(frame)).outcome).name);
  }

  /// "PORT OUTCOME FRAMES OCTETS" of every counter.
  [[nodiscard]] std::vector<std::string> counted() const {
    std::vector<std::string> lines;
    for (const OutcomeCount& count : path.counters().outcomes()) {
      lines.push_back(count.port.name() + " " + std::string(Describe(count.outcome).name) + " " +
                      std::to_string(count.frames) + " " + std::to_string(count.octets));
    }
    return lines;
  }

  static constexpr std::size_t kMacEntries = 8;

  ChipBuilder chip;
  MacTables macs;
  Clock clock;
  DataPath path;
};

}  // namespace virtual_onu
