/// @file
/// The commands about queues: what is set and what left by each, and in which order waiting frames
/// would leave.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "base/text.h"
#include "commands/command_rows.h"
#include "commands/upstream_queues.h"
#include "language/failure.h"
#include "report/text_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Departure;
using virtual_onu::EgressQueue;
using virtual_onu::PortId;
using virtual_onu::QueueCount;

/// More waiting frames are refused: the answer would help nobody.
constexpr std::uint32_t kMaxWaiting = 1000;

std::string PercentText(double percent) {
  std::array<char, 16> text = {};
  std::snprintf(text.data(), text.size(), "%.1f %%", percent);
  return text.data();
}

QueueCount CountOf(Session& session, PortId port, std::uint32_t queue) {
  const auto& counts = session.unit().dataPath().counters().queues().all();
  const auto found = counts.find({port, queue});
  return found == counts.end() ? QueueCount() : found->second;
}

template <typename Number>
std::string OrDash(const std::optional<Number>& number) {
  return number ? std::to_string(*number) : "-";
}

void AddUpstream(Session& session, Json& list, TextTable& table) {
  const std::vector<UpstreamQueue> queues = UpstreamQueues(session);
  const std::vector<EgressQueue> weights = EgressQueues(queues);
  for (const UpstreamQueue& queue : queues) {
    const QueueCount count = CountOf(session, PortId::Wan(), queue.queue);
    const bool weighted = queue.weight != 0;
    const double share = virtual_onu::SaturatedShare(weights, queue.queue);
    list.push_back(
        {{"port", "wan"},
         {"queue", queue.queue},
         {"scheduling", SchedulingOf(queue)},
         {"scheduler", OrNull(queue.scheduler)},
         {"weight", OrNull(queue.scheduler ? std::optional(queue.weight) : std::nullopt)},
         {"sharePercent", weighted ? Json(share) : Json(nullptr)},
         {"dropThreshold", OrNull(queue.dropThreshold)},
         {"frames", count.frames},
         {"octets", count.octets}});
    table.add({"wan", std::to_string(queue.queue), SchedulingOf(queue), OrDash(queue.scheduler),
               queue.scheduler ? std::to_string(queue.weight) : "-",
               weighted ? PercentText(share) : "-", OrDash(queue.dropThreshold),
               std::to_string(count.frames), std::to_string(count.octets)});
  }
}

/// The queues that frames left by and that nothing is known of but that.
void AddOthers(Session& session, Json& list, TextTable& table) {
  const std::vector<UpstreamQueue> known = UpstreamQueues(session);
  for (const auto& [place, count] : session.unit().dataPath().counters().queues().all()) {
    const auto& [port, queue] = place;
    if (port.isWan() && std::ranges::count(known, queue, &UpstreamQueue::queue) != 0) {
      continue;
    }
    list.push_back({{"port", port.name()},
                    {"queue", queue},
                    {"scheduling", nullptr},
                    {"scheduler", nullptr},
                    {"weight", nullptr},
                    {"sharePercent", nullptr},
                    {"dropThreshold", nullptr},
                    {"frames", count.frames},
                    {"octets", count.octets}});
    table.add({port.name(), std::to_string(queue), "-", "-", "-", "-", "-",
               std::to_string(count.frames), std::to_string(count.octets)});
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
  Result result;
  Json& list = result.json["queues"] = Json::array();
  TextTable table({"port", "queue", "scheduling", "scheduler", "weight", "share", "threshold",
                   "frames", "octets"});
  AddUpstream(session, list, table);
  AddOthers(session, list, table);
  result.text = table.text("");
  return result;
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
  Result result;
  Json& list = result.json["departures"] = Json::array();
  TextTable table({"queue", "frames"});
  for (const Departure& departure : virtual_onu::DrainQueues(waiting)) {
    list.push_back({{"queue", departure.queue}, {"frames", departure.frames}});
    table.add({std::to_string(departure.queue), std::to_string(departure.frames)});
  }
  result.text = table.text("no frames");
  return result;
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
