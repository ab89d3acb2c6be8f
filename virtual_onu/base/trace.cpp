/// @file
/// Bookkeeping of the trace.
#include "base/trace.h"

#include <utility>

namespace virtual_onu {

PackedEvent::PackedEvent(TraceEvent event) : event_(std::move(event)) {
  auto* const command = std::get_if<CommandEvent>(&event_.detail);
  if (command == nullptr) {
    return;
  }
  before_ = PackedBytes(command->before);
  if (command->after != command->before) {
    after_ = PackedBytes(command->after);
  }
  command->before = {};
  command->after = {};
}

TraceEvent PackedEvent::unpack() const {
  TraceEvent event = event_;
  if (auto* const command = std::get_if<CommandEvent>(&event.detail)) {
    command->before = before_.unpack();
    command->after = after_ ? after_->unpack() : command->before;
  }
  return event;
}

Trace::Trace(const Clock& clock, std::size_t capacity) : clock_(clock), capacity_(capacity) {}

void Trace::add(TraceDetail detail) {
  TraceEvent event;
  std::function<void(const TraceEvent&)> listener;
  {
    const std::lock_guard lock(mutex_);
    if (!recording_) {
      return;
    }
    events_.emplace_back(TraceEvent{next_++, clock_.milliseconds(), std::move(detail)});
    listener = listener_;
    if (listener) {
      event = events_.back().unpack();
    }
    if (events_.size() > capacity_) {
      events_.pop_front();
    }
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
  for (const PackedEvent& event : events_) {
    if (event.sequence() >= from) {
      found.push_back(event.unpack());
    }
  }
  return found;
}

std::uint64_t Trace::next() const {
  const std::lock_guard lock(mutex_);
  return next_;
}

}  // namespace virtual_onu
