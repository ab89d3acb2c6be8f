/// @file
/// The upstream queues as the data-path shell was told about them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "datapath/egress_scheduler.h"
#include "session/session.h"

namespace onu {

/// One queue of the WAN side.
struct UpstreamQueue {
  std::uint32_t queue = 0;
  std::optional<std::uint32_t> scheduler;  ///< nothing while no line has named the queue
  std::optional<std::uint32_t> dropThreshold;
  std::uint32_t weight = 0;  ///< 0 for a strict queue
};

/// The queues of both banks, and any other that a line has named, by number.
std::vector<UpstreamQueue> UpstreamQueues(Session& session);

/// The same for the scheduler, nothing waiting.
std::vector<virtual_onu::EgressQueue> EgressQueues(const std::vector<UpstreamQueue>& queues);

/// "weighted" or "strict".
std::string SchedulingOf(const UpstreamQueue& queue);

}  // namespace onu
