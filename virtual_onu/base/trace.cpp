/// @file
/// Bookkeeping of the trace.
#include "base/trace.h"

#include <utility>

namespace virtual_onu {

Trace::Trace(const Clock& clock, std::size_t capacity) : clock_(clock), capacity_(capacity) {}

void Trace::add(TraceDetail detail) {
  TraceEvent event;
  std::function<void(const TraceEvent&)> listener;
  {
    const std::lock_guard lock(mutex_);
    if (!recording_) {
      return;
    }
    event = {next_++, clock_.milliseconds(), std::move(detail)};
    events_.push_back(event);
    if (events_.size() > capacity_) {
      events_.pop_front();
    }
    listener = listener_;
  }
  if (listener) {
    listener(event);
  }
}

void Trace::clear() {
  const std::lock_guard lock(mutex_);
  events_.clear();
}

void Trace::setRecording(bool on) {
  const std::lock_guard lock(mutex_);
  recording_ = on;
}

void Trace::setListener(std::function<void(const TraceEvent&)> listener) {
  const std::lock_guard lock(mutex_);
  listener_ = std::move(listener);
}

std::vector<TraceEvent> Trace::events(std::uint64_t from) const {
  const std::lock_guard lock(mutex_);
  std::vector<TraceEvent> found;
  for (const TraceEvent& event : events_) {
    if (event.sequence >= from) {
      found.push_back(event);
    }
  }
  return found;
}

std::uint64_t Trace::next() const {
  const std::lock_guard lock(mutex_);
  return next_;
}

}  // namespace virtual_onu
