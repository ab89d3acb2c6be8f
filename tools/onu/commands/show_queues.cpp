/// @file
/// The command that lists the queues: what is set, and what left by each.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands/command_rows.h"
#include "commands/upstream_queues.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::EgressQueue;
using virtual_onu::PortId;
using virtual_onu::QueueCount;

QueueCount CountOf(Session& session, PortId port, std::uint32_t queue) {
  const auto& counts = session.unit().dataPath().counters().queues().all();
  const auto found = counts.find({port, queue});
  return found == counts.end() ? QueueCount() : found->second;
}

/// What is shown of a queue; of one that is known by its frames alone, only these.
struct QueueState {
  PortId port;
  std::uint32_t queue = 0;
  QueueCount count;
  std::optional<std::string> scheduling = {};
  std::optional<std::uint32_t> scheduler = {};
  std::optional<std::uint32_t> weight = {};
  std::optional<double> share = {};  ///< percent
  std::optional<std::uint32_t> dropThreshold = {};
};

Cell ShareOf(const QueueState& state) {
  std::array<char, 16> text = {};
  std::snprintf(text.data(), text.size(), "%.1f %%", state.share.value_or(0));
  return state.share ? Cell(*state.share, text.data()) : Cell();
}

const Columns<QueueState> kQueues = {
    {"port", "port", &QueueState::port},
    {"queue", "queue", &QueueState::queue},
    {"scheduling", "scheduling", &QueueState::scheduling},
    {"scheduler", "scheduler", &QueueState::scheduler},
    {"weight", "weight", &QueueState::weight},
    {"sharePercent", "share", ShareOf},
    {"dropThreshold", "threshold", &QueueState::dropThreshold},
    {"frames", "frames", [](const auto& state) { return state.count.frames; }},
    {"octets", "octets", [](const auto& state) { return state.count.octets; }},
};

void AddUpstream(Session& session, std::vector<QueueState>& states) {
  const std::vector<UpstreamQueue> queues = UpstreamQueues(session);
  const std::vector<EgressQueue> weights = EgressQueues(queues);
  for (const UpstreamQueue& queue : queues) {
    const QueueCount count = CountOf(session, PortId::Wan(), queue.queue);
    QueueState& state = states.emplace_back(QueueState{PortId::Wan(), queue.queue, count});
    state.scheduling = SchedulingOf(queue);
    state.scheduler = queue.scheduler;
    state.dropThreshold = queue.dropThreshold;
    if (queue.scheduler) {
      state.weight = queue.weight;
    }
    if (queue.weight != 0) {
      state.share = virtual_onu::SaturatedShare(weights, queue.queue);
    }
  }
}

/// The queues that frames left by and that nothing is known of but that.
void AddOthers(Session& session, std::vector<QueueState>& states) {
  const std::vector<UpstreamQueue> known = UpstreamQueues(session);
  for (const auto& [place, count] : session.unit().dataPath().counters().queues().all()) {
    const auto& [port, queue] = place;
    if (!port.isWan() || std::ranges::count(known, queue, &UpstreamQueue::queue) == 0) {
      states.push_back({port, queue, count});
    }
  }
}

Result ShowQueues(Session& session, const Arguments& /*arguments*/) {
  std::vector<QueueState> states;
  AddUpstream(session, states);
  AddOthers(session, states);
  return Result().add("queues", Table(kQueues, states));
}

}  // namespace

const Command kShowQueues = {
    {"show queues",
     {},
     "lists the upstream queues: scheduling, weight, share of what the strict queues leave "
     "while all weighted queues have frames waiting, threshold, and the frames that left; "
     "of the other ports the queues by which frames left",
     {"show queues", "Init\nSetQosWrrWeight 1 1 2 2 4 4 8 8\nshow queues"}},
    ShowQueues};

}  // namespace onu
