/// @file
/// The command that tells in which order waiting frames would leave the upstream queues.
#include <cstdint>
#include <map>
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

/// More waiting frames are refused: the answer would help nobody.
constexpr std::uint32_t kMaxWaiting = 1000;

const Columns<Departure> kDepartures = {
    {"queue", "queue", &Departure::queue},
    {"frames", "frames", &Departure::frames},
};

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

const Command kDrain = {
    {"drain",
     {{"QUEUE=FRAMES", ArgumentType::Word, "upstream queue, and how many frames wait there",
       Presence::Rest}},
     "tells, and changes nothing, "
     "in which order waiting frames would leave the upstream queues by their weights",
     {"drain 7=3 0=5", "Init\nSetQosWrrWeight 1 1 2 2 4 4 8 8\ndrain 15=20 14=20 8=3"}},
    DrainUpstreamQueues};

}  // namespace onu
