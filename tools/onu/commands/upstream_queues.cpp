/// @file
/// From the schedulers of the data-path shell to the queues.
#include "commands/upstream_queues.h"

#include <map>

namespace onu {

std::vector<UpstreamQueue> UpstreamQueues(Session& session) {
  constexpr std::uint32_t kQueues = 16;
  std::map<std::uint32_t, UpstreamQueue> byNumber;
  for (std::uint32_t number = 0; number < kQueues; ++number) {
    byNumber[number].queue = number;
  }
  for (const auto& [index, scheduler] : session.unit().shell().objects().schedulers) {
    byNumber[scheduler.queueId] = {scheduler.queueId, index, scheduler.dropThreshold,
                                   scheduler.weight};
  }
  std::vector<UpstreamQueue> queues;
  queues.reserve(byNumber.size());
  for (const auto& [number, queue] : byNumber) {
    queues.push_back(queue);
  }
  return queues;
}

std::vector<virtual_onu::EgressQueue> EgressQueues(const std::vector<UpstreamQueue>& queues) {
  std::vector<virtual_onu::EgressQueue> list;
  list.reserve(queues.size());
  for (const UpstreamQueue& queue : queues) {
    list.push_back({queue.queue, queue.weight, 0});
  }
  return list;
}

std::string SchedulingOf(const UpstreamQueue& queue) {
  return queue.weight == 0 ? "strict" : "weighted";
}

}  // namespace onu
