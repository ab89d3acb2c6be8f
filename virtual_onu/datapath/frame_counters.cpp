/// @file
/// One place for each way of counting a frame.
#include "datapath/frame_counters.h"

namespace virtual_onu {

void FrameCounters::countOffered(PortId port, ByteView frame, bool entered,
                                 const Verdict& verdict) {
  countOutcome(port, verdict.outcome, frame.size());
  for (const ClosedPort& closed : verdict.closed) {
    countOutcome(closed.port, closed.outcome, verdict.frame.size());
  }
  if (entered) {
    PortCount& count = ports_[port];
    ++count.framesIn;
    count.octetsIn += frame.size();
  }
  for (const Delivery& delivery : verdict.deliveries) {
    countDeparture(delivery.port, delivery.frame.size());
    // A frame that is switched locally does not pass the queue of its upstream flow.
    if (verdict.queue && !verdict.neighbour) {
      queues_.count(delivery.port, *verdict.queue, delivery.frame.size());
    }
  }
  countCopies(verdict.copies);
  if (statistics_) {
    statistics_->count(port, frame, verdict);
  }
}

void FrameCounters::countTransmitted(PortId port, ByteView frame, const Transmittal& transmittal) {
  countOutcome(port, transmittal.outcome, frame.size());
  countCopies(transmittal.copies);
  if (transmittal.outcome != Outcome::Transmitted) {
    return;
  }
  countDeparture(port, frame.size());
  if (statistics_) {
    statistics_->countTransmitted(port, frame, transmittal.copies);
  }
}

void FrameCounters::countCopies(const std::vector<MirrorCopy>& copies) {
  for (const MirrorCopy& copy : copies) {
    countOutcome(copy.port, copy.outcome, copy.frame.size());
    if (copy.outcome == Outcome::Mirrored) {
      countDeparture(copy.port, copy.frame.size());
    }
  }
}

void FrameCounters::countDeparture(PortId by, std::size_t octets) {
  PortCount& count = ports_[by];
  ++count.framesOut;
  count.octetsOut += octets;
}

void FrameCounters::countOutcome(PortId port, Outcome outcome, std::size_t octets) {
  OutcomeCount& count = outcomes_[{port, outcome}];
  count.port = port;
  count.outcome = outcome;
  ++count.frames;
  count.octets += octets;
}

std::vector<OutcomeCount> FrameCounters::outcomes() const {
  std::vector<OutcomeCount> counts;
  counts.reserve(outcomes_.size());
  for (const auto& [key, count] : outcomes_) {
    counts.push_back(count);
  }
  return counts;
}

PortCount FrameCounters::portCount(PortId port) const {
  const auto found = ports_.find(port);
  return found == ports_.end() ? PortCount() : found->second;
}

void FrameCounters::clear() {
  outcomes_.clear();
  ports_.clear();
  queues_.clear();
}

}  // namespace virtual_onu
