/// @file
/// The objects that the data-path shell keeps. The shell writes them; they are shown and compared,
/// and decide about no frame.
/// Port actions are not among them: they belong to the ingress classes of the device.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace virtual_onu {

/// A named set of VLAN identifiers that is enabled on one port object.
struct VlanObject {
  std::string portObject;  ///< "wan0", "lan0", ...
  std::uint32_t uni = 0;   ///< the port behind it: a UNI port number, or 0 for the WAN side
  std::set<std::uint16_t> vids;
};

/// An upstream scheduler and its only queue.
struct EgressScheduler {
  std::uint32_t queueId = 0;
  std::uint32_t dropThreshold = 0;
  std::uint32_t weight = 0;
};

struct PathObjects {
  std::map<std::string, VlanObject> vlans;              ///< by name
  std::set<std::uint32_t> transparentPorts;             ///< UNI port numbers
  std::map<std::uint32_t, EgressScheduler> schedulers;  ///< by index
};

}  // namespace virtual_onu
