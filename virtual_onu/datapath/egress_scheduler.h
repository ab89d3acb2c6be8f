/// @file
/// The order in which frames that wait in queues leave a port, by the weights of the queues. It
/// keeps nothing and knows no frames: who fills the queues is another's matter.
#pragma once

#include <cstdint>
#include <vector>

namespace virtual_onu {

struct EgressQueue {
  std::uint32_t queue = 0;
  std::uint32_t weight = 0;   ///< frames in a round; 0 for a strict queue
  std::uint64_t waiting = 0;  ///< frames
};

/// Frames of one queue that leave one behind the other.
struct Departure {
  std::uint32_t queue = 0;
  std::uint64_t frames = 0;
  bool operator==(const Departure&) const = default;
};

/// Empties the queues. Strict queues go first, the higher number before the lower. The weighted
/// ones then take turns, the higher number first, each with as many frames as its weight says or as
/// it still has. Turns of one queue that follow each other are one departure.
/// @param[in] queues  each number once
std::vector<Departure> DrainQueues(std::vector<EgressQueue> queues);

/// A weighted queue's part of what the strict queues leave over, in percent, while all weighted
/// queues have frames waiting; 0 for a strict queue.
double SaturatedShare(const std::vector<EgressQueue>& queues, std::uint32_t queue);

}  // namespace virtual_onu
