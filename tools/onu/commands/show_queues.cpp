/// @file
/// The commands about queues: what is set and what left by each, and in which order waiting frames
/// would leave.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "commands/command_rows.h"
#include "commands/upstream_queues.h"
#include "language/failure.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Departure;
using virtual_onu::EgressQueue;
using virtual_onu::PortId;
using virtual_onu::QueueCount;

/// More waiting frames are refused: the answer would help nobody.
constexpr std::uint32_t kMaxWaiting = 1000;

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

const Columns<Departure> kDepartures = {
    {"queue", "queue", &Departure::queue},
    {"frames", "frames", &Departure::frames},
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

[[noreturn]] void Refuse(const std::string& expected, const std::string& word) {
  throw WrongUse("QUEUE=FRAMES: expected " + expected + ", got " + Quote(word));
}

/// Puts the frames of one word into their queue.
void Fill(const std::string& word, std::map<std::uint32_t, EgressQueue>& queues) {
  const std::size_t at = word.find('=');
  const auto queue = virtual_onu::ParseDecimal(word.substr(0, at));
  const auto frames = at == std::string::npos
                          ? std::nullopt
                          : virtual_onu::ParseDecimal(std::string_view(word).substr(at + 1));
  if (!queue || !frames) {
    Refuse("a queue and a number of frames, as 15=100", word);
  }
  const auto found = queues.find(*queue);
  if (found == queues.end()) {
    Refuse("an upstream queue of show queues", word);
  }
  if (*frames > kMaxWaiting) {
    Refuse("at most " + std::to_string(kMaxWaiting) + " frames", word);
  }
  found->second.waiting = *frames;
}

Result ShowQueues(Session& session, const Arguments& /*arguments*/) {
  std::vector<QueueState> states;
  AddUpstream(session, states);
  AddOthers(session, states);
  return Result().add("queues", Table(kQueues, states));
}

Result DrainUpstreamQueues(Session& session, const Arguments& arguments) {
  std::map<std::uint32_t, EgressQueue> queues;
  for (const EgressQueue& queue : EgressQueues(UpstreamQueues(session))) {
    queues[queue.queue] = queue;
  }
  for (const std::string& word : arguments.words("QUEUE=FRAMES")) {
    Fill(word, queues);
  }
  std::vector<EgressQueue> waiting;
  waiting.reserve(queues.size());
  for (const auto& [number, queue] : queues) {
    waiting.push_back(queue);
  }
  return Result().add("departures", Table(kDepartures, virtual_onu::DrainQueues(waiting)),
                      "no frames");
}

}  // namespace

const Command kShowQueues = {
    {"show queues",
     {},
     "lists the upstream queues: scheduling, weight, share of what the strict queues leave "
     "while all weighted queues have frames waiting, threshold, and the frames that left; of "
     "the other ports the queues by which frames left",
     {"show queues", "Init\nSetQosWrrWeight 1 1 2 2 4 4 8 8\nshow queues"}},
    ShowQueues};

const Command kDrain = {
    {"drain",
     {{"QUEUE=FRAMES", ArgumentType::Word, "upstream queue, and how many frames wait there",
       Presence::Rest}},
     "tells, and changes nothing, in which order waiting frames would leave the upstream "
     "queues by their weights",
     {"drain 7=3 0=5", "Init\nSetQosWrrWeight 1 1 2 2 4 4 8 8\ndrain 15=20 14=20 8=3"}},
    DrainUpstreamQueues};

}  // namespace onu
