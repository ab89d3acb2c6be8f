/// @file
/// Strict priority and weighted round robin.
#include "datapath/egress_scheduler.h"

#include <algorithm>

namespace virtual_onu {
namespace {

void Leave(EgressQueue& queue, std::uint64_t frames, std::vector<Departure>& departures) {
  queue.waiting -= frames;
  if (frames == 0) {
    return;
  }
  if (!departures.empty() && departures.back().queue == queue.queue) {
    departures.back().frames += frames;
  } else {
    departures.push_back({queue.queue, frames});
  }
}

/// Gives every weighted queue its turn; says whether a frame is left for another round.
bool ServeRound(std::vector<EgressQueue>& queues, std::vector<Departure>& departures) {
  bool more = false;
  for (EgressQueue& queue : queues) {
    if (queue.weight != 0) {
      Leave(queue, std::min<std::uint64_t>(queue.weight, queue.waiting), departures);
      more = more || queue.waiting != 0;
    }
  }
  return more;
}

}  // namespace

std::vector<Departure> DrainQueues(std::vector<EgressQueue> queues) {
  std::ranges::sort(queues, std::ranges::greater(), &EgressQueue::queue);
  std::vector<Departure> departures;
  for (EgressQueue& queue : queues) {
    if (queue.weight == 0) {
      Leave(queue, queue.waiting, departures);
    }
  }
  while (ServeRound(queues, departures)) {
  }
  return departures;
}

double SaturatedShare(const std::vector<EgressQueue>& queues, std::uint32_t queue) {
  constexpr double kPercent = 100;
  std::vector<EgressQueue> round = queues;
  std::uint64_t all = 0;
  for (EgressQueue& each : round) {
    each.waiting = each.weight;
    all += each.weight;
  }
  for (const Departure& departure : DrainQueues(round)) {
    if (departure.queue == queue) {
      return kPercent * static_cast<double>(departure.frames) / static_cast<double>(all);
    }
  }
  return 0;
}

}  // namespace virtual_onu
