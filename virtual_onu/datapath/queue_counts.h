/// @file
/// Frames counted by the port and the queue by which they left.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

#include "datapath/port_id.h"

namespace virtual_onu {

struct QueueCount {
  std::uint64_t frames = 0;
  std::uint64_t octets = 0;
  bool operator==(const QueueCount&) const = default;
};

class QueueCounts {
 public:
  void count(PortId port, std::uint32_t queue, std::size_t octets) {
    QueueCount& count = counts_[{port, queue}];
    ++count.frames;
    count.octets += octets;
  }

  void clear() { counts_.clear(); }

  /// By port, the WAN side first, and queue; only the queues that a frame left by.
  [[nodiscard]] const std::map<std::pair<PortId, std::uint32_t>, QueueCount>& all() const {
    return counts_;
  }

 private:
  std::map<std::pair<PortId, std::uint32_t>, QueueCount> counts_;
};

}  // namespace virtual_onu
