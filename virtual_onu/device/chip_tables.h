/// @file
/// The chip objects that the driver keeps: ingress classes with their flows, and VLAN actions. The
/// device writes them, port actions for the lines of the shell too; the data path reads them.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <tuple>

#include <brmgr_record.h>

namespace virtual_onu {

/// How many objects of a kind the chip holds, classes, flows and VLAN actions per direction, and
/// how many UNI ports it has.
struct ChipLimits {
  std::size_t classes = 64;
  std::size_t flowsPerClass = 2048;
  std::size_t vlanActions = 512;
  std::size_t macEntries = 4096;
  std::size_t mcastGroups = 1024;
  std::uint32_t uniPorts = 4;
};

/// Where a port action applies: a flow of the class, and the UNI port at which the frame leaves.
struct PortActionKey {
  std::uint32_t flowIndex = 0;
  std::uint32_t uni = 0;
  std::strong_ordering operator<=>(const PortActionKey& other) const {
    return std::tie(flowIndex, uni) <=> std::tie(other.flowIndex, other.uni);
  }
};

struct IngressClass {
  IngressClassCfg cfg = {};
  std::map<std::uint32_t, IngressFlowRule>
      flows;  ///< by flow index, which is the order of matching
  /// VLAN actions of single ports, by their index. A flow that is deleted takes its own along.
  std::map<PortActionKey, std::uint32_t> portActions = {};
};

/// The objects of one direction, each by its index.
struct DirectionTables {
  std::map<std::uint32_t, IngressClass> classes;
  std::map<std::uint32_t, VlanActionRule> actions;
};

/// Multicast groups, each forwarded to one port, by channel index.
using McastGroups = std::map<std::uint32_t, McastGroupEntry>;

struct ChipTables {
  DirectionTables downstream;
  DirectionTables upstream;

  /// Tables of a direction word as the records carry it: 0 downstream, any other value upstream.
  [[nodiscard]] const DirectionTables& of(std::uint32_t dir) const {
    return dir == BRMGR_DIR_DOWNSTREAM ? downstream : upstream;
  }
  [[nodiscard]] DirectionTables& of(std::uint32_t dir) {
    return dir == BRMGR_DIR_DOWNSTREAM ? downstream : upstream;
  }
};

}  // namespace virtual_onu
