/// @file
/// What the library believes to exist in the chip and in the data path, as plain lists. The tables
/// themselves belong to the library.
#pragma once

#include <compare>
#include <cstdint>
#include <tuple>
#include <vector>

#include <brmgr_record.h>

namespace virtual_onu {

/// A VLAN action of the pool.
struct PooledAction {
  VlanActionRule rule = {};
  std::uint32_t references = 0;
};

/// An upstream flow in the table of a UNI port.
struct UpstreamFlow {
  std::uint32_t uni = 0;
  IngressFlowRule flow = {};
};

/// A LAN VLAN object.
struct LanVlan {
  std::uint32_t uni = 0;
  std::uint16_t vid = 0;
  std::uint32_t references = 0;
};

/// A VLAN that multicast keeps on a UNI port: one reference on the port's LAN VLAN object.
struct MulticastVlan {
  std::uint32_t uni = 0;
  std::uint16_t vid = 0;
};

struct LibraryTables {
  std::vector<PooledAction> actions;
  std::vector<std::uint32_t> directActions;      ///< downstream actions made outside the pool
  std::vector<IngressFlowRule> downstreamFlows;  ///< with their references in refCount
  std::vector<UpstreamFlow> upstreamFlows;
  std::vector<std::uint16_t> wanVids;
  std::vector<LanVlan> lanVlans;
  std::vector<MulticastVlan> multicastVlans;
};

/// What the library shares a downstream flow by.
struct SharedFlowKey {
  std::uint32_t vid = 0;   ///< 4096 stands for any VID
  std::uint32_t tags = 0;  ///< number of VLAN tags
  std::strong_ordering operator<=>(const SharedFlowKey& other) const {
    return std::tie(vid, tags) <=> std::tie(other.vid, other.tags);
  }
};

/// The downstream flow that brings an upstream flow's frames back: that of the outer VID and of the
/// number of tags with which they leave.
SharedFlowKey SharedFlowOf(const LibraryTables& library, const IngressFlowRule& flow);

}  // namespace virtual_onu
