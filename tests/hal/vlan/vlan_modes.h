/// @file
/// The VLAN modes as the tests call them: each builder with one set of arguments, told by the port
/// and the number of list entries.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>

namespace hal_test {

/// As long as the builders read.
constexpr std::size_t kListEntries = 512;

template <typename Entry>
using VlanList = std::array<Entry, kListEntries>;

constexpr std::uint32_t kPvid = 10;
constexpr std::uint32_t kPriority = 3;

/// Entry v of the lists: VLAN 100+v; local VID 100+v to network VID 300+v with upstream priority 5
/// and downstream priority 6; customer VID 100+v in service VID 300+v.
VlanList<PortVlanTrunkEntry> TrunkList(std::uint32_t port, std::uint32_t entries);
VlanList<PortVlanTransEntry> TranslationList(std::uint32_t port, std::uint32_t entries);
VlanList<PortVlanStackEntry> StackingList(std::uint32_t port, std::uint32_t entries);

struct VlanMode {
  std::string name;
  std::int32_t (*add)(std::uint32_t port, std::uint32_t entries);
  std::int32_t (*del)(std::uint32_t port, std::uint32_t entries);
};

/// For failing tests.
void PrintTo(const VlanMode& mode, std::ostream* out);

/// "Transparent", "Tag" (of kPvid), "ZteTrunk", "Hybrid", "Translation", "ZteStacking",
/// "BdcomStacking".
const std::vector<VlanMode>& VlanModes();

/// The mode of that name; throws std::out_of_range when there is none.
const VlanMode& ModeOf(const std::string& name);

}  // namespace hal_test
